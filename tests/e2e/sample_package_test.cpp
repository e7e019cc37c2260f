// The sample package as it is delivered, on the sample computer.
#include <gtest/gtest.h>

#include <utility>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

using Texts = std::vector<std::string>;

// What is between two texts, each time that they occur.
Texts between(const std::string& text, const std::string& before, const std::string& behind) {
  Texts found;
  for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before, at)) {
    at += before.size();
    found.push_back(text.substr(at, text.find(behind, at) - at));
  }
  return found;
}

class SamplePackage : public ::testing::Test {
 protected:
  SamplePackage() {
    remove(package.program());  // it comes with the package
    std::filesystem::copy(SAMPLE_PACKAGE, package.path(), std::filesystem::copy_options::recursive);
    writeFile(registry / "computer.reg", readFile(SAMPLE_COMPUTER));
  }
  // The devices of the package's vendor with their driver versions in the document of such a run,
  // and what became of each.
  Texts devicesAfter(const Arguments& arguments) const {
    const std::string document = package.run(arguments).output;
    Texts devices;
    for (const std::string& device : between(document, "<Device vendorID=\"1DE0\"", "</Device>")) {
      const Texts versions = between(device, " version=\"", "\"");
      devices.push_back(between(device, "deviceID=\"", "\"").at(0) + ' ' + versions.at(0));
      if (versions.size() > 1) {
        devices.back() += " > " + versions[1] + ": " + between(device, "id=\"", "\"").at(0);
      }
    }
    return devices;
  }
  // Checks the package: the exit code, and the findings as "type result: message".
  std::pair<int, Texts> check() const {
    const int status = package.run({"-u", "-c", "-d=4", "-e", "trace.log"}).exitCode;
    const std::string trace = readText(package / "trace.log");
    Texts found;
    for (const std::string& finding : between(trace, "<Validation ", "</Validation>")) {
      found.push_back(between(finding, "type=\"", "\"").at(0) + ' ' +
                      between(finding, "result=\"", "\"").at(0) + ": " +
                      between(finding, "<Message>", "</Message>").at(0));
    }
    return {status, found};
  }

  Package package;
  const TempDir registry;  // beside the package, since the helper changes it off Windows
};

TEST_F(SamplePackage, Rules_GiveTheFindings) {
  const Computer computer(registry / "computer.reg");
  const char* const unreadable = "qualification false: The package description cannot be read.";
  const std::string net = "Sample Gigabit Network Adapter: version 1.0.0.5 ";
  const struct {
    std::string from;  // the change of the package description
    std::string to;
    std::string finding;
  } rows[] = {
      {R"(minimumVersion="1.0")", R"(minimumVersion="1.0.0.6")",
       "hard false: " + net + "is too old; the package needs at least 1.0.0.6."},
      {R"(version="1.1.0.12")", R"(version="1.0.00.05")",
       "info true: " + net + "is installed already."},
      {R"(version="1.1.0.12")", R"(version="1.0.0")",
       "soft true: " + net + "is newer than the package&apos;s 1.0.0."},
      {R"(minimumVersion="6.1")", R"(minimumVersion="10.1")",
       "qualification false: The operating system&apos;s version is 10.0; the package needs at "
       "least 10.1."},
      {"</SupportedDevices>", "", unreadable},
      {R"( subVendorID="1DE0")", "", unreadable},
      {R"(vendorID="1DE0")", R"(vendorID="x")", unreadable},
      {R"(vendorID="1DE0")", R"(vendorID="000001DE0")", unreadable},
      {R"(version="1.1.0.12")", "", unreadable},
  };
  const std::string original = readText(package / "package.xml");
  for (const auto& row : rows) {
    std::string text = original;
    package.add("package.xml", text.replace(text.find(row.from), row.from.size(), row.to));
    const bool refused = row.finding.starts_with("hard") || row.finding.starts_with("qual");
    EXPECT_EQ(check(), std::pair(refused ? 21 : 34, Texts{row.finding}));
  }
}

TEST_F(SamplePackage, OtherComputer_IsRefused) {
  const Computer computer(fixture("computers/four_devices.reg"));
  const std::string finding =
      "qualification false: The computer has no device that the package supports.";
  EXPECT_EQ(check(), std::pair(21, Texts{finding}));
}

TEST_F(SamplePackage, Update_BringsTheNewDrivers) {
  const Computer computer(registry / "computer.reg");
  EXPECT_EQ(check(), std::pair(34, Texts{}));
  EXPECT_EQ(devicesAfter({"-u", "-c"}),
            (Texts{"0010 1.0.0.5 > 1.1.0.12: 34", "0020 2.1.0.0 > 2.1.10.0: 34"}));
  EXPECT_EQ(devicesAfter({"-i"}), (Texts{"0010 1.0.0.5", "0020 2.1.0.0"}));
  EXPECT_EQ(devicesAfter({"-u"}),
            (Texts{"0010 1.0.0.5 > 1.1.0.12: 0", "0020 2.1.0.0 > 2.1.10.0: 0"}));
}

TEST_F(SamplePackage, SecondUpdate_HasNothingToDo) {
  if (std::filesystem::path::preferred_separator == '\\') GTEST_SKIP() << "Wine changes no driver";
  const Computer computer(registry / "computer.reg");
  package.run({"-u"});
  EXPECT_EQ(devicesAfter({"-i"}), (Texts{"0010 1.1.0.12", "0020 2.1.10.0"}));
  EXPECT_EQ(devicesAfter({"-u"}), Texts{});
  EXPECT_EQ(check(), std::pair(0, Texts{"info true: Sample Gigabit Network Adapter: version "
                                        "1.1.0.12 is installed already.",
                                        "info true: Sample Storage Controller: version 2.1.10.0 "
                                        "is installed already."}));
}

TEST_F(SamplePackage, FolderAndFilesOfAnyName_BringTheNewDrivers) {
  const std::filesystem::path wide = u"\u0141\u00F3d\u017A \u65E5\u672C \u00E9";
  const std::string name = wide.string();
  const TempDir parent;
  const auto folder = parent.path() / wide;
  // On Windows the standard library does not read the narrow text of a path as UTF-8.
  const auto file = [&](const char* extension) { return (folder / wide) += extension; };
  std::filesystem::copy(package.path(), folder, std::filesystem::copy_options::recursive);
  rename(folder / "package.xml", file(".p"));
  rename(folder / "samplenet.inf", file(".inf"));
  Arguments arguments = {"-u", "-p", name + ".p", "-o", name + ".o", "-d=4", "-e", name + ".e"};
  for (const char* const ofOtherInf : {"0", "36"}) {
    writeFile(registry / "computer.reg", readFile(SAMPLE_COMPUTER));
    const Computer computer(registry / "computer.reg");
    runProgram(folder / package.program().filename(), arguments);
    EXPECT_EQ(between(readText(file(".o")), "<Message id=\"", "\""), (Texts{"0", ofOtherInf}));
    EXPECT_NE(readText(file(".e")).find('\\' + name + '\\' + name + ".inf\n"), std::string::npos);
    arguments.insert(arguments.end(), {"-n", name + ".inf"});
  }
}

}  // namespace
}  // namespace tolvanix::test
