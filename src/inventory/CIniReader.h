// The vendor filter of the inventory: an INI file whose sections each name one PCI vendor.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tolvanix {

struct VendorFilter {
  const char* sectionName;  // in the buffer of the reader, which must outlive the entry
  std::uint16_t vendorID;
};

class CIniReader {
 public:
  explicit CIniReader(std::string file);
  CIniReader(const CIniReader&) = delete;
  CIniReader& operator=(const CIniReader&) = delete;
  virtual ~CIniReader() = default;

  // The names of all sections in the order of the file; none when the file cannot be read.
  std::vector<const char*> ReadSections();

  // The value of one key, at most 254 characters; the default value or the empty text, as the
  // platform reports the key missing, when the section does not have it.
  std::string ReadString(const std::string& section, const std::string& key,
                         const std::string& defaultValue) const;

  // Reads the vendor of every section and copies the whole list into `filters`.
  void GetConfigFileEntries(std::vector<VendorFilter>& filters);

  // The hexadecimal number that the text begins with; 0 for none or one beyond 32 bits.
  static std::uint32_t ParseHexValue(const std::string& text);

 private:
  std::string fileName;
  std::unique_ptr<char[]> sectionBuffer;
  std::vector<VendorFilter> entries;
};

}  // namespace tolvanix
