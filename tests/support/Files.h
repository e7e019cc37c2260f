// Files and folders of a test, and the programs and libraries for tests in them.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tolvanix::test {

// A new folder below the system's temporary folder; it and all in it go with the object.
class TempDir {
 public:
  TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir();

  const std::filesystem::path& path() const { return folder; }
  std::filesystem::path operator/(std::string_view name) const { return folder / name; }

 protected:
  std::filesystem::path before;  // the current folder that comes back; empty for the present one

 private:
  std::filesystem::path folder;
};

// One that is the current folder until the end of the scope.
class CurrentTempDir : public TempDir {
 public:
  CurrentTempDir();
};

// A file of tests/fixtures/.
std::filesystem::path fixture(std::string_view name);

// Bytes as they are; missing parent folders are made. Failures throw.
void writeFile(const std::filesystem::path& file, std::string_view bytes);
std::string readFile(const std::filesystem::path& file);

// As the C library reads a text file here: "\n" for the platform's line ends.
std::string readText(const std::filesystem::path& file);

// An INF file for these hardware IDs, with one more line in its [Version].
std::string infFile(const std::vector<std::string>& hardwareIds, std::string_view version = "");

// Copies the helper program for tests (test_helper.cpp) to that file, and its steps beside it.
void placeHelper(const std::filesystem::path& program, std::string_view steps);

// Gives a helper that waits for it that file beside its program, and waits for the helper's end.
// False when the helper was not there to take it.
bool releaseHelper(const std::filesystem::path& program, std::string_view file);

// Puts the validation library for tests (test_kivvalid.cpp) into that folder as kivvalid.dll, with
// what it is to return. The export of that name gets another one.
void placeValidationLibrary(const std::filesystem::path& folder, std::string_view answer,
                            const std::string& withoutExport = "");

// UTF-16LE bytes with a byte-order mark.
std::string utf16File(std::u16string_view text);

}  // namespace tolvanix::test
