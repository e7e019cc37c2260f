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
