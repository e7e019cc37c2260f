#include "platform/SPModuleFile.h"

#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "app/SPException.h"
#include "platform/SPMessageFile.h"
#include "text/StdioFile.h"
#include "winapi/winapi.h"

namespace tolvanix {

namespace {

std::u16string fromLittleEndian(std::string_view bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<char16_t>(low | (high << 8));
  }
  return units;
}

// None when it cannot be told, as of a pipe.
std::optional<std::size_t> sizeOf(std::FILE* file) {
  if (std::fseek(file, 0, SEEK_END) != 0) return std::nullopt;
  const long size = std::ftell(file);
  if (size < 0 || std::fseek(file, 0, SEEK_SET) != 0) return std::nullopt;
  return static_cast<std::size_t>(size);
}

}  // namespace

SPModuleFile::SPModuleFile(const char* filePath) : SPModule(filePath) {
  const DWORD attributes = GetFileAttributesA(filePath);
  const bool known = attributes != INVALID_FILE_ATTRIBUTES;
  if (known && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) fail(kFileNotFound);
  const StdioFile file(std::fopen(filePath, "rb"));
  if (!file) fail(known ? kFileNotOpened : kFileNotFound);
  // Of what was opened: another name for it could be that of another file.
  if (const auto size = sizeOf(file.get())) readText(file.get(), *size);
}

// A file that has become shorter since it was measured, or that no memory can hold, gives no text.
void SPModuleFile::readText(std::FILE* file, std::size_t size) {
  const std::unique_ptr<char[]> bytes(new (std::nothrow) char[size + 1]);
  if (bytes == nullptr || std::fread(bytes.get(), 1, size, file) != size) return;
  const std::string_view content(bytes.get(), size);
  isUnicode = content.starts_with("\xFF\xFE");
  if (isUnicode) {
    text = fromLittleEndian(content);
  } else {
    bytes[size] = '\0';
    text = bytes.get();
  }
}

void SPModuleFile::fail(unsigned errorNumber) const {
  SPMessageFile messages("");
  throw SPException(errorNumber, messages.getMessage(errorNumber, {SPUString(path)}));
}

}  // namespace tolvanix
