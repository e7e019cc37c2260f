#include "platform/SPModuleFile.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "app/SPException.h"
#include "platform/SPMessageFile.h"
#include "text/StdioFile.h"
#include "winapi/winapi.h"

namespace tolvanix {

namespace {

bool beginsWithByteOrderMark(const std::vector<char>& bytes) {
  return bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE';
}

std::u16string fromLittleEndian(const std::vector<char>& bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<char16_t>(low | (high << 8));
  }
  return units;
}

}  // namespace

SPModuleFile::SPModuleFile(const char* filePath) : SPModule(filePath) {
  WIN32_FILE_ATTRIBUTE_DATA status = {};
  if (GetFileAttributesExA(filePath, GetFileExInfoStandard, &status) == FALSE ||
      (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    fail(kFileNotFound);
  }
  const StdioFile file(std::fopen(filePath, "rb"));
  if (!file) fail(kFileNotOpened);
  const std::uint64_t size =
      (static_cast<std::uint64_t>(status.nFileSizeHigh) << 32) | status.nFileSizeLow;
  readText(file.get(), static_cast<std::size_t>(size));
}

// A file that has become shorter since its size was asked for gives no text.
void SPModuleFile::readText(std::FILE* file, std::size_t size) {
  std::vector<char> bytes(size);
  if (std::fread(bytes.data(), 1, size, file) != size) return;
  isUnicode = beginsWithByteOrderMark(bytes);
  if (isUnicode) {
    text = fromLittleEndian(bytes);
  } else {
    bytes.push_back('\0');
    text = bytes.data();
  }
}

void SPModuleFile::fail(unsigned errorNumber) const {
  SPMessageFile messages("");
  throw SPException(errorNumber, messages.getMessage(errorNumber, {SPUString(path)}));
}

}  // namespace tolvanix
