// What a user meets first: help, version, and every command line that the program refuses.
#include "support/Matchers.h"
#include "support/Package.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {
namespace {

const std::string kDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

// `e.log` by a name of that many characters.
std::string debugFileName(std::size_t size) {
  std::string name = size % 2 == 0 ? ".//" : "./";
  while (name.size() + 5 < size) name += "./";
  return name + "e.log";
}

struct Row {
  int status;
  std::vector<Arguments> commandLines;
};

TEST(CommandLine, HelpAndVersion_ArePrintedWithoutADocument) {
  const std::string help = readFile(fixture("command_line/help.txt"));
  const std::string version =
      "Tolvanix PCI Driver Inventory and Update, v7.3.105.105\n"
      "Copyright (C) 2026 The Tolvanix Founders. All rights reserved.\n";
  const std::pair<Arguments, std::string> rows[] = {
      {{"-h"}, help}, {{"-i", "-o", "out", "-h", "-bad"}, help}, {{"-v", "-bad"}, version}};
  for (const auto& [arguments, output] : rows) {
    const Package package;
    const ProgramResult run = package.run(arguments);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, output);
    EXPECT_FALSE(exists(package / "out"));
  }
}

TEST(CommandLine, Refused_StatusIsWrittenToStandardOutputOnly) {
  const Row rows[] = {
      {2, {{}}},
      {3, {{"-bad", "-h"}, {"-hh"}, {"-vv"}, {"-d"}, {"-i", "-D=1"}, {"-i", ""}}},
      {4, {{"-c"}, {"-o", "-i"}}},
      {5, {{"-i", "-u"}, {"-uhid", "-uhid", "-h"}}},
      {6, {{"-i", "-d=5"}, {"-i", "-d=10"}, {"-i", "-d="}}},
      {7, {{"-i", "-o"}}},
      {8, {{"-i", "-e"}}},
      {9, {{"-u", "-p"}}},
      {10, {{"-u", "-n"}}},
      {12, {{"-uhid", "-w"}}},
  };
  for (const auto& [status, commandLines] : rows) {
    for (Arguments arguments : commandLines) {
      const Package package;
      package.add("old.xml", "kept");
      if (!arguments.empty()) arguments.insert(arguments.begin(), {"-o", "old.xml"});
      const ProgramResult run = package.run(arguments);
      EXPECT_EQ(run.exitCode, status);
      EXPECT_EQ(run.output, kDeclaration + statusElement(status));
      EXPECT_EQ(readFile(package / "old.xml"), "kept");
      EXPECT_FALSE(exists(package / "tolvanix_debug.log"));
    }
  }
}

// The document goes to the file, too, once that is accepted; the default debug file never matters.
TEST(CommandLine, FileCannotBeUsed_StatusStandsInTheCommandsElement) {
  const Row rows[] = {
      {11, {{"-uhid"}, {"-uhid", "-d=1"}}},
      {13, {{"-i", "-o", "folder"}, {"-i", "-o", "none/out.xml"}, {"-uhid", "-o", "folder"}}},
      {14, {{"-i", "-d=1", "-e", "folder"}, {"-i", "-d=1", "-e", debugFileName(256)}}},
      {15, {{"-uhid", "-n", "none.inf"}, {"-uhid", "-n", "folder"}, {"-u", "-n", "none.inf"}}},
      {16, {{"-u"}, {"-u", "-p", "folder"}}},
      {23, {{"-u", "-p", "text"}}},
  };
  const Package package;
  package.add("folder/in.txt", "");
  package.add("tolvanix_debug.log/in.txt", "");
  package.add("text", "");
  for (const auto& [status, commandLines] : rows) {
    for (Arguments arguments : commandLines) {
      const std::string document = arguments[0] == "-i"
                                       ? kDeclaration + R"(<SVMInventory lang="en">)" +
                                             statusElement(status) + "</SVMInventory>"
                                       : executionDocument(statusElement(status));
      const ProgramResult run = package.run(arguments);
      EXPECT_EQ(run.exitCode, status);
      EXPECT_EQ(run.output, document);
      if (status == 13) continue;
      package.add("out.xml", std::string(1000, 'x'));
      arguments.insert(arguments.begin(), {"-o", "out.xml"});
      EXPECT_EQ(package.run(arguments).output, "");
      EXPECT_EQ(readText(package / "out.xml"), document);
    }
  }
}

TEST(CommandLine, DebugFile_StartsWithItsSettings) {
  const Package package;
  package.add("named.log", "older");
  package.run({"-uhid"});
  EXPECT_EQ(readText(package / "tolvanix_debug.log"),
            "loglevel=0\nlogtarget=-1\nlogpathfile=tolvanix_debug.log\n");
  package.run({"-uhid", "-e", "named.log"});
  EXPECT_EQ(readText(package / "named.log"), "loglevel=0\nlogtarget=1\nlogpathfile=named.log\n");
  const std::string longest = debugFileName(255);
  package.run({"-uhid", "-d=1", "-e", longest});
  EXPECT_EQ(readText(package / "e.log"), "loglevel=1\nlogtarget=1\nlogpathfile=" + longest + '\n');
  package.run({"-uhid", "-e", debugFileName(256)});
  EXPECT_FALSE(exists(package / "e.lo")) << "a cut name is that of another file";
}

// Without a file the trace comes before the document. Level 2 has the error lines alone.
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
  EXPECT_THAT(package.explained(package.run({"-u", "-d=4", "-e", "trace.log"})),
              HasSubstr("What to do: "));
}

}  // namespace
}  // namespace tolvanix::test
