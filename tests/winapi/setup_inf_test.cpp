#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Files.h"
#include "winapi/Owner.h"

namespace tolvanix::test {
namespace {

constexpr char kFile[] = ".\\test.inf";
constexpr char kVersion[] = "[Version]\nSignature=\"$Windows NT$\"\nClass=Net\n";

std::optional<std::string> field(INFCONTEXT& line, DWORD index) {
  char text[5000] = "";
  DWORD size = 0;
  if (SetupGetStringFieldA(&line, index, text, sizeof text, &size) == FALSE) return std::nullopt;
  EXPECT_EQ(size, std::string_view(text).size() + 1);
  return text;
}

// "key=value|value", "-" for a line without a key.
std::string describe(INFCONTEXT& line) {
  std::string text = field(line, 0).value_or("-") + "=";
  for (DWORD i = 1; i <= SetupGetFieldCount(&line); ++i) {
    if (i > 1) text += '|';
    text += field(line, i).value_or("?");
  }
  return text;
}

class Inf : public testing::Test {
 protected:
  void write(std::string_view bytes) const { writeFile(folder / "test.inf", bytes); }

  static DWORD openError(const char* name = kFile) {
    const InfOwner inf(SetupOpenInfFileA(name, nullptr, INF_STYLE_WIN4, nullptr));
    return inf ? ERROR_SUCCESS : GetLastError();
  }

  // The lines of section S, in a file that has a usable [Version] and the text.
  std::vector<std::string> lines(const std::string& text) const {
    write(kVersion + text);
    return linesOfFile();
  }

  static std::vector<std::string> linesOfFile() {
    std::vector<std::string> found;
    const InfOwner inf(SetupOpenInfFileA(kFile, nullptr, INF_STYLE_WIN4, nullptr));
    INFCONTEXT line{};
    if (SetupFindFirstLineA(inf.get(), "s", nullptr, &line) == FALSE) return found;
    do found.push_back(describe(line));
    while (SetupFindNextLine(&line, &line) != FALSE);
    return found;
  }

