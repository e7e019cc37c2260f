// tolvanixkit check, as a package author runs it.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <sstream>

#include "check/PeFile.h"
#include "support/Files.h"
#include "support/Matchers.h"
#include "support/Package.h"
#include "support/Patterns.h"

namespace tolvanix::test {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;
using namespace std::string_literals;

constexpr bool kOnWindows = fs::path::preferred_separator == '\\';
const std::string kNet = "PCI\\VEN_1DE0&DEV_0010&SUBSYS_00011DE0";
const std::string kStor = "PCI\\VEN_1DE0&DEV_0020&SUBSYS_00021DE0";
const std::string kProgram = kOnWindows ? "tolvanix.exe" : "tolvanix";

std::string changed(std::string text, const std::string& from, const std::string& to) {
  std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  for (; at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

class Check : public ::testing::Test {
 protected:
  Check() { restore(); }

  void restore() {
    fs::remove_all(package());
    fs::copy(SAMPLE_PACKAGE, package(), fs::copy_options::recursive);
  }

  fs::path package() const { return folder / "package"; }
  std::string read(const std::string& name) const { return readFile(package() / name); }
  void write(const std::string& name, const std::string& bytes) const {
    writeFile(package() / name, bytes);
  }
  void edit(const std::string& name, const std::string& from, const std::string& to) const {
    write(name, changed(read(name), from, to));
  }
  void remove(const std::string& name) const { fs::remove_all(package() / name); }

  ProgramResult run(Arguments more = {}) const {
    more.insert(more.begin(), {"check", package().string()});
    return runKit(more);
  }

  const TempDir folder;
};

// Every file below a folder, with its bytes.
std::map<fs::path, std::string> contents(const fs::path& folder) {
  std::map<fs::path, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files[entry.path()] = readFile(entry.path());
  }
  return files;
}

// A table's line, however wide its columns are.
std::string withoutPadding(const std::string& text) {
  return replaced(text, " {2,}", "  ");
}

// The lines of findings.
Texts findingsIn(const ProgramResult& result) {
  Texts found;
  std::istringstream lines(result.output);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("error: ") || line.starts_with("warning: ")) found.push_back(line);
  }
  return found;
}

TEST_F(Check, SamplePackage_HasNoFindings) {
  const ProgramResult result = run();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.errors, "");
  const std::string text = withoutPadding(result.output);
  EXPECT_THAT(text, HasSubstr("\nsamplenet.inf  ASCII  Net  1.1.0.12\n"));
  EXPECT_THAT(text, HasSubstr('\n' + kStor + "  2.1.10.0  samplestor.inf\n"));
  EXPECT_THAT(text, EndsWith("\nNo findings.\n"));
}

std::string takenBefore(const std::string& first, const std::string& id, const std::string& other) {
  return "error: " + first + ": it is taken for " + id + " before " + other +
         ", which lists the ID more exactly; list more of the ID, or give the file a name after "
         "the other's";
}
std::string inNoInf(const std::string& id) {
  return "error: package.xml: " + id + " is in no INF file; list it in one, or take the device out";
}

