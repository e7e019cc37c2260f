// A whole text file as wide text.
#pragma once

#include <cstddef>
#include <cstdio>

#include "platform/SPModule.h"
#include "text/SPUString.h"

namespace tolvanix {

class SPModuleFile : public SPModule {
 public:
  // Error numbers of the SPException that the constructor throws.
  static constexpr unsigned kFileNotOpened = 6046;  // it exists, but does not open
  static constexpr unsigned kFileNotFound = 6047;   // it does not exist, or is a folder

  // Reads the file. One that begins with the UTF-16 little-endian byte-order mark is read as
  // UTF-16, the mark included; any other as narrow text up to its first zero byte.
  explicit SPModuleFile(const char* filePath);

  const SPUString& getText() const { return text; }
  bool getIsUnicode() const { return isUnicode; }

 private:
  void readText(std::FILE* file, std::size_t size);
  [[noreturn]] void fail(unsigned errorNumber) const;

  SPUString text;
  bool isUnicode = false;
};

}  // namespace tolvanix
