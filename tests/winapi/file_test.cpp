// Files and paths, to the documented behaviour: the same tests judge the system's own functions.
#include <gtest/gtest.h>

#include <utility>

#include "support/Files.h"
#include "winapi/Owner.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

std::string currentDirectory() {
  char buffer[MAX_PATH] = "";
  const DWORD length = GetCurrentDirectoryA(sizeof buffer, buffer);
  EXPECT_EQ(length, std::string(buffer).size());
  return buffer;
}

// All that a search finds, each with a blank after it, without "." and "..".
std::string findAll(const char* pattern) {
  std::string names;
  WIN32_FIND_DATAA data{};
  const FindOwner find(FindFirstFileA(pattern, &data));
  if (!find) return names;
  do {
    const std::string name = data.cFileName;
    if (name != "." && name != "..") names += name + ' ';
  } while (FindNextFileA(find.get(), &data));
  EXPECT_EQ(GetLastError(), ERROR_NO_MORE_FILES);
  return names;
}

class FileTest : public ::testing::Test {
 protected:
  CurrentTempDir dir;
};

TEST_F(FileTest, GetFullPathName_IsResolvedOnTheTextAlone) {
  const std::string here = currentDirectory();
  const std::string parent = here.substr(0, here.rfind('\\'));
  const std::pair<std::string, std::string> rows[] = {
      {".\\net.inf", here + "\\net.inf"},
      {"./net.inf", here + "\\net.inf"},
      {"no\\..\\a b.inf", here + "\\a b.inf"},
      {"sub//net.inf", here + "\\sub\\net.inf"},
      {"..\\net.inf", parent + "\\net.inf"},
      {"..", parent},
      {"sub\\", here + "\\sub\\"},
      {"*.inf", here + "\\*.inf"},
      {here, here},
  };
  for (const auto& [name, path] : rows) {
    char buffer[MAX_PATH] = "";
    EXPECT_EQ(GetFullPathNameA(name.c_str(), sizeof buffer, buffer, nullptr), path.size());
    EXPECT_EQ(buffer, path) << name;
  }
}

TEST_F(FileTest, BufferBoundary_IsTheZero) {
  const std::string path = currentDirectory() + "\\net.inf";
  const auto length = static_cast<DWORD>(path.size());
  char buffer[MAX_PATH] = "unchanged";
  char* part = nullptr;
  EXPECT_EQ(GetFullPathNameA("net.inf", length, buffer, &part), length + 1);
  EXPECT_EQ(GetFullPathNameA("net.inf", 0, nullptr, nullptr), length + 1);
  EXPECT_EQ(GetFullPathNameA("net.inf", length + 1, buffer, &part), length);
  EXPECT_EQ(buffer, path);
  EXPECT_STREQ(part, "net.inf");
  EXPECT_EQ(GetFullPathNameA("", sizeof buffer, buffer, nullptr), 0U);
  EXPECT_EQ(GetCurrentDirectoryA(length - 8, buffer), length - 7);
  EXPECT_EQ(GetCurrentDirectoryA(0, nullptr), length - 7);
}

TEST_F(FileTest, FilesAndFolders_AreToldApart) {
  writeFile(dir / "sub/file.txt", "12345");
  const std::string here = currentDirectory();
  ASSERT_TRUE(SetCurrentDirectoryA((here + "\\sub").c_str()));
  EXPECT_EQ(currentDirectory(), here + "\\sub");
  ASSERT_TRUE(SetCurrentDirectoryA("..\\"));
  EXPECT_EQ(currentDirectory(), here);
  WIN32_FIND_DATAA found{};
  ASSERT_TRUE(FindOwner(FindFirstFileA("sub/*.txt", &found)));
  EXPECT_STREQ(found.cFileName, "file.txt");
  EXPECT_EQ(found.nFileSizeLow, 5U);
  EXPECT_EQ(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, 0U);
  ASSERT_TRUE(FindOwner(FindFirstFileA("sub", &found)));
  EXPECT_NE(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, 0U);
  EXPECT_EQ(GetFileAttributesA("sub\\file.txt") & FILE_ATTRIBUTE_DIRECTORY, 0U);
  EXPECT_NE(GetFileAttributesA("sub\\") & FILE_ATTRIBUTE_DIRECTORY, 0U);
}

