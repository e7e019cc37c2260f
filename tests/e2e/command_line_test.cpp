// What a user meets first: help, version, and every command line that the program refuses.
#include <gtest/gtest.h>

#include "support/Package.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {
namespace {

const std::string kDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

struct Row {
  Arguments arguments;
  int status;
};

TEST(CommandLine, Help_PrintsAllLinesAndNoDocument) {
  const std::string help = readFile(fixture("command_line/help.txt"));
  for (const auto& arguments : {Arguments{"-h"}, Arguments{"-i", "-o", "out", "-h", "-bad"}}) {
    const Package package;
    const ProgramResult run = package.run(arguments);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, help);
    EXPECT_FALSE(exists(package / "out"));
  }
}

TEST(CommandLine, Version_PrintsTitleAndNotice) {
  const ProgramResult run = Package().run({"-v", "-bad"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.output,
            "Tolvanix PCI Driver Inventory and Update, v7.3.105.105\n"
            "Copyright (C) 2026 The Tolvanix Founders. All rights reserved.\n");
}

TEST(CommandLine, Refused_StatusIsWrittenToStandardOutputOnly) {
  const Row rows[] = {
      {{}, 2},
      {{"-bad", "-h"}, 3},
      {{"-d"}, 3},
      {{"-i", "-D=1"}, 3},
      {{"-i", ""}, 3},
      {{"-c"}, 4},
      {{"-o", "-i"}, 4},
      {{"-i", "-u"}, 5},
      {{"-uhid", "-uhid", "-h"}, 5},
      {{"-i", "-d=5"}, 6},
      {{"-i", "-d=10"}, 6},
      {{"-i", "-d="}, 6},
      {{"-i", "-o"}, 7},
      {{"-i", "-e"}, 8},
      {{"-u", "-p"}, 9},
      {{"-u", "-n"}, 10},
      {{"-uhid", "-w"}, 12},
  };
  for (const Row& row : rows) {
    const Package package;
    package.add("old.xml", "kept");
    Arguments arguments = row.arguments;
    if (!arguments.empty()) arguments.insert(arguments.begin(), {"-o", "old.xml"});
    const ProgramResult run = package.run(arguments);
    EXPECT_EQ(run.exitCode, row.status);
    EXPECT_EQ(run.output, kDeclaration + statusElement(row.status));
    EXPECT_EQ(readFile(package / "old.xml"), "kept");
    EXPECT_FALSE(exists(package / "tolvanix_debug.log"));
  }
}

TEST(CommandLine, FileCannotBeUsed_StatusStandsInTheCommandsElement) {
  const Row rows[] = {
      {{"-i", "-o", "folder"}, 13},
      {{"-i", "-o", "none/out.xml"}, 13},
      {{"-uhid", "-o", "folder"}, 13},
      {{"-i", "-d=1", "-e", "folder"}, 14},
      {{"-uhid", "-n", "none.inf"}, 15},
      {{"-uhid", "-n", "folder"}, 15},
      {{"-u", "-p", "none.xml", "-n", "none.inf"}, 15},
      {{"-u"}, 16},
      {{"-u", "-p", "folder"}, 16},
      {{"-u", "-p", "text"}, 23},
      {{"-uhid"}, 11},
  };
  for (const Row& row : rows) {
    const Package package;
    package.add("folder/in.txt", "");
    package.add("text", "");
    const ProgramResult run = package.run(row.arguments);
    EXPECT_EQ(run.exitCode, row.status);
    const std::string status = statusElement(row.status);
    EXPECT_EQ(run.output, row.arguments[0] == "-i" ? kDeclaration + R"(<SVMInventory lang="en">)" +
                                                         status + "</SVMInventory>"
                                                   : executionDocument(status));
  }
}

TEST(CommandLine, OutputFileAccepted_HoldsTheStatusAndNothingOlder) {
  const Package package;
  package.add("out.xml", std::string(1000, 'x'));
  const ProgramResult run = package.run({"-u", "-o", "out.xml"});
  EXPECT_EQ(run.exitCode, 16);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(readText(package / "out.xml"), executionDocument(statusElement(16)));
}

TEST(CommandLine, DebugFile_StartsWithItsSettings) {
  const Package package;
  package.add("named.log", "older");
  package.run({"-uhid"});
  EXPECT_EQ(readText(package / "tolvanix_debug.log"),
            "loglevel=0\nlogtarget=-1\nlogpathfile=tolvanix_debug.log\n");
  package.run({"-uhid", "-e", "named.log"});
  EXPECT_EQ(readText(package / "named.log"), "loglevel=0\nlogtarget=1\nlogpathfile=named.log\n");
}

// Without a file the trace stands before the document. Level 2 has the error lines alone.
TEST(CommandLine, Trace_GoesWhereTheOptionsSay) {
  const Package package;
  const std::string error =
      "validateCLIOptionsAndDefaults: Either can not find the package XML file, or can not open it "
      "for reading.\n";
  const std::string document = package.run({"-u"}).output;
  EXPECT_EQ(package.run({"-u", "-d=1"}).output, document);
  EXPECT_EQ(package.run({"-u", "-d=2"}).output, error + document);
  EXPECT_EQ(package.run({"-u", "-d=4"}).output,
            "***************************************************\n"
            "**** tolvanix: Debugging has been initialized. ****\n"
            "***************************************************\n" +
                error + document);
  EXPECT_EQ(package.run({"-e", "trace.log", "-u", "-d=2"}).output, document);
  EXPECT_EQ(readText(package / "trace.log"),
            "loglevel=2\nlogtarget=1\nlogpathfile=trace.log\n" + error);
}

}  // namespace
}  // namespace tolvanix::test
