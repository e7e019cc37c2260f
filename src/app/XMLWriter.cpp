#include "app/XMLWriter.h"

#include <cstdio>
#include <fstream>
#include <string_view>
#include <utility>

#include "app/Status.h"
#include "log/DebugWriter.h"
#include "text/Format.h"
#include "winapi/winapi.h"

namespace tolvanix {

namespace {

// Past the C runtime, which on one of the platforms would change line ends, and keep the fragment
// back; what it keeps already comes before.
void writeToStandardOutput(std::string_view text) {
  std::fflush(stdout);
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written,
            nullptr);
}

}  // namespace

void XMLWriter::writeXMLDeclaration() {
  write(R"(<?xml version="1.0" encoding="UTF-8"?>)", OpenMode::kTruncate);
}

void XMLWriter::writeSuccessStatus() {
  write(formatText(R"(<SPStatus result = "true"><Message id="%d">%s</Message></SPStatus>)",
                   static_cast<int>(kSuccess), getMessage(kSuccess)),
        OpenMode::kAppend);
}

void XMLWriter::writeFailureStatus(int messageId) {
  write(formatText(R"(<SPStatus result = "false"><Message id="%d">%s</Message></SPStatus>)",
                   messageId, getMessage(messageId)),
        OpenMode::kAppend);
}

void XMLWriter::writeInventoryStart() {
  write(R"(<SVMInventory lang="en">)", OpenMode::kAppend);
}

void XMLWriter::writeInventoryEnd() {
  write("</SVMInventory>", OpenMode::kAppend);
}

void XMLWriter::writeExecutionStart() {
  write(R"(<SVMExecution lang="en">)", OpenMode::kAppend);
}

void XMLWriter::writeExecutionEnd(bool rebootRequired) {
  write(formatText("<RebootRequired>%d</RebootRequired></SVMExecution>", rebootRequired ? 1 : 0),
        OpenMode::kAppend);
}

void XMLWriter::writeText(const char* text) {
  write(text != nullptr ? text : "", OpenMode::kAppend);
}

void XMLWriter::writeDeviceResult(const DeviceResult& result) {
  write(formatText(R"(<Device vendorID="%04X" deviceID="%04X" subDeviceID="%04X" )"
                   R"(subVendorID="%04X" bus="%d" device="%d" function="%d" display="%s">)",
                   result.vendorID, result.deviceID, result.subDeviceID, result.subVendorID,
                   result.bus, result.device, result.function, result.display.c_str()),
        OpenMode::kAppend);
  write(formatText(R"(<Application componentType="%s" version="%s" display="%s">)",
                   result.componentType.c_str(), result.version.c_str(),
                   result.applicationDisplay.c_str()),
        OpenMode::kAppend);
  write(formatText(R"(<Package version="%s"/><SPStatus result="%s"><Message id="%d">%s</Message>)"
                   "</SPStatus></Application></Device>",
                   result.packageVersion.c_str(), result.messageId == kSuccess ? "true" : "false",
                   result.messageId, getMessage(result.messageId)),
        OpenMode::kAppend);
}

const char* XMLWriter::getMessage(int messageId) const {
  if (messageId < 0 || messageId >= kStatusCount) return nullptr;
  return messages[static_cast<std::size_t>(messageId)];
}

int XMLWriter::removeOSElementFromXMLString(std::string& text) {
  constexpr std::string_view kStart = "<OperatingSystem";
  constexpr std::string_view kEnd = "</OperatingSystem>";
  traceStep("removeOSElementFromXMLString: stringLen = %d\n", static_cast<int>(text.size()));
  const std::size_t start = text.find(kStart);
  traceStep("removeOSElementFromXMLString: subStart = %d\n", static_cast<int>(start));
  if (start == std::string::npos) {
    traceStep("removeOSElementFromXMLString: Element name not found.\n");
    return kElementAbsent;
  }
  const std::size_t end = text.find(kEnd, start + 1);
  traceStep("removeOSElementFromXMLString: subEnd = %d\n", static_cast<int>(end));
  if (end == std::string::npos) {
    traceError("removeOSElementFromXMLString: Error: End string for the element not found.\n");
    return kEndTagMissing;
  }
  const std::size_t rightStart = end + kEnd.size();
  traceStep("removeOSElementFromXMLString: rightStart = %d\n", static_cast<int>(rightStart));
  traceStep("removeOSElementFromXMLString: rightLen = %d\n",
            static_cast<int>(text.size() - rightStart));
  text.erase(start, rightStart - start);
  return kElementRemoved;
}

void XMLWriter::write(std::string fragment, OpenMode mode) {
  pendingText = std::move(fragment);
  print(mode);
}

void XMLWriter::print(OpenMode mode) {
  if (outputFileName == nullptr) {
    writeToStandardOutput(pendingText);
    return;
  }
  std::ofstream file(outputFileName, mode == OpenMode::kTruncate ? std::ios::trunc : std::ios::app);
  if (!file) {
    traceStep("XMLWriter::print: failed to open xml file %s.\n", outputFileName);
    return;
  }
  file.write(pendingText.data(), static_cast<std::streamsize>(pendingText.size()));
  file.close();
  if (!file) traceStep("XMLWriter::print: failed to write xml file %s.\n", outputFileName);
}

}  // namespace tolvanix
