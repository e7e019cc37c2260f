#include <gtest/gtest.h>

#include <string>

#include "support/Files.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

std::string programPath() {
  char path[1024] = "";
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  EXPECT_EQ(length, std::string(path).size());
  return path;
}

TEST(GetModuleFileName, IsTheProgramsPathWithBackslashesInAnyFolder) {
  std::string path = programPath();
  EXPECT_EQ(path.substr(path.rfind('\\') + 1, 10), "unit_tests");
  EXPECT_EQ(path.find('/'), std::string::npos);
  EXPECT_EQ(path.find("\\.\\"), std::string::npos);
  const CurrentTempDir folder;
  EXPECT_EQ(programPath(), path);
  // Cut where the buffer ends.
  const auto length = static_cast<DWORD>(path.size());
  std::string buffer(length, 'x');
  EXPECT_EQ(GetModuleFileNameA(nullptr, buffer.data(), length), length);
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

}  // namespace
}  // namespace tolvanix::test
