#include "common/ResultDocument.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "app/Status.h"
#include "common/Files.h"
#include "common/Outcome.h"
#include "text/Conversion.h"
#include "xml/Entities.h"
#include "xml/Numbers.h"
#include "xml/XMLQuery.h"

namespace tolvanix::kit {

namespace {

using xmlquery::View;

constexpr std::string_view kBlanks = " \t\r\n";
// More than computers have: a whole PCI domain is 65,536 functions.
constexpr std::size_t kMostDevices = 100'000;

// The value of ` name="value"` in a start tag. The blank and the equals sign keep `device` from
// being found in `deviceID`.
View attribute(View tag, View name) {
  const std::u16string whole = std::u16string(u" ").append(name).append(u"=");
  return xmlquery::attributeValue(xmlquery::attributePair(tag, whole));
}

std::string textOf(View tag, View name) {
  return toXmlUtf8(unescaped(std::u16string(attribute(tag, name))));
}

std::optional<int> statusOf(View element) {
  return readDecimal(attribute(xmlquery::startTag(element, u"Message", 0), u"id"));
}

void readApplication(View element, ReportedDevice& device) {
  const View tag = xmlquery::startTag(element, u"Application", 0);
  const bool firmware = attribute(tag, u"componentType") == u"FRMW";
  std::string version = textOf(tag, u"version");
  if (version == "0") version.clear();
  (firmware ? device.firmwareVersion : device.driverVersion) = std::move(version);
}

ReportedDevice readDevice(View element) {
  ReportedDevice device;
  const View tag = xmlquery::startTag(element, u"Device", 0);
  device.vendorID = textOf(tag, u"vendorID");
  device.deviceID = textOf(tag, u"deviceID");
  device.subDeviceID = textOf(tag, u"subDeviceID");
  device.subVendorID = textOf(tag, u"subVendorID");
  device.bus = readDecimal(attribute(tag, u"bus")).value_or(-1);
  device.device = readDecimal(attribute(tag, u"device")).value_or(-1);
  device.function = readDecimal(attribute(tag, u"function")).value_or(-1);
  device.name = textOf(tag, u"display");
  xmlquery::forEachElement(element, u"Application", [&device](View application) {
    readApplication(application, device);
    return true;
  });
  device.packageVersion = textOf(xmlquery::startTag(element, u"Package", 0), u"version");
  device.status = statusOf(element);
  return device;
}

// Windows PowerShell writes what it redirects as UTF-16.
std::string asUtf8(std::string bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return bytes.substr(3);
  if (!bytes.starts_with("\xFF\xFE")) return bytes;
  std::u16string units(bytes.size() / 2 - 1, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i + 2]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 3]);
    units[i] = static_cast<char16_t>(low | (high << 8));
  }
  return toXmlUtf8(units);
}

// Takes the text element by element, so that only one of them is held as wide text.
class Reader {
 public:
  Reader(const std::string& name, std::string_view text) : fileName(name), rest(text) {}

  ResultDocument read() {
    ResultDocument document;
    const std::string_view root = openRoot();
    document.kind = kindOf(root);
    if (document.kind == ResultDocument::Kind::kCommandLine) {
      document.status = readStatus("SPStatus");
      expectEnd();
      return document;
    }
    rest.remove_prefix(tagSize());
    if (isEmptyRoot) {
      expectEnd();
      return document;
    }
    readContent(root, document);
    return document;
  }

 private:
  [[noreturn]] void refuse(const std::string& why) const { throw BadInput(fileName + ": " + why); }

  [[noreturn]] void refuseAsDamaged() const {
    refuse("the document is damaged after device " + std::to_string(deviceCount));
  }

