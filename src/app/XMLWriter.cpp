#include "app/XMLWriter.h"

#include <algorithm>
#include <cstdio>

#include "app/Status.h"
#include "log/DebugWriter.h"
#include "text/Format.h"
#include "text/StdioFile.h"
#include "winapi/winapi.h"

namespace tolvanix {

namespace {

// Past the C runtime, which on Windows would change line ends, and keep the fragment
// back; what it keeps already comes before.
void writeToStandardOutput(std::string_view text) {
  std::fflush(stdout);
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written,
            nullptr);
}

}  // namespace

XMLWriter::XMLWriter() {
  constexpr std::size_t kLongestFixedFragment = 512;
  pendingText.reserve(kLongestFixedFragment);
}

void XMLWriter::writeXMLDeclaration() {
  documentStarted = true;
  write(R"(<?xml version="1.0" encoding="UTF-8"?>)", OpenMode::kTruncate);
}

void XMLWriter::writeSuccessStatus() {
  writeStatus("true", kSuccess);
}

void XMLWriter::writeFailureStatus(int messageId) {
  writeStatus("false", messageId);
}

void XMLWriter::writeInventoryStart() {
  elementOpen = true;
  write(R"(<SVMInventory lang="en">)", OpenMode::kAppend);
}

void XMLWriter::writeInventoryEnd() {
  elementOpen = false;
  write("</SVMInventory>", OpenMode::kAppend);
}

void XMLWriter::writeExecutionStart() {
  elementOpen = true;
  write(R"(<SVMExecution lang="en">)", OpenMode::kAppend);
}

void XMLWriter::writeExecutionEnd(bool rebootRequired) {
  elementOpen = false;
  write(rebootRequired ? "<RebootRequired>1</RebootRequired></SVMExecution>"
                       : "<RebootRequired>0</RebootRequired></SVMExecution>",
        OpenMode::kAppend);
}

void XMLWriter::writeText(const char* text) {
  write(text != nullptr ? text : "", OpenMode::kAppend);
}

void XMLWriter::writeDeviceResult(const DeviceResult& result) {
  const std::string fragments[] = {
      formatText(R"(<Device vendorID="%04X" deviceID="%04X" subDeviceID="%04X" )"
                 R"(subVendorID="%04X" bus="%d" device="%d" function="%d" display="%s">)",
                 result.vendorID, result.deviceID, result.subDeviceID, result.subVendorID,
                 result.bus, result.device, result.function, result.display.c_str()),
      formatText(R"(<Application componentType="%s" version="%s" display="%s">)",
                 result.componentType.c_str(), result.version.c_str(),
                 result.applicationDisplay.c_str()),
      formatText(R"(<Package version="%s"/><SPStatus result="%s"><Message id="%d">%s</Message>)"
                 "</SPStatus></Application></Device>",
                 result.packageVersion.c_str(), result.messageId == kSuccess ? "true" : "false",
                 result.messageId, getMessage(result.messageId))};
  for (const std::string& fragment : fragments) {
    pendingText.reserve(std::max(pendingText.capacity(), fragment.size()));
  }
  for (const std::string& fragment : fragments) write(fragment, OpenMode::kAppend);
}

const char* XMLWriter::getMessage(int messageId) const {
  if (messageId < 0 || messageId >= kStatusCount) return nullptr;
  return messages[static_cast<std::size_t>(messageId)];
}

int XMLWriter::removeOSElementFromXMLString(std::string& text) {
  constexpr std::string_view kStart = "<OperatingSystem";
  constexpr std::string_view kEnd = "</OperatingSystem>";
  TRACE_STEP("removeOSElementFromXMLString: stringLen = %d\n", static_cast<int>(text.size()));
  const std::size_t start = text.find(kStart);
  TRACE_STEP("removeOSElementFromXMLString: subStart = %d\n", static_cast<int>(start));
  if (start == std::string::npos) {
    TRACE_STEP("removeOSElementFromXMLString: Element name not found.\n");
    return kElementAbsent;
  }
  const std::size_t end = text.find(kEnd, start + 1);
  TRACE_STEP("removeOSElementFromXMLString: subEnd = %d\n", static_cast<int>(end));
  if (end == std::string::npos) {
    TRACE_ERROR("removeOSElementFromXMLString: Error: End string for the element not found.\n");
    return kEndTagMissing;
  }
  const std::size_t rightStart = end + kEnd.size();
  TRACE_STEP("removeOSElementFromXMLString: rightStart = %d\n", static_cast<int>(rightStart));
  TRACE_STEP("removeOSElementFromXMLString: rightLen = %d\n",
             static_cast<int>(text.size() - rightStart));
  text.erase(start, rightStart - start);
  return kElementRemoved;
}

void XMLWriter::writeStatus(const char* result, int messageId) {
  char number[16];
  std::snprintf(number, sizeof number, "%d", messageId);
  pendingText.assign(R"(<SPStatus result = ")").append(result);
  pendingText.append(R"("><Message id=")").append(number).append("\">");
  pendingText.append(getMessage(messageId)).append("</Message></SPStatus>");
  print(OpenMode::kAppend);
}

void XMLWriter::write(std::string_view fragment, OpenMode mode) {
  pendingText = fragment;
  print(mode);
}

void XMLWriter::print(OpenMode mode) {
  if (outputFileName == nullptr) {
    writeToStandardOutput(pendingText);
    return;
  }
  StdioFile file(std::fopen(outputFileName, mode == OpenMode::kTruncate ? "w" : "a"));
  if (!file) {
    TRACE_STEP("XMLWriter::print: failed to open xml file %s.\n", outputFileName);
    return;
  }
  // Flushed by itself, because not every C library's fclose says that this failed.
  const bool written =
      std::fwrite(pendingText.data(), 1, pendingText.size(), file.get()) == pendingText.size() &&
      std::fflush(file.get()) == 0;
  const bool closed = std::fclose(file.release()) == 0;
  if (!written || !closed) {
    TRACE_STEP("XMLWriter::print: failed to write xml file %s.\n", outputFileName);
  }
}

}  // namespace tolvanix
