// Writes a folder of INF files of the kind that network drivers bring: one manufacturer, three
// decorations with the same devices, a string for each device, install sections. Each has about
// 100 KB with the usual 340 devices. The same arguments give the same bytes.
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Options {
  std::filesystem::path folder;
  unsigned files = 0;
  unsigned utf16Percent = 0;
  unsigned devices = 340;
  std::string lastId;  // listed by the last model line of the last file
  std::string vendor = "1DE1";
};

[[gnu::format(printf, 2, 3)]] void append(std::string& text, const char* format, ...) {
  char line[512];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  text += line;
}

std::string modelId(unsigned file, unsigned device, const std::string& vendor) {
  // Every fourth line names the device alone, the others a computer maker's variant of it.
  std::string id;
  append(id, "PCI\\VEN_%s&DEV_%04X", vendor.c_str(), (file * 7 + device / 4) & 0xFFFFU);
  if (device % 4 != 0) append(id, "&SUBSYS_%04X%04X", device * 31 & 0xFFFFU, 0x1DE5 + device % 5);
  return id;
}

std::string infText(unsigned file, const Options& options) {
  constexpr std::string_view kDecorations[] = {"NTamd64.6.1", "NTamd64.6.2", "NTamd64.10.0"};
  std::string text =
      "; Network adapters\r\n[Version]\r\nSignature   = \"$Windows NT$\"\r\n"
      "Class       = Net\r\nClassGUID   = {4d36e972-e325-11ce-bfc1-08002be10318}\r\n"
      "Provider    = %Maker%\r\nDriverVer   = 07/04/2016,12.15.31.4\r\n\r\n"
      "[Manufacturer]\r\n%Maker% = Maker, NTamd64.6.1, NTamd64.6.2, NTamd64.10.0\r\n\r\n"
      "[ControlFlags]\r\nExcludeFromSelect = *\r\n\r\n[Maker]\r\n; Empty: for 64-bit systems "
      "only\r\n";
  for (const std::string_view decoration : kDecorations) {
    append(text, "\r\n[Maker.%s]\r\n; DisplayName                 Section         DeviceId\r\n",
           decoration.data());
    for (unsigned device = 0; device < options.devices; ++device) {
      const bool last = file + 1 == options.files && device + 1 == options.devices &&
                        decoration == kDecorations[2];
      const std::string id =
          last && !options.lastId.empty() ? options.lastId : modelId(file, device, options.vendor);
      append(text, "%%Card%04X.DeviceDesc%% = E%04X.%u, %s\r\n", device, device / 16, file % 4,
             id.c_str());
    }
  }
  for (unsigned section = 0; section <= options.devices / 16; ++section) {
    append(text,
           "\r\n[E%04X.%u]\r\nCharacteristics = 0x84 ; physical, with a user interface\r\n"
           "BusType         = 5\r\nAddReg          = Default.Reg, Speed.Reg, Power.Reg\r\n"
           "CopyFiles       = Driver.CopyFiles\r\n\r\n[E%04X.%u.Services]\r\n"
           "AddService = CardDriver, 2, CardDriver.Service, CardDriver.EventLog\r\n",
           section, file % 4, section, file % 4);
  }
  text +=
      "\r\n[Default.Reg]\r\nHKR, Ndi\\Interfaces, UpperRange, 0, \"ndis5\"\r\n"
      "HKR, Ndi\\Interfaces, LowerRange, 0, \"ethernet\"\r\n\r\n[Strings]\r\n"
      "Maker = \"Maker of Adapters\"\r\n";
  for (unsigned device = 0; device < options.devices; ++device) {
    append(text, "Card%04X.DeviceDesc = \"Network card %u\"\r\n", device, device);
  }
  return text;
}

std::string toUtf16(std::string_view text) {
  std::string bytes = "\xFF\xFE";
  for (const char c : text) bytes.append({c, '\0'});
  return bytes;
}

bool writeFiles(const Options& options) {
  std::filesystem::create_directories(options.folder);
  for (unsigned file = 0; file < options.files; ++file) {
    std::string name;
    append(name, "net%05u.inf", file);
    const bool utf16 = file % 100 * 37 % 100 < options.utf16Percent;
    const std::string text = infText(file, options);
    std::ofstream out(options.folder / name, std::ios::binary);
    out << (utf16 ? toUtf16(text) : text);
    if (!out.flush()) return false;
  }
  return true;
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() < 2 || arguments.size() > 6) {
    std::cerr << "usage: generate_inf_files FOLDER FILES "
                 "[LAST-ID [UTF16-PERCENT [DEVICES [VENDOR]]]]\n";
    return 2;
  }
  const auto number = [&](std::size_t index, unsigned otherwise) {
    return index < arguments.size() ? static_cast<unsigned>(std::stoul(arguments[index]))
                                    : otherwise;
  };
  Options options;
  options.folder = arguments[0];
  options.files = number(1, 0);
  if (arguments.size() > 2) options.lastId = arguments[2];
  options.utf16Percent = number(3, options.utf16Percent);
  options.devices = number(4, options.devices);
  if (arguments.size() > 5) options.vendor = arguments[5];
  if (writeFiles(options)) return 0;
  std::cerr << "cannot write to " << options.folder << '\n';
  return 1;
}