  const CurrentTempDir folder;
};

using Lines = std::vector<std::string>;

TEST_F(Inf, Open_UnusableFiles_EachHaveTheirError) {
  const std::string longName(300, 'n');
  const std::vector<std::pair<std::string, DWORD>> rows = {
      {"[Version]\nSignature=$CHICAGO$\n", ERROR_SUCCESS},
      {"\n; comment\n[VERSION]\r\nSignature = \"$windows nt$\" ; x\r\n", ERROR_SUCCESS},
      {"\xEF\xBB\xBF[Version]\nSignature=\"$Windows NT$\"", ERROR_SUCCESS},
      {utf16File(u"[Version]\r\nSignature=\"$Windows NT$\"\r\n"), ERROR_SUCCESS},
      {"", ERROR_FILE_INVALID},
      {"; only a comment\n", ERROR_WRONG_INF_STYLE},
      {"[Strings]\na=b\n", ERROR_WRONG_INF_STYLE},
      {"[Version]\nClass=Net\n", ERROR_WRONG_INF_STYLE},
      {"[Version]\nSignature=\"$Other$\"\n", ERROR_WRONG_INF_STYLE},
      {"[Version]\nSignature=\"%s%\"\n[Strings]\ns=$Chicago$\n", ERROR_WRONG_INF_STYLE},
      {"text\n[Version]\nSignature=$Chicago$\n[Strings]\na=b\n", ERROR_SUCCESS},
      {"text\nk=v\n", ERROR_EXPECTED_SECTION_NAME},
      {"[Version]\nSignature=\"$Windows NT$\"\n[open\n", ERROR_BAD_SECTION_NAME_LINE},
      {"[" + longName + "]\n", ERROR_SECTION_NAME_TOO_LONG}};
  for (const auto& [bytes, error] : rows) {
    write(bytes);
    EXPECT_EQ(openError(), error) << bytes;
  }
}

TEST_F(Inf, Open_NamesThatAreNoFile) {
  write(kVersion);
  EXPECT_EQ(openError("test.inf"), ERROR_FILE_NOT_FOUND);  // the system's own folder is meant
  EXPECT_EQ(openError(".\\none.inf"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(openError(".\\none\\x.inf"), ERROR_PATH_NOT_FOUND);
  std::filesystem::create_directory(folder / "folder.inf");
  EXPECT_EQ(openError(".\\folder.inf"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(openError("./test.inf"), ERROR_SUCCESS);
  write("; one\n[Version]\n\n[open\n");
  UINT line = 0;
  SetupOpenInfFileA(kFile, nullptr, INF_STYLE_WIN4, &line);
  EXPECT_EQ(line, 4U);
}

TEST_F(Inf, Fields) {
  EXPECT_EQ(lines("[S]\nk = a, b\n"), Lines{"k=a|b"});
  EXPECT_EQ(lines("[S]\nk=\nk=,\nk=a,\nk=a,,b\n"), (Lines{"k=", "k=|", "k=a|", "k=a||b"}));
  EXPECT_EQ(lines("[S]\nalone\na, b\na=b=c, d\n"), (Lines{"alone=alone", "-=a|b", "a=b=c|d"}));
  EXPECT_EQ(lines("[S]\n\"k\" = \"a, b;c\", \" x \", a \"q\"\"b\" c\n"),
            Lines{"k=a, b;c| x |a q\"b c"});
  EXPECT_EQ(lines("[S]\nk = \"open, end\nl='a, b'\n"), (Lines{"k=open, end", "l='a|b'"}));
  EXPECT_EQ(lines("[S]\n;x\n  k = a ; b, c\n#l = a\n\n;\n"), (Lines{"k=a", "#l=a"}));
}

TEST_F(Inf, LineEndsAndEncodings) {
  for (const std::string& bytes :
       {std::string("[S]\r\nk = a, b\r\nl=c\r\n"), std::string("[S]\nk=a,b\nl=c"),
        std::string("[S] junk\r\n\tk\t=a\t,b\r\n\r\n  l=c\r\n\r\n")}) {
    EXPECT_EQ(lines(bytes), (Lines{"k=a|b", "l=c"}));
  }
  write(utf16File(u"[Version]\r\nSignature=\"$Windows NT$\"\r\n[S]\r\nk=a,b\r\nl=c"));
  EXPECT_EQ(linesOfFile(), (Lines{"k=a|b", "l=c"}));
}

TEST_F(Inf, Continuation_JoinsLines) {
  EXPECT_EQ(lines("[S]\nk = a,\\\n  b,\\ ; comment\r\n c\nl=d\n"), (Lines{"k=a|b|c", "l=d"}));
  EXPECT_EQ(lines("[S]\nk=\"a\\\"\nl=b\\c\n"), (Lines{"k=a\\", "l=b\\c"}));
  EXPECT_EQ(lines("[S]\nk = a \\"), Lines{"k=a"});
  EXPECT_EQ(lines("[S]\nk = a,\\\n[T]\nl=b\n"), (Lines{"k=a|[T]", "l=b"}));
}

TEST_F(Inf, SectionsOfOneName_AreOneWithoutRegardToCase) {
  EXPECT_EQ(lines("[s]\na=1\n[T]\nb=2\n[S]\n[S ]\nd=4\n[S]\nc=3\n"), (Lines{"a=1", "c=3"}));
}

TEST_F(Inf, Strings_AreReplacedOnce) {
  const std::string strings =
      "[Strings]\nname = \"Text, with \"\"quotes\"\"\"\nother=%name%\nname=second\nwith "
      "blank=y ; c\n\"quoted\"=z\n";
  EXPECT_EQ(lines("[S]\n%Name%=%NAME%,a%other%b,\"%with blank%\",%quoted%\n" + strings),
            Lines{"Text, with \"quotes\"=Text, with \"quotes\"|a%name%b|y|z"});
  EXPECT_EQ(lines("[S]\nk=%none%,100%%,%,%name\n" + strings), Lines{"k=%none%|100%|%|%name"});
  EXPECT_EQ(lines("[S]\nk=%a%\n"), Lines{"k=%a%"});
}

TEST_F(Inf, MissingSectionOrLine_GivesAnErrorOfTheirs) {
  write(std::string(kVersion) + "[S]\nk=v\n[Empty]\n");
  const InfOwner inf(SetupOpenInfFileA(kFile, nullptr, INF_STYLE_WIN4, nullptr));
  INFCONTEXT line{};
  for (const char* const section : {"none", "Empty"}) {
    EXPECT_FALSE(SetupFindFirstLineA(inf.get(), section, nullptr, &line)) << section;
    EXPECT_GE(GetLastError(), ERROR_SECTION_NOT_FOUND);
  }
  ASSERT_TRUE(SetupFindFirstLineA(inf.get(), "S", nullptr, &line));
  EXPECT_FALSE(SetupFindNextLine(&line, &line));
}

TEST_F(Inf, StringField_SizesAndBuffers) {
  write(std::string(kVersion) + "[S]\nk=%s%\n[Strings]\ns=abc\n");
  const InfOwner inf(SetupOpenInfFileA(kFile, nullptr, INF_STYLE_WIN4, nullptr));
  INFCONTEXT line{};
  ASSERT_TRUE(SetupFindFirstLineA(inf.get(), "S", nullptr, &line));
  EXPECT_TRUE(SetupGetStringFieldA(&line, 1, nullptr, 0, nullptr));
  EXPECT_FALSE(SetupGetStringFieldA(&line, 2, nullptr, 0, nullptr));
  DWORD size = 0;
  EXPECT_TRUE(SetupGetStringFieldA(&line, 1, nullptr, 0, &size));
  EXPECT_EQ(size, 4U);
  char text[4] = "x";
  EXPECT_FALSE(SetupGetStringFieldA(&line, 1, text, 3, &size));
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_TRUE(SetupGetStringFieldA(&line, 1, text, 4, &size));
  EXPECT_STREQ(text, "abc");
}

TEST_F(Inf, Class_IsNameAndGuidOfTheVersion) {
  const std::string start = "[Version]\r\nSignature=\"$Windows NT$\"\r\n";
  const struct {
    std::string file;
    const char* name;  // empty for none
    unsigned guidStart;
    unsigned guidEnd;
  } rows[] = {
      {start + "Class=\"Net\"\r\nClassGuid={4D36E972-E325-11CE-BFC1-08002BE10318}\r\n", "Net",
       0x4d36e972, 0x18},
      // Behind the part of the file that is read first.
      {"[Other]\n" + std::string(9000, ';') + "\n" + kVersion, "Net", 0, 0},
      {start, "", 0, 0},
      {start + "Class=\n", "", 0, 0},
      {start + "ClassGuid={4D36E972}\n", "", 0, 0},
      {start + "ClassGuid=%guid%\n", "", 0, 0},
  };
  GUID guid{};
  char name[64] = "";
  for (const auto& row : rows) {
    write(row.file);
    guid = {};
    EXPECT_EQ(SetupDiGetINFClassA(kFile, &guid, name, sizeof name, nullptr) != FALSE,
              *row.name != 0);
    if (*row.name == 0) continue;
    EXPECT_STREQ(name, row.name);
    EXPECT_EQ(guid.Data1, row.guidStart);
    EXPECT_EQ(guid.Data4[7], row.guidEnd);
  }
  EXPECT_FALSE(SetupDiGetINFClassA(".\\none.inf", &guid, name, sizeof name, nullptr));
  EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST(ClassGuids, KnownAndUnknownNames) {
  GUID guid{};
  DWORD count = 9;
  EXPECT_TRUE(SetupDiClassGuidsFromNameA("dIsPlAy", &guid, 1, &count));
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(guid.Data1, 0x4d36e968U);
  EXPECT_TRUE(SetupDiClassGuidsFromNameA("no such class", &guid, 1, &count));
  EXPECT_EQ(count, 0U);
  EXPECT_FALSE(SetupDiClassGuidsFromNameA("Display", &guid, 0, &count));
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
}

}  // namespace
}  // namespace tolvanix::test