TEST_F(FileTest, FindFirst_MatchesAsDosDidInTheOrderOfUpperCasedNames) {
  for (const char* name :
       {"b.inf", "A.INF", "_c.inf", "Z.Inf", "x.txt", "noext", "two.dots.inf", ".hid"}) {
    writeFile(dir / name, "x");
  }
  std::filesystem::create_directory(dir / "dir.inf");
  const std::string all = ".hid A.INF b.inf dir.inf noext two.dots.inf x.txt Z.Inf _c.inf ";
  using Rows = std::vector<std::pair<const char*, std::string>>;
  const Rows rows = {
      {"*.inf", "A.INF b.inf dir.inf two.dots.inf Z.Inf _c.inf "},
      {"*", all},
      {"*.*", all},
      {"*.*.*", all},
      {"?.inf", "A.INF b.inf Z.Inf "},
      {"n?oext", ""},
      {"noext.*", "noext "},
      {"noext.*t", ""},
      {"t*.?nf", "two.dots.inf "},
      {"t*.*.inf", "two.dots.inf "},
      {".\\X.TXT", "x.txt "},
  };
  for (const auto& [pattern, names] : rows) EXPECT_EQ(findAll(pattern), names) << pattern;
  if (std::filesystem::path::preferred_separator == '\\') return;  // Wine departs from these
  writeFile(dir / "x.infx", "x");
  writeFile(dir / "\xC3\xA9.inf", "x");
  const Rows odd = {
      {"?.inf", "A.INF b.inf Z.Inf \xC3\xA9.inf "},
      {"x*.inf", ""},
      {"b??.inf", "b.inf "},
      {"noext?", "noext "},
      {"*.", "noext "},
      {"*t*.", "noext x.txt "},
  };
  for (const auto& [pattern, names] : odd) EXPECT_EQ(findAll(pattern), names) << pattern;
}

TEST_F(FileTest, Failures_HaveTheirErrors) {
  using Call = bool (*)(const char* path);
  const Call enter = [](const char* path) { return SetCurrentDirectoryA(path) != FALSE; };
  const Call find = [](const char* path) {
    WIN32_FIND_DATAA data{};
    return static_cast<bool>(FindOwner(FindFirstFileA(path, &data)));
  };
  const Call ask = [](const char* path) {
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
  };
  const struct {
    Call call;
    const char* path;
    DWORD error;
  } rows[] = {
      {enter, "none", ERROR_FILE_NOT_FOUND},   {enter, "none\\sub", ERROR_PATH_NOT_FOUND},
      {enter, "file", ERROR_DIRECTORY},        {enter, "", ERROR_INVALID_NAME},
      {find, "*.inf", ERROR_FILE_NOT_FOUND},   {find, "none", ERROR_FILE_NOT_FOUND},
      {find, ".\\", ERROR_FILE_NOT_FOUND},     {find, "none\\*.inf", ERROR_PATH_NOT_FOUND},
      {find, "none\\x", ERROR_PATH_NOT_FOUND}, {find, "", ERROR_PATH_NOT_FOUND},
      {ask, "none", ERROR_FILE_NOT_FOUND},     {ask, "none\\x", ERROR_PATH_NOT_FOUND},
  };
  writeFile(dir / "file", "x");
  for (const auto& row : rows) {
    EXPECT_FALSE(row.call(row.path)) << row.path;
    EXPECT_EQ(GetLastError(), row.error) << row.path;
  }
}

}  // namespace
}  // namespace tolvanix::test
