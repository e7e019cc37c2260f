// Walks the files of the current directory, or of one more folder, that match a pattern.
#pragma once

#include <string>

#include "winapi/Owner.h"

namespace tolvanix {

class FileEnum {
 public:
  // Opens nothing yet.
  explicit FileEnum(std::string searchPattern);
  FileEnum(const FileEnum&) = delete;
  FileEnum& operator=(const FileEnum&) = delete;
  virtual ~FileEnum() = default;

  // Go to the first and to the next entry, in the platform's order; false when there is none.
  bool FindFirst();
  bool FindNext();

  // The current entry's name resolved against the current directory, whatever folder the pattern
  // names; empty when that takes MAX_PATH characters or more.
  std::string GetFullPath() const;

 private:
  std::string pattern;
  WIN32_FIND_DATAA findData{};
  FindOwner search;
};

}  // namespace tolvanix
