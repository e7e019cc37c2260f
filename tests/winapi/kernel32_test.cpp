// Modules, messages of errors and INI files, to the documented behaviour. What INI files hold is
// compared with Wine (tests/checks/check_answers.py); here is what comes of a name.
#include <chrono>
#include <cstring>
#include <thread>

#include "support/Files.h"
#include "support/Matchers.h"
#include "winapi/Owner.h"

namespace tolvanix::test {
namespace {

std::string programPath() {
  char path[1024] = "";
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  EXPECT_EQ(length, std::strlen(path));
  return path;
}

TEST(GetModuleFileName, IsTheProgramsPathWithBackslashesInAnyFolder) {
  const std::string path = programPath();
  EXPECT_EQ(path.substr(path.rfind('\\') + 1, 10), "unit_tests");
  EXPECT_THAT(path, Not(HasSubstr("/")));
  EXPECT_THAT(path, Not(HasSubstr("\\.\\")));
  const CurrentTempDir folder;
  EXPECT_EQ(programPath(), path);
  const auto length = static_cast<DWORD>(path.size());
  std::string buffer(length, 'x');
  EXPECT_EQ(GetModuleFileNameA(nullptr, buffer.data(), length), length) << "cut at its end";
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  // The last one is a zero only where the system writes it.
  EXPECT_EQ(buffer.substr(0, length - 1), path.substr(0, length - 1));
}

TEST(Library, FileOrNameThatIsNone_HasItsError) {
  const CurrentTempDir folder;
  EXPECT_EQ(LoadLibraryA("missing.dll"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
  for (const char* const bytes : {"", "text", "MZ", "\177ELF"}) {
    writeFile(folder / "bad.dll", bytes);
    EXPECT_EQ(LoadLibraryA("bad.dll"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_BAD_EXE_FORMAT) << bytes;
  }
  for (const char* const name : {"kernel32", "KERNEL32.DLL", "Kernel32.dll"}) {
    const HMODULE kernel32 = GetModuleHandleA(name);
    ASSERT_NE(kernel32, nullptr) << name;
    EXPECT_NE(GetProcAddress(kernel32, "IsWow64Process"), nullptr);
    EXPECT_EQ(GetProcAddress(kernel32, "iswow64process"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
  }
  EXPECT_EQ(GetModuleHandleA("no such module"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}

TEST(FormatMessage, Code_GivesOneLineOfTextOrAnError) {
  const auto format = [](DWORD code, char* text, DWORD size,
                         DWORD flags = FORMAT_MESSAGE_IGNORE_INSERTS) {
    return FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | flags, nullptr, code,
                          MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text, size, nullptr);
  };
  char text[512] = "";
  const DWORD codes[] = {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_BAD_EXE_FORMAT};
  for (const DWORD code : codes) {
    const DWORD length = format(code, text, sizeof text);
    EXPECT_EQ(length, std::strlen(text)) << code;
    EXPECT_GT(length, 2U) << code;
    EXPECT_EQ(std::strstr(text, "\r\n"), text + length - 2) << code;
  }
  char* allocated = nullptr;
  EXPECT_EQ(format(ERROR_BAD_EXE_FORMAT, reinterpret_cast<char*>(&allocated), 0,
                   FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_ALLOCATE_BUFFER),
            std::strlen(text));
  const LocalMemoryOwner owner(allocated);
  EXPECT_STREQ(allocated, text);

  EXPECT_EQ(format(ERROR_LINE_NOT_FOUND, text, sizeof text), 0U);
  EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
  EXPECT_EQ(format(ERROR_FILE_NOT_FOUND, text, 4), 0U);
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(format(ERROR_BAD_EXE_FORMAT, text, sizeof text, 0), 0U) << "it has an insert";
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(Profile, NameOfNoFile_GivesNoNamesAndTheDefault) {
  const CurrentTempDir folder;
  writeFile(folder / "test.ini", "[A]\nk=v\n");
  char text[16];
  // Without a folder the name is not one in the current folder.
  for (const char* const name : {".\\none.ini", "test.ini"}) {
    EXPECT_EQ(GetPrivateProfileSectionNamesA(text, sizeof text, name), 0U) << name;
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND) << name;
    EXPECT_EQ(GetPrivateProfileStringA("A", "k", "default", text, sizeof text, name), 7U) << name;
    EXPECT_STREQ(text, "default");
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND) << name;
  }
  EXPECT_EQ(GetPrivateProfileStringA("A", "k", "default", text, sizeof text, ".\\test.ini"), 1U);
  EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
}

TEST(Profile, FileThatIsWrittenAgain_IsReadAgain) {
  const CurrentTempDir folder;
  for (int i = 0; i < 100; ++i) {
    const std::string value = std::to_string(i % 10);
    writeFile(folder / "test.ini", "[A]\nk=" + value + "\n");
    // Some are read in the tick of the clock in which they were written, and some are not.
    if (i % 20 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    char text[16];
    GetPrivateProfileStringA("A", "k", "", text, sizeof text, ".\\test.ini");
    ASSERT_EQ(text, value) << i;
  }
}

}  // namespace
}  // namespace tolvanix::test
