// Message texts of the message library TarvekSPMsg.DLL, in the system's language.
#pragma once

#include <cstdint>
#include <vector>

#include "text/SPUString.h"

namespace tolvanix {

class SPMessageFile {
 public:
  // A language code such as "de" or "zh_TW", whole and without regard to case; a code that has no
  // messages of its own gets English. Empty: the system's language.
  explicit SPMessageFile(const char* languageCode);
  SPMessageFile(const SPMessageFile&) = default;
  SPMessageFile& operator=(const SPMessageFile&) = default;
  virtual ~SPMessageFile() = default;

  // The text of a message without its line end, each insert in place of its first marker (%1, %2,
  // ...); "Internal Error - Message not found" without the library or the message.
  SPUString getMessage(std::uint32_t number, const std::vector<SPUString>& inserts) const;

  static const char* getSystemLanguageCode();

  int getPrimaryLanguage() const { return primaryLanguage; }
  int getSubLanguage() const { return subLanguage; }

 private:
  int primaryLanguage;
  int subLanguage;
};

}  // namespace tolvanix
