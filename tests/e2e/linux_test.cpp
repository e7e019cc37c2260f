// Whole runs that only Linux can have: devices that refuse every byte, and locales.
#include <gtest/gtest.h>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

TEST(FullDevice, OutputFile_FragmentsAreLostAndStatusStays) {
  const Package package;
  const ProgramResult run = package.run({"-uhid", "-o", "/dev/full", "-d=4", "-e", "trace.log"});
  EXPECT_EQ(run.exitCode, 11);
  EXPECT_EQ(run.output, "");
  EXPECT_NE(readText(package / "trace.log")
                .find("XMLWriter::print: failed to write xml file /dev/full.\n"),
            std::string::npos);
}

TEST(FullDevice, StandardOutput_StatusStays) {
  const Package package;
  ProgramCall call = package.call({"-uhid"});
  call.outputDevice = "/dev/full";
  EXPECT_EQ(runProgram(call).exitCode, 11);
}

// A "\\" in a name is part of it for the C library, and a folder's end for the platform's search.
TEST(HardwareId, NamedInfThatTheSearchDoesNotFind_IsReported) {
  const Package package;
  package.add("a\\b.inf", "");
  const ProgramResult run = package.run({"-uhid", "-w", "PCI\\VEN_8086", "-n", "a\\b.inf"});
  EXPECT_EQ(run.exitCode, 31);
  EXPECT_NE(run.output.find(R"(<Message id="31">)"), std::string::npos);
}

TEST(Locale, AnyLocale_GivesTheSameBytes) {
  const Package package;
  const Computer computer(fixture("computers/four_devices.reg"));
  const Arguments arguments{"-i", "-d=4"};
  const ProgramResult expected = package.run(arguments, computer);
  for (const char* locale : {"C", "C.UTF-8", "de_DE.UTF-8", "ja_JP.SJIS", "none"}) {
    ProgramCall call = package.call(arguments);
    call.environment = computer.environment();
    call.environment["LC_ALL"] = locale;
    const ProgramResult run = runProgram(call);
    EXPECT_EQ(run.exitCode, expected.exitCode);
    EXPECT_EQ(run.output, expected.output);
  }
}

}  // namespace
}  // namespace tolvanix::test
