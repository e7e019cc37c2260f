#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
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

class Inf : public testing::Test {
 protected:
  void write(std::string_view bytes) const { writeFile(folder / "test.inf", bytes); }

  static DWORD openError(const char* name = kFile) {
    const InfOwner inf(SetupOpenInfFileA(name, nullptr, INF_STYLE_WIN4, nullptr));
    return inf ? ERROR_SUCCESS : GetLastError();
  }

  // The lines of section S: "key=value|value\n", with "-" for no key.
  static std::string linesOfFile() {
    std::string found;
    const InfOwner inf(SetupOpenInfFileA(kFile, nullptr, INF_STYLE_WIN4, nullptr));
    INFCONTEXT line{};
    for (BOOL more = SetupFindFirstLineA(inf.get(), "s", nullptr, &line); more != FALSE;
         more = SetupFindNextLine(&line, &line)) {
      found += field(line, 0).value_or("-");
      for (DWORD i = 1; i <= SetupGetFieldCount(&line); ++i) {
        found += (i == 1 ? '=' : '|') + field(line, i).value_or("?");
      }
      found += '\n';
    }
    return found;
  }

  const CurrentTempDir folder;
};

TEST_F(Inf, Open_UnusableFiles_EachHaveTheirError) {
  const std::string longName(300, 'n');
  const std::vector<std::pair<std::string, DWORD>> rows = {
      {"[Version]\nSignature=$CHICAGO$\n", ERROR_SUCCESS},
      {"\n; comment\n[VERSION]\r\nSignature = \"$windows nt$\" ; x\r\n", ERROR_SUCCESS},
      {"\xEF\xBB\xBF[Version]\nSignature=\"$Windows NT$\"", ERROR_SUCCESS},
      {utf16File(u"[Version]\r\nSignature=\"$Windows NT$\"\r\n"), ERROR_SUCCESS},
      {std::string("\xFE\xFF\0[\0V\0]\0\n\0[\0S\0]\0\n", 18), ERROR_EXPECTED_SECTION_NAME},
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

TEST_F(Inf, Lines_AreReadAsDocumented) {
  const std::string strings =
      "[Strings]\nname = \"Text, with \"\"quotes\"\"\"\nother=%name%\nname=second\nwith "
      "blank=y ; c\n\"quoted\"=z\n";
  const std::pair<std::string, std::string> rows[] = {
      {"[S]\nk=\nk=,\nk=a,\nk=a,,b\n", "k=\nk=|\nk=a|\nk=a||b\n"},
      {"[S]\nalone\na, b\na=b=c, d\n", "alone=alone\n-=a|b\na=b=c|d\n"},
      {"[S]\n\"k\" = \"a, b;c\", \" x \", a \"q\"\"b\" c\n", "k=a, b;c| x |a q\"b c\n"},
      {"[S]\nk = \"open, end\nl='a, b'\n", "k=open, end\nl='a|b'\n"},
      {"[S]\n;x\n  k = a ; b, c\n#l = a\n\n;\n", "k=a\n#l=a\n"},
      {"[S]\r\nk = a, b\r\nl=c\r\n", "k=a|b\nl=c\n"},
      {"[S]\nk=a,b\nl=c", "k=a|b\nl=c\n"},
      {"[S] junk\r\n\tk\t=a\t,b\r\n\r\n  l=c\r\n\r\n", "k=a|b\nl=c\n"},
      // A backslash at its end continues a line.
      {"[S]\nk = a,\\\n  b,\\ ; comment\r\n c\nl=d\n", "k=a|b|c\nl=d\n"},
      {"[S]\nk=\"a\\\"\nl=b\\c\n", "k=a\\\nl=b\\c\n"},
      {"[S]\nk = a \\", "k=a\n"},
      {"[S]\nk = a ; b \\\n[T]\nl=c\n", "k=a\n"},
      {"[S]\nk = a,\\\n[T]\nl=b\n", "k=a|[T]\nl=b\n"},
      // Sections of one name are one, without regard to case.
      {"[s]\na=1\n[T]\nb=2\n[S]\n[S ]\nd=4\n[S]\nc=3\n", "a=1\nc=3\n"},
      // Strings are replaced once.
      {"[S]\n%Name%=%NAME%,a%other%b,\"%with blank%\",%quoted%\n" + strings,
       "Text, with \"quotes\"=Text, with \"quotes\"|a%name%b|y|z\n"},
      {"[S]\nk=%none%,100%%,%,%name\n" + strings, "k=%none%|100%|%|%name\n"},
      {"[S]\nk=%a%\n", "k=%a%\n"},
      {"[T]\nk=v\n[S]\n", ""},
  };
  for (const auto& [text, lines] : rows) {
    write(kVersion + text);
    EXPECT_EQ(linesOfFile(), lines) << text;
  }
  write(utf16File(u"[Version]\r\nSignature=\"$Windows NT$\"\r\n[S]\r\nk=a,b\r\nl=c\xD83D"));
  EXPECT_EQ(linesOfFile(), "k=a|b\nl=c\xEF\xBF\xBD\n") << "half a pair ends the file";
}

TEST_F(Inf, StringField_SizesAndBuffers) {
  write(std::string(kVersion) + "[S]\nk=%s%\n[Strings]\ns=abc\n");
  const InfOwner inf(SetupOpenInfFileA(kFile, nullptr, INF_STYLE_WIN4, nullptr));
  INFCONTEXT line{};
  EXPECT_FALSE(SetupFindFirstLineA(inf.get(), "none", nullptr, &line));
  EXPECT_NE(GetLastError(), ERROR_SUCCESS);
  ASSERT_TRUE(SetupFindFirstLineA(inf.get(), "S", nullptr, &line));
  DWORD size = 0;
  EXPECT_FALSE(SetupGetStringFieldA(&line, 2, nullptr, 0, &size));
  EXPECT_TRUE(SetupGetStringFieldA(&line, 1, nullptr, 0, &size));
  EXPECT_EQ(size, 4U);
  char text[4] = "x";
  for (const DWORD room : {1U, 3U}) {
    EXPECT_FALSE(SetupGetStringFieldA(&line, 1, text, room, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_STREQ(text, "x");
  }
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
      {start + "ClassGuid={4D36E972-E325-11CE-BFC1-08002BE10318}x\n", "", 0, 0},
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

}  // namespace
}  // namespace tolvanix::test
