// kit/collect-computer.cmd, which runs on Windows alone.
#include <gtest/gtest.h>

#include "support/Computer.h"
#include "support/Files.h"
#include "support/Package.h"
#include "support/Program.h"

namespace tolvanix::test {
namespace {

// The comparison of the platforms takes the inventory of what is exported here.
TEST(CollectComputer, Command_ExportsWhatDescribesTheDevices) {
  if (std::filesystem::path::preferred_separator == '/') GTEST_SKIP() << "there is no cmd here";
  const Computer computer(fixture("computers/four_devices.reg"));
  const Package package;
  const std::string file = (package / "computer.reg").string();
  const ProgramResult result = runProgram(COLLECT_COMPUTER, {file});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.output + result.errors, "");
  package.run({"-i"});
  const std::string bytes = readFile(file);
  std::size_t at = 0;
  for (const std::u16string_view part :
       {u"Windows Registry Editor Version 5.00", u"PCI\\VEN_1DE4&DEV_0001", u"\"HardwareID\"=",
        u"Windows Registry Editor Version 5.00", u"\"DriverVersion\"=",
        u"Windows Registry Editor Version 5.00", u"\"CurrentVersion\"="}) {
    const std::string wide = utf16File(part).substr(2);
    at = bytes.find(wide, at);
    ASSERT_NE(at, std::string::npos) << std::string(part.begin(), part.end());
    at += wide.size();
  }

  const ProgramResult again = runProgram(COLLECT_COMPUTER, {file});
  EXPECT_EQ(again.exitCode, 2);
  EXPECT_EQ(again.errors, "collect-computer.cmd: \"" + file + "\" exists already\n");
  EXPECT_EQ(readFile(file), bytes);
  EXPECT_EQ(runProgram(COLLECT_COMPUTER, {}).exitCode, 2);
}

}  // namespace
}  // namespace tolvanix::test