TEST_F(Check, EachTrap_IsFound) {
  const std::string system = kOnWindows ? "Windows" : "Linux";
  const std::string emptyId =
      "error: samplenet.inf: the model \"Sample Gigabit Network Adapter\" has an empty hardware "
      "ID, "
      "so the file is taken for every device; give the model its hardware ID";
  const std::string shortId = "PCI\\VEN_1DE0&REV_" + std::string(kNet.size(), '0');
  const struct {
    std::function<void()> trap;
    Texts findings;
  } rows[] = {
      {[&] { write("a.inf", changed(read("samplenet.inf"), kNet, shortId)); },
       {takenBefore("a.inf", kNet, "samplenet.inf"),
        takenBefore("a.inf", kStor, "samplestor.inf")}},
      {[&] { edit("samplestor.inf", "2.1.10.0", "2.1.10.1"); },
       {"error: package.xml: it promises version 2.1.10.0 for " + kStor +
        ", and samplestor.inf brings 2.1.10.1; make the version and the file's DriverVer the "
        "same"}},
      {[&] { edit("samplestor.inf", "2.1.10.0", "2.01.10"); }, {}},
      {[&] { edit("kivvalid.dll", "SPValidate"s + '\0', "SPValidat_"s + '\0'); },
       {"error: kivvalid.dll: it does not export SPValidate; export it by that very name "
        "(sdk/kivvalid.h)"}},
      {[&] { edit("package.xml", "\"0020\"", "\"0021\""); },
       {inNoInf("PCI\\VEN_1DE0&DEV_0021&SUBSYS_00021DE0")}},
      {[&] { remove("tolvanixhelper64"); },
       {"error: "s + kHelperFile + ": the helper program is missing; put it there, by that name"}},
      {[&] {
         std::string bytes = "\xFE\xFF";
         for (const char c : read("samplenet.inf")) (bytes += '\0') += c;
         write("samplenet.inf", bytes);
       },
       {"error: samplenet.inf: it is in UTF-16 big-endian; save it as UTF-16 (little-endian) with "
        "a byte-order mark, or as ASCII",
        inNoInf(kNet)}},
      {[&] { edit("samplenet.inf", "Device.Install, " + kNet, "Device.Install"); },
       {emptyId, takenBefore("samplenet.inf", kStor, "samplestor.inf")}},
      {[&] { edit("samplenet.inf", kNet, kNet + ", &REV_01"); },
       {emptyId, takenBefore("samplenet.inf", kStor, "samplestor.inf")}},
      {[&] { edit("samplenet.inf", "Signature ", "Signed "); },
       {"error: samplenet.inf: it has no signature of an INF file; write Signature = \"$Windows "
        "NT$\" into [Version]",
        inNoInf(kNet)}},
      {[&] { edit("samplenet.inf", "DriverVer ", "Version "); },
       {"error: samplenet.inf: its DriverVer has no version; write DriverVer = <date>,<version> "
        "into [Version]"}},
      {[&] {
         remove(kProgram);
         write("kivvalid.dll", "text");
         write(kHelperFile, "text");
       },
       {"error: " + kProgram + ": the program is missing; put it there, by that name",
        "error: kivvalid.dll: this is no program, and the package is for " + system +
            "; build it for the program's system",
        "error: "s + kHelperFile + ": this is no program; build it as a program for " + system}},
  };
  for (const auto& row : rows) {
    restore();
    row.trap();
    const ProgramResult result = run();
    EXPECT_EQ(findingsIn(result), row.findings);
    EXPECT_EQ(result.exitCode, row.findings.empty() ? 0 : 1) << result.output;
  }
}

// Only what is read of one is in it.
std::string windowsLibrary(const Texts& exports) {
  std::string bytes(0x600, '\0');
  const auto put = [&bytes](std::size_t at, const std::string& text) {
    bytes.replace(at, text.size(), text);
  };
  const auto number = [&put](std::size_t at, std::uint32_t value) {
    std::string digits;
    for (int i = 0; i < 4; ++i) digits += static_cast<char>(value >> (8 * i));
    put(at, digits);
  };
  put(0, "MZ");
  number(0x3C, 0x40);
  put(0x40, "PE");
  number(0x44, 0x0001'8664);  // one section, x64
  number(0x54, 0xF0);         // the size of the optional header
  number(0x58, 0x20B);
  number(0xC4, 16);  // directories, the first that of exports
  number(0xC8, 0x1000);
  number(0x154, 0x1000);  // the section's address, size and place in the file
  number(0x158, 0x400);
  number(0x15C, 0x200);
  number(0x218, static_cast<std::uint32_t>(exports.size()));
  number(0x220, 0x1040);
  for (std::uint32_t i = 0; i < exports.size(); ++i) {
    number(0x240 + 4 * i, 0x1080 + 0x20 * i);
    put(0x280 + 0x20 * i, exports[i]);
  }
  return bytes;
}

TEST_F(Check, WindowsLibrary_IsReadWithinItsBytes) {
  const Texts exports = {"SPFreeValidationXML", "SPValidate"};
  if (kOnWindows) {
    EXPECT_EQ(kit::peExports(read("kivvalid.dll")), exports);
  }
  const std::string whole = windowsLibrary(exports);
  EXPECT_EQ(kit::peExports(whole), exports);
  EXPECT_EQ(kit::peExports(read("package.xml")), std::nullopt);
  EXPECT_EQ(kit::peExports(std::string(whole).replace(0x44, 2, "\x4C\x01")), std::nullopt);  // x86
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::vector<char> part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const auto names = kit::peExports({part.data(), part.size()});
    EXPECT_EQ(names.has_value(), size >= 0x2AB) << size;  // up to the zero of the last name
  }
  for (std::size_t at = 0; at + 4 <= whole.size(); ++at) {
    std::vector<char> damaged(whole.begin(), whole.end());
    std::fill_n(damaged.begin() + static_cast<std::ptrdiff_t>(at), 4, '\xFF');
    kit::peExports({damaged.data(), damaged.size()});  // the sanitizers look
  }
}

