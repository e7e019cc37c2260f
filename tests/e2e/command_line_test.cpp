// What a user meets first: help, version, and every command line that the program refuses.
#include <gtest/gtest.h>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

const std::string kDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

std::string failure(int status, const std::string& message) {
  return R"(<SPStatus result = "false"><Message id=")" + std::to_string(status) + "\">" + message +
         "</Message></SPStatus>";
}

std::string inventoryFailure(int status, const std::string& message) {
  return kDeclaration + R"(<SVMInventory lang="en">)" + failure(status, message) +
         "</SVMInventory>";
}

std::string executionFailure(int status, const std::string& message) {
  return kDeclaration + R"(<SVMExecution lang="en">)" + failure(status, message) +
         "<RebootRequired>0</RebootRequired></SVMExecution>";
}

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
  struct Row {
    Arguments arguments;
    int status;
    std::string message;
  };
  const Row rows[] = {
      {{}, 2, "No command line arguments were specified."},
      {{"-bad", "-h"}, 3, "An invalid command line argument was specified."},
      {{"-d"}, 3, "An invalid command line argument was specified."},
      {{"-i", "-D=1"}, 3, "An invalid command line argument was specified."},
      {{"-i", ""}, 3, "An invalid command line argument was specified."},
      {{"-c"}, 4, "No command was specified on the command line."},
      {{"-o", "-i"}, 4, "No command was specified on the command line."},
      {{"-i", "-u"}, 5, "Multiple or duplicate commands have been specified."},
      {{"-uhid", "-uhid", "-h"}, 5, "Multiple or duplicate commands have been specified."},
      {{"-i", "-d=5"}, 6, R"(An invalid debug level was specified with the "-d" argument.)"},
      {{"-i", "-d=10"}, 6, R"(An invalid debug level was specified with the "-d" argument.)"},
      {{"-i", "-d="}, 6, R"(An invalid debug level was specified with the "-d" argument.)"},
      {{"-i", "-o"}, 7, R"(The "-o" argument is missing an output filename string.)"},
      {{"-i", "-e"}, 8, R"(The "-e" argument is missing a debug filename string.)"},
      {{"-u", "-p"}, 9, R"(The "-p" argument is missing a package XML filename string.)"},
      {{"-u", "-n"}, 10, R"(The "-n" argument is missing an INF filename string.)"},
      {{"-uhid", "-w"}, 12, R"(The "-w" argument is missing a hardware ID string.)"},
  };
  for (const Row& row : rows) {
    const Package package;
    package.add("old.xml", "kept");
    Arguments arguments = row.arguments;
    if (!arguments.empty()) arguments.insert(arguments.begin(), {"-o", "old.xml"});
    const ProgramResult run = package.run(arguments);
    EXPECT_EQ(run.exitCode, row.status);
    EXPECT_EQ(run.output,
              kDeclaration + failure(row.status, "Command line error: " + row.message +
                                                     " Run the program with \"-h\" to see program"
                                                     " help."));
    EXPECT_EQ(readFile(package / "old.xml"), "kept");
    EXPECT_FALSE(exists(package / "tolvanix_debug.log"));
  }
}

TEST(CommandLine, FileCannotBeUsed_StatusStandsInTheCommandsElement) {
  struct Row {
    Arguments arguments;
    int status;
    std::string document;
  };
  const std::string noOutput =
      "Command line error: Can not open the specified output file for appending.";
  const std::string noDebug =
      "Command line error: Can not open the specified debug file for appending.";
  const std::string noInf =
      "Command line error: Either can not find the specified INF file, or can not open it for "
      "reading.";
  const std::string noPackage =
      "Either can not find the package XML file, or can not open it for reading.";
  const std::string noLibrary = "The update failed because the program could not ";
  const std::string noHardwareId =
      "Command line error: A \"-w\" argument is missing. The \"-uhid\" command requires it. Run "
      "the "
      "program with \"-h\" to see program help.";
  const Row rows[] = {
      {{"-i", "-o", "folder"}, 13, inventoryFailure(13, noOutput)},
      {{"-i", "-o", "none/out.xml"}, 13, inventoryFailure(13, noOutput)},
      {{"-uhid", "-o", "folder"}, 13, executionFailure(13, noOutput)},
      {{"-i", "-d=1", "-e", "folder"}, 14, inventoryFailure(14, noDebug)},
      {{"-uhid", "-n", "none.inf"}, 15, executionFailure(15, noInf)},
      {{"-uhid", "-n", "folder"}, 15, executionFailure(15, noInf)},
      {{"-u", "-p", "none.xml", "-n", "none.inf"}, 15, executionFailure(15, noInf)},
      {{"-u"}, 16, executionFailure(16, noPackage)},
      {{"-u", "-p", "folder"}, 16, executionFailure(16, noPackage)},
      {{"-u", "-p", "text"},
       23,
       executionFailure(23, noLibrary + "find the following DLL file: kivvalid.dll")},
      {{"-uhid"}, 11, executionFailure(11, noHardwareId)},
  };
  for (const Row& row : rows) {
    const Package package;
    package.add("folder/in.txt", "");
    package.add("text", "");
    const ProgramResult run = package.run(row.arguments);
    EXPECT_EQ(run.exitCode, row.status);
    EXPECT_EQ(run.output, row.document);
  }
}

TEST(CommandLine, OutputFileAccepted_HoldsTheStatusAndNothingOlder) {
  const Package package;
  package.add("out.xml", std::string(1000, 'x'));
  package.add("package.xml", "");
  package.add("kivvalid.dll", "no library");
  const ProgramResult run = package.run({"-u", "-o", "out.xml"});
  EXPECT_EQ(run.exitCode, 24);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(readText(package / "out.xml"),
            executionFailure(24,
                             "The update failed because the program could not load the following "
                             "DLL file: kivvalid.dll"));
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
