// Writes the result document of a run, fragment by fragment, to the -o file or to standard output.
// The file is opened and closed for every fragment, so others may read what is there meanwhile.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "app/Status.h"

namespace tolvanix {

class XMLWriter {
 public:
  enum class OpenMode { kTruncate, kAppend };

  // What one `Device` element of the execution document holds. Texts are UTF-8 and valid XML
  // character data already: they are written as they are.
  struct DeviceResult {
    std::uint32_t vendorID;
    std::uint32_t deviceID;
    std::uint32_t subDeviceID;
    std::uint32_t subVendorID;
    std::int32_t bus;
    std::int32_t device;
    std::int32_t function;
    std::string display;
    std::string componentType;
    std::string version;
    std::string applicationDisplay;
    std::string packageVersion;
    std::int32_t messageId;  // a status
  };

  // Results of `removeOSElementFromXMLString`.
  static constexpr int kEndTagMissing = 0;
  static constexpr int kElementRemoved = 1;
  static constexpr int kElementAbsent = 2;

  // Makes room for every fragment of fixed length: those are written also when memory has run out.
  XMLWriter();
  XMLWriter(const XMLWriter&) = delete;
  XMLWriter& operator=(const XMLWriter&) = delete;
  virtual ~XMLWriter() = default;

  // The name is not copied and must outlive the writer; null means standard output.
  void setOutputFileName(const char* fileName) { outputFileName = fileName; }

  // The declaration starts the document: it alone empties the file. All others append.
  void writeXMLDeclaration();
  void writeSuccessStatus();
  void writeFailureStatus(int messageId);
  void writeInventoryStart();
  void writeInventoryEnd();
  void writeExecutionStart();
  void writeExecutionEnd(bool rebootRequired);
  void writeText(const char* text);  // null counts as empty
  // All of its fragments, or none when an exception ends it.
  void writeDeviceResult(const DeviceResult& result);

  // Whether the document was begun, and whether an element is open for further fragments.
  bool isDocumentStarted() const { return documentStarted; }
  bool isElementOpen() const { return elementOpen; }

  // The text of a status; null outside 0 to 40.
  const char* getMessage(int messageId) const;

  // Cuts the first `OperatingSystem` element out of the text.
  static int removeOSElementFromXMLString(std::string& text);

 private:
  void write(std::string_view fragment, OpenMode mode);
  void writeStatus(const char* result, int messageId);
  void print(OpenMode mode);

  const char* outputFileName = nullptr;
  std::string pendingText;
  const std::array<const char*, kStatusCount>& messages = kStatusTexts;
  bool documentStarted = false;
  bool elementOpen = false;
};

}  // namespace tolvanix
