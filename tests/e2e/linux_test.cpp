// Whole runs that only Linux can have: devices that refuse every byte, and locales.
#include <gtest/gtest.h>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

TEST(FullDevice, FragmentsAreLostAndTheStatusStays) {
  const Package package;
  const ProgramResult run = package.run({"-uhid", "-o", "/dev/full", "-d=4", "-e", "trace.log"});
  EXPECT_EQ(run.exitCode, 11);
  EXPECT_EQ(run.output, "");
  EXPECT_NE(readText(package / "trace.log")
                .find("XMLWriter::print: failed to write xml file /dev/full.\n"),
            std::string::npos);
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
}

TEST(Locale, AnyLocale_GivesTheSameBytes) {
  const Package package;
  const Computer computer(fixture("computers/four_devices.reg"));
  ProgramCall call = package.call({"-i", "-d=4"});
  call.environment = computer.environment();
  const std::string expected = runProgram(call).output;
  for (const char* locale : {"C", "C.UTF-8", "de_DE.UTF-8", "ja_JP.SJIS", "none"}) {
    call.environment["LC_ALL"] = locale;
    EXPECT_EQ(runProgram(call).output, expected);
  }
}

}  // namespace
}  // namespace tolvanix::test
