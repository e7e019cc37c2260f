#include "check/PeFile.h"

#include <cstdint>
#include <stdexcept>

namespace tolvanix::kit {

namespace {

constexpr std::uint32_t kMachineX64 = 0x8664;
constexpr std::uint32_t kOptionalHeader64 = 0x20B;

// Offsets of the fields that are read, each from the beginning of its structure.
constexpr std::uint64_t kHeaderOffset = 0x3C;  // in the file: where the PE header is
constexpr std::uint64_t kMachine = 4;
constexpr std::uint64_t kSectionCount = 6;
constexpr std::uint64_t kOptionalHeaderSize = 20;
constexpr std::uint64_t kOptionalHeader = 24;
constexpr std::uint64_t kDirectoryCount = 108;  // in the optional header
constexpr std::uint64_t kExportDirectory = 112;
constexpr std::uint64_t kSectionSize = 40;
constexpr std::uint64_t kSectionAddress = 12;  // in the header of a section
constexpr std::uint64_t kSectionBytes = 16;
constexpr std::uint64_t kSectionOffset = 20;
constexpr std::uint64_t kNameCount = 24;  // in the export table
constexpr std::uint64_t kNames = 32;

class PeReader {
 public:
  explicit PeReader(std::string_view file) : bytes(file) {
    header = number(kHeaderOffset, 4);
    const std::uint64_t optional = header + kOptionalHeader;
    if (!bytes.starts_with("MZ") || part(header, 4) != std::string_view("PE\0\0", 4) ||
        number(header + kMachine, 2) != kMachineX64 || number(optional, 2) != kOptionalHeader64) {
      throw std::out_of_range("no PE file of 64 bits");
    }
    sections = optional + number(header + kOptionalHeaderSize, 2);
    sectionCount = number(header + kSectionCount, 2);
    if (number(optional + kDirectoryCount, 4) > 0) {
      exportTable = number(optional + kExportDirectory, 4);
    }
  }

  std::vector<std::string> exports() const {
    std::vector<std::string> names;
    if (exportTable == 0) return names;
    const std::uint64_t table = offsetOf(exportTable);
    const std::uint64_t list = offsetOf(number(table + kNames, 4));
    const std::uint64_t count = number(table + kNameCount, 4);
    part(list, count * 4);  // a wrong count ends here
    for (std::uint64_t i = 0; i < count; ++i) {
      names.push_back(text(offsetOf(number(list + i * 4, 4))));
    }
    return names;
  }

 private:
  // The only accesses to the bytes: throw out_of_range for what is not all in them.
  std::string_view part(std::uint64_t offset, std::uint64_t size) const {
    if (offset > bytes.size() || size > bytes.size() - offset) throw std::out_of_range("cut off");
    return bytes.substr(offset, size);
  }

  std::string text(std::uint64_t offset) const {
    part(offset, 0);
    const std::string_view rest = bytes.substr(offset);
    const std::size_t end = rest.find('\0');
    if (end == std::string_view::npos) throw std::out_of_range("a name without an end");
    return std::string(rest.substr(0, end));
  }

  // Little-endian.
  std::uint64_t number(std::uint64_t offset, std::uint64_t size) const {
    std::uint64_t value = 0;
    const std::string_view digits = part(offset, size);
    for (std::size_t i = digits.size(); i-- > 0;) {
      value = value << 8 | static_cast<unsigned char>(digits[i]);
    }
    return value;
  }

  // Where in the file an address of the loaded library is.
  std::uint64_t offsetOf(std::uint64_t address) const {
    for (std::uint64_t i = 0; i < sectionCount; ++i) {
      const std::uint64_t section = sections + i * kSectionSize;
      const std::uint64_t begin = number(section + kSectionAddress, 4);
      if (address >= begin && address - begin < number(section + kSectionBytes, 4)) {
        return number(section + kSectionOffset, 4) + (address - begin);
      }
    }
    throw std::out_of_range("an address in no section");
  }

  std::string_view bytes;
  std::uint64_t header = 0;
  std::uint64_t sections = 0;
  std::uint64_t sectionCount = 0;
  std::uint64_t exportTable = 0;  // an address; 0 for none
};

}  // namespace

std::optional<std::vector<std::string>> peExports(std::string_view bytes) try {
  return PeReader(bytes).exports();
} catch (const std::out_of_range&) {
  return std::nullopt;
}

}  // namespace tolvanix::kit