  void skipBlanks() { rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size())); }

  bool nextIs(std::string_view name) {
    skipBlanks();
    if (!rest.starts_with('<') || !rest.substr(1).starts_with(name)) return false;
    const std::string_view after = rest.substr(1 + name.size());
    return !after.empty() && (kBlanks.find(after.front()) != std::string_view::npos ||
                              after.front() == '>' || after.front() == '/');
  }

  std::size_t tagSize() const {
    const std::size_t close = rest.find('>');
    if (close == std::string_view::npos) refuseAsDamaged();
    return close + 1;
  }

  // The name of the root, with the text beginning at its tag. A text that does not end with the
  // end of its root was cut off.
  std::string_view openRoot() {
    skipBlanks();
    if (!rest.starts_with('<')) refuse("this is no XML document");
    while (rest.starts_with("<?") || rest.starts_with("<!")) {
      rest.remove_prefix(tagSize());
      skipBlanks();
    }
    constexpr std::array<std::string_view, 3> kRoots = {"SVMInventory", "SVMExecution", "SPStatus"};
    const auto* const root = std::find_if(kRoots.begin(), kRoots.end(),
                                          [this](std::string_view name) { return nextIs(name); });
    if (root == kRoots.end()) {
      refuse(
          "this is no result document of tolvanix: its first element is neither SVMInventory, "
          "SVMExecution nor SPStatus");
    }
    isEmptyRoot = rest.substr(0, tagSize()).ends_with("/>");
    const std::string end = std::string("</").append(*root).append(">");
    const std::string_view trimmed = rest.substr(0, rest.find_last_not_of(kBlanks) + 1);
    if (!isEmptyRoot && !trimmed.ends_with(end)) {
      refuse("the document is cut off: it does not end with " + end);
    }
    return *root;
  }

  static ResultDocument::Kind kindOf(std::string_view root) {
    if (root == "SVMInventory") return ResultDocument::Kind::kInventory;
    if (root == "SVMExecution") return ResultDocument::Kind::kExecution;
    return ResultDocument::Kind::kCommandLine;
  }

  void readContent(std::string_view root, ResultDocument& document) {
    while (nextIs("Device")) {
      if (deviceCount == kMostDevices) {
        refuse("it lists more than " + std::to_string(kMostDevices) + " devices");
      }
      document.devices.push_back(readDevice(takeElement("Device")));
      ++deviceCount;
    }
    if (nextIs("SPStatus")) document.status = readStatus("SPStatus");
    if (document.kind == ResultDocument::Kind::kExecution) {
      if (!nextIs("RebootRequired")) refuseAsDamaged();
      const View flag = takeElement("RebootRequired");
      document.restartRequired = flag.find(u'1') != View::npos;
    }
    if (!nextIs(std::string("/").append(root))) refuseAsDamaged();
    rest.remove_prefix(tagSize());
    expectEnd();
  }

  int readStatus(const char* name) {
    const auto status = statusOf(takeElement(name));
    if (!status) refuseAsDamaged();
    return *status;
  }

  void expectEnd() {
    skipBlanks();
    if (!rest.empty()) refuse("there is something after the end of the document");
  }

  // The view is valid until the next call. An element that begins within one of its own name lost
  // its end.
  View takeElement(const char* name) {
    const std::string close = std::string("</").append(name).append(">");
    const std::size_t at = rest.find(close);
    if (at == std::string_view::npos) refuseAsDamaged();
    const std::string_view whole = rest.substr(0, at + close.size());
    if (whole.find(std::string("<").append(name).append(" "), 1) != std::string_view::npos) {
      refuseAsDamaged();
    }
    rest.remove_prefix(whole.size());
    wide = widen(whole);
    return wide;
  }

  const std::string& fileName;
  std::string_view rest;
  std::u16string wide;
  std::size_t deviceCount = 0;
  bool isEmptyRoot = false;
};

}  // namespace

ResultDocument readResultDocument(const std::string& fileName) {
  const std::string text = asUtf8(readFile(fileName));
  if (text.find_first_not_of(kBlanks) == std::string::npos) {
    throw BadInput(fileName + ": the file is empty");
  }
  return Reader(fileName, text).read();
}

int exitCodeOf(const ResultDocument& document) {
  if (document.status) return *document.status;
  const auto failed =
      std::find_if(document.devices.begin(), document.devices.end(),
                   [](const ReportedDevice& d) { return d.status.value_or(0) != kSuccess; });
  return failed != document.devices.end() ? *failed->status : kSuccess;
}

}  // namespace tolvanix::kit
