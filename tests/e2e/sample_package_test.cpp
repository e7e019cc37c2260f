// The sample package as it is delivered, on the sample computer.
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

// The devices of the package's vendor with their driver versions, and what became of each.
std::vector<std::string> devicesIn(const std::string& document) {
  static const std::regex device(
      R"~(<Device vendorID="1DE0" +deviceID="(\w+)".*?<Application [^>]*version="([\d.]+)"[^>]*>)~"
      R"~((?:<Package version="([\d.]+)"/>.*?<Message id="(\d+)">)?)~");
  std::vector<std::string> found;
  for (std::sregex_iterator at(document.begin(), document.end(), device);
       at != std::sregex_iterator(); ++at) {
    found.push_back((*at)[1].str() + ' ' + (*at)[2].str());
    if ((*at)[3].matched) found.back() += " > " + (*at)[3].str() + ": " + (*at)[4].str();
  }
  return found;
}

using Devices = std::vector<std::string>;

class SamplePackage : public ::testing::Test {
 protected:
  SamplePackage() {
    for (const char* file : {"package.xml", "samplenet.inf", "samplestor.inf", "kivvalid.dll",
                             "tolvanixhelper64/tolvanixhelper64.exe"}) {
      package.addCopy(file, std::filesystem::path(SAMPLE_PACKAGE) / file);
    }
    package.addCopy("computer.reg", SAMPLE_COMPUTER);
  }
  void changePackage(const std::string& from, const std::string& to) const {
    std::string text = readText(package / "package.xml");
    text.replace(text.find(from), from.size(), to);
    package.add("package.xml", text);
  }
  // The findings of a check, as "type: message".
  std::vector<std::string> findings(const Computer& computer) const {
    const std::string trace = package.run({"-u", "-c", "-d=4"}, computer).output;
    static const std::regex finding(
        "<Validation type=\"(\\w+)\" result=\"\\w+\"><Message>(.*?)</Message>");
    std::vector<std::string> found;
    for (std::sregex_iterator at(trace.begin(), trace.end(), finding); at != std::sregex_iterator();
         ++at) {
      found.push_back((*at)[1].str() + ": " + (*at)[2].str());
    }
    return found;
  }

  Package package;
};

TEST_F(SamplePackage, Check_FindsBothDevices) {
  const Computer computer(package / "computer.reg");
  const ProgramResult run = package.run({"-u", "-c"}, computer);
  EXPECT_EQ(run.exitCode, 34);
  EXPECT_EQ(devicesIn(run.output),
            (Devices{"0010 1.0.0.5 > 1.1.0.12: 34", "0020 2.1.0.0 > 2.1.10.0: 34"}));
  EXPECT_EQ(findings(computer), Devices{});
}

TEST_F(SamplePackage, Rules_GiveTheFindings) {
  const Computer computer(package / "computer.reg");
  const std::string net = "Sample Gigabit Network Adapter: version 1.0.0.5 ";
  const struct {
    std::string from;
    std::string to;
    std::string finding;
  } rows[] = {
      {R"(minimumVersion="1.0")", R"(minimumVersion="1.0.0.6")",
       "hard: " + net + "is too old; the package needs at least 1.0.0.6."},
      {R"(version="1.1.0.12")", R"(version="1.0.00.05")", "info: " + net + "is installed already."},
      {R"(version="1.1.0.12")", R"(version="1.0.0")",
       "soft: " + net + "is newer than the package&apos;s 1.0.0."},
      {R"(minimumVersion="6.1")", R"(minimumVersion="10.1")",
       "qualification: The operating system&apos;s version is 10.0; the package needs at least "
       "10.1."},
      {"</SupportedDevices>", "", "qualification: The package description cannot be read."},
      {R"(vendorID="1DE0")", R"(vendorID="x")",
       "qualification: The package description cannot be read."},
  };
  const std::string original = readText(package / "package.xml");
  for (const auto& row : rows) {
    package.add("package.xml", original);
    changePackage(row.from, row.to);
    EXPECT_EQ(findings(computer), Devices{row.finding});
    const bool refused = row.finding.starts_with("hard") || row.finding.starts_with("qual");
    EXPECT_EQ(package.run({"-u", "-c"}, computer).exitCode, refused ? 21 : 34);
  }
}

TEST_F(SamplePackage, OtherComputer_IsRefused) {
  const Computer computer(fixture("computers/four_devices.reg"));
  EXPECT_EQ(findings(computer),
            Devices{"qualification: The computer has no device that the package supports."});
}

// Only off Windows does the helper change what a test may change.
TEST_F(SamplePackage, Update_BringsTheNewDriversAndThenHasNothingToDo) {
  const Computer computer(package / "computer.reg");
  if (computer.environment().empty()) GTEST_SKIP() << "the helper would install into this system";
  EXPECT_EQ(devicesIn(package.run({"-i"}, computer).output),
            (Devices{"0010 1.0.0.5", "0020 2.1.0.0"}));
  const ProgramResult first = package.run({"-u"}, computer);
  EXPECT_EQ(first.exitCode, 0);
  EXPECT_EQ(devicesIn(first.output),
            (Devices{"0010 1.0.0.5 > 1.1.0.12: 0", "0020 2.1.0.0 > 2.1.10.0: 0"}));
  EXPECT_EQ(devicesIn(package.run({"-i"}, computer).output),
            (Devices{"0010 1.1.0.12", "0020 2.1.10.0"}));
  const ProgramResult second = package.run({"-u"}, computer);
  EXPECT_EQ(second.exitCode, 0);
  EXPECT_EQ(devicesIn(second.output), Devices{});
  EXPECT_EQ(findings(computer),
            (Devices{"info: Sample Gigabit Network Adapter: version 1.1.0.12 is installed already.",
                     "info: Sample Storage Controller: version 2.1.10.0 is installed already."}));
}

}  // namespace
}  // namespace tolvanix::test