TEST_F(Check, Computers_ShowWhatAnUpdateDoes) {
  const std::string sample = (folder / "sample.reg").string();
  const std::string other = fixture("computers/four_devices.reg").string();
  writeFile(sample, readFile(SAMPLE_COMPUTER));
  const auto before = contents(folder.path());
  const ProgramResult result = run({sample, other});
  EXPECT_EQ(contents(folder.path()), before);
  if (kOnWindows) {
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors,
              "tolvanixkit: " + sample + ": a package can be tried on computers on Linux only\n");
    return;
  }
  EXPECT_EQ(result.exitCode, 0);
  for (const std::string& line :
       {sample + "  Sample Gigabit Network Adapter  1.0.0.5    installed\n",
        sample + "  Sample Storage Controller       2.1.0.0    installed\n",
        other + "  (the run)  failed (21): the package is refused by its validation library\n",
        other + "  (validation library)  qualification: The computer has no device that the "
                "package supports.\n"}) {
    EXPECT_NE(withoutPadding(result.output).find(withoutPadding(line)), std::string::npos)
        << result.output;
  }

  // What fails there is a finding, with what the helper said.
  edit("samplenet.inf", "1.1.0.12", "1.0.0.0");
  edit("package.xml", "1.1.0.12", "1.1");
  const Texts found = findingsIn(run({sample}));
  ASSERT_EQ(found.size(), 2U);
  EXPECT_NE(found[1].find("samplenet.inf: is older than the installed driver"), std::string::npos)
      << found[1];
}

TEST_F(Check, WindowsPackage_IsTriedWithLinuxBuilds) {
  if (kOnWindows) GTEST_SKIP() << "packages are tried on Linux only";
  const std::string library = (folder / "library").string();
  const std::string helper = (folder / "helper").string();
  fs::rename(package() / "kivvalid.dll", library);
  fs::rename(package() / kHelperFile, helper);
  fs::rename(package() / "package.xml", package() / "Package.XML");
  EXPECT_EQ(findingsIn(run()).size(), 3U);  // of a package for Linux the letter case counts
  remove("tolvanix");
  write("Tolvanix.exe", "MZ");
  write(kHelperFile, "MZ");
  write("kivvalid.dll", windowsLibrary({"SPValidate", "SPFreeValidationXML"}));
  EXPECT_EQ(run().exitCode, 0);
  const ProgramResult tried = run({SAMPLE_COMPUTER, "--library", library, "--helper", helper});
  EXPECT_EQ(tried.exitCode, 0);
  EXPECT_THAT(tried.output, HasSubstr("2.1.0.0    installed\n"));
  EXPECT_EQ(run({SAMPLE_COMPUTER}).errors,
            "tolvanixkit: kivvalid.dll is for Windows: name a build for Linux with --library\n");

  write("kivvalid.dll", windowsLibrary({"SPValidate"}));
  EXPECT_EQ(findingsIn(run()), Texts{"error: kivvalid.dll: it does not export SPFreeValidationXML; "
                                     "export it by that very name (sdk/kivvalid.h)"});
  write("kivvalid.dll", "MZ");
  EXPECT_EQ(
      findingsIn(run()),
      Texts{"error: kivvalid.dll: this is no whole library for 64-bit Windows; build it anew"});
}

TEST_F(Check, DocumentsThatBreakTheirSchema_AreFound) {
  if (kOnWindows) GTEST_SKIP() << "xmllint is not there";
  edit("package.xml", "minimumVersion=\"6.1\"", "minimum=\"6.1\"");
  EXPECT_EQ(findingsIn(run()),
            Texts{"error: package.xml: line 7: Element 'OperatingSystem', attribute 'minimum': The "
                  "attribute 'minimum' is not allowed; compare it with sdk/package.xsd"});
  restore();
  // A document that the program takes and a schema does not.
  placeValidationLibrary(package(), "<V><Validation type=\"info\"></Validation></V>");
  const Texts found = findingsIn(run({SAMPLE_COMPUTER}));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_TRUE(found[0].starts_with("error: validation document for ")) << found[0];
}

}  // namespace
}  // namespace tolvanix::test
