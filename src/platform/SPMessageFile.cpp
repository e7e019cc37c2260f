#include "platform/SPMessageFile.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "text/Conversion.h"
#include "text/Format.h"
#include "text/SPString.h"
#include "winapi/Owner.h"
#include "winapi/winapi.h"

namespace tolvanix {

namespace {

// Language identifiers: learn.microsoft.com/openspecs/windows_protocols/ms-lcid.
struct SystemLanguage {
  LANGID identifier;
  const char* code;
};
constexpr SystemLanguage kSystemLanguages[] = {
    {1028, "zh_TW"}, {1031, "de"},    {1033, "en"}, {1034, "es"},    {1036, "fr"},
    {1041, "ja"},    {1046, "pt_BR"}, {2052, "zh"}, {2057, "en_GB"}, {2066, "ko"},
};

struct MessageLanguage {
  const char* code;
  WORD primary;
  WORD sub;
};
constexpr MessageLanguage kMessageLanguages[] = {
    {"es", LANG_SPANISH, SUBLANG_SPANISH_MODERN}, {"fr", LANG_FRENCH, SUBLANG_FRENCH},
    {"de", LANG_GERMAN, SUBLANG_GERMAN},          {"zh", LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED},
    {"ja", LANG_JAPANESE, SUBLANG_DEFAULT},
};
constexpr MessageLanguage kEnglish = {"en", LANG_ENGLISH, SUBLANG_ENGLISH_US};

const MessageLanguage& messageLanguage(const char* code) {
  const SPString wanted(code);
  const auto* const found = std::find_if(std::begin(kMessageLanguages), std::end(kMessageLanguages),
                                         [&](const MessageLanguage& entry) {
                                           return wanted.compare(entry.code, kCaseInsensitive) == 0;
                                         });
  return found != std::end(kMessageLanguages) ? *found : kEnglish;
}

// The library's text, unchanged; empty when it has none in that language.
std::string libraryText(HMODULE library, std::uint32_t number, DWORD language) {
  constexpr DWORD kFlags =
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS;
  constexpr DWORD kMinimumSize = 20;
  char* text = nullptr;
  // With ALLOCATE_BUFFER the buffer argument is the address of the pointer to fill.
  const DWORD length = FormatMessageA(kFlags, library, number, language,
                                      reinterpret_cast<char*>(&text), kMinimumSize, nullptr);
  const LocalMemoryOwner memory(text);
  return length > 0 && text != nullptr ? std::string(text, length) : std::string();
}

std::string findText(std::uint32_t number, DWORD language) {
  // The library stays loaded: its texts may be asked for again.
  const HMODULE library = LoadLibraryA("TarvekSPMsg.DLL");
  if (library == nullptr) return {};
  const std::string text = libraryText(library, number, language);
  return !text.empty() ? text : libraryText(library, number, 0);
}

}  // namespace

SPMessageFile::SPMessageFile(const char* languageCode) {
  const char* const code = *languageCode != '\0' ? languageCode : getSystemLanguageCode();
  const MessageLanguage& language = messageLanguage(code);
  primaryLanguage = language.primary;
  subLanguage = language.sub;
}

SPUString SPMessageFile::getMessage(std::uint32_t number,
                                    const std::vector<SPUString>& inserts) const {
  const std::string found = findText(
      number, MAKELANGID(static_cast<WORD>(primaryLanguage), static_cast<WORD>(subLanguage)));
  if (found.empty()) return SPUString(u"Internal Error - Message not found");

  std::u16string text = widen(found);
  if (text.ends_with(u"\r\n")) text.resize(text.size() - 2);
  for (std::size_t i = 0; i < inserts.size(); ++i) {
    const std::u16string marker = widen(formatText("%%%d", static_cast<int>(i + 1)));
    const std::size_t position = text.find(marker);
    if (position != std::u16string::npos) text.replace(position, marker.size(), inserts[i]);
  }
  return SPUString(std::move(text));
}

const char* SPMessageFile::getSystemLanguageCode() {
  const LANGID identifier = GetSystemDefaultLangID();
  const auto* const found =
      std::find_if(std::begin(kSystemLanguages), std::end(kSystemLanguages),
                   [&](const SystemLanguage& entry) { return entry.identifier == identifier; });
  return found != std::end(kSystemLanguages) ? found->code : "en";
}

}  // namespace tolvanix
