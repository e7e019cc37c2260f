#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/Files.h"
#include "winapi/winapi.h"

namespace tolvanix {
namespace {

using test::ScopedCurrentDirectory;
using test::TempDir;
using test::writeFile;

std::string programPath() {
  char path[1024] = "";
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  EXPECT_EQ(length, std::string(path).size());
  return path;
}

TEST(GetModuleFileName, IsTheProgramsPathWithBackslashes) {
  const std::string path = programPath();
  const std::size_t name = path.rfind('\\');
  ASSERT_NE(name, std::string::npos);
  EXPECT_EQ(path.substr(name + 1, 10), "unit_tests");
  EXPECT_EQ(path.find('/'), std::string::npos);
  EXPECT_EQ(path.find("\\.\\"), std::string::npos);
}

TEST(GetModuleFileName, StaysTheSameInAnotherCurrentDirectory) {
  const std::string before = programPath();
  const TempDir folder;
  const ScopedCurrentDirectory scope(folder.path());
  EXPECT_EQ(programPath(), before);
}

TEST(GetModuleFileName, BufferTooSmall_IsFilledAndReported) {
  const DWORD length = static_cast<DWORD>(programPath().size());
  std::string buffer(length, 'x');
  EXPECT_EQ(GetModuleFileNameA(nullptr, buffer.data(), length), length);
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(buffer.substr(0, length - 1), programPath().substr(0, length - 1));
}

TEST(GetModuleHandle, Kernel32_IsFoundInAnyCase) {
  for (const char* const name : {"kernel32", "KERNEL32.DLL", "Kernel32.dll"}) {
    EXPECT_NE(GetModuleHandleA(name), nullptr) << name;
  }
  EXPECT_EQ(GetModuleHandleA("no such module"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}

TEST(GetProcAddress, KnowsKernel32FunctionsByTheirExactNames) {
  const HMODULE kernel32 = GetModuleHandleA("kernel32");
  EXPECT_NE(GetProcAddress(kernel32, "IsWow64Process"), nullptr);
  EXPECT_NE(GetProcAddress(kernel32, "GetNativeSystemInfo"), nullptr);
  EXPECT_EQ(GetProcAddress(kernel32, "iswow64process"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
}

TEST(LoadLibrary, MissingFile_SetsModuleNotFound) {
  EXPECT_EQ(LoadLibraryA("missing.dll"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}

TEST(LoadLibrary, FileThatIsNoLibrary_SetsBadFormat) {
  const TempDir folder;
  const ScopedCurrentDirectory scope(folder.path());
  for (const char* const bytes : {"", "text", "MZ",
                                  "\x7F"
                                  "ELF"}) {
    writeFile(folder / "bad.dll", bytes);
    EXPECT_EQ(LoadLibraryA("bad.dll"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_BAD_EXE_FORMAT) << bytes;
  }
}

}  // namespace
}  // namespace tolvanix
