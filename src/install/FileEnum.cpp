#include "install/FileEnum.h"

#include <utility>

namespace tolvanix {

FileEnum::FileEnum(std::string searchPattern) : pattern(std::move(searchPattern)) {}

bool FileEnum::FindFirst() {
  search.reset(FindFirstFileA(pattern.c_str(), &findData));
  return static_cast<bool>(search);
}

bool FileEnum::FindNext() {
  return FindNextFileA(search.get(), &findData) != FALSE;
}

std::string FileEnum::GetFullPath() const {
  char path[MAX_PATH] = "";
  const DWORD length = GetFullPathNameA(findData.cFileName, MAX_PATH, path, nullptr);
  return length < MAX_PATH ? path : std::string();
}

}  // namespace tolvanix
