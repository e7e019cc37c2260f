// The message library for tests as it is off Windows (FormatMessageA in winapi/winapi.h);
// test_messages.mc has the same texts for Windows.
#include <cstdint>

extern "C" const char* TolvanixMessageText(std::uint32_t number, std::uint32_t language) {
  const struct {
    std::uint32_t number;
    std::uint32_t language;
    const char* text;
  } messages[] = {{6046, 0x409, "%1 is closed, %2 too: %1.\r\n"},  // English
                  {6046, 0x407, "%1 ist zu.\r\n"},                 // German
                  {6047, 0x409, "%1 is not there.\r\n"}};
  for (const auto& entry : messages) {
    const bool found = language == 0 || language == entry.language;
    if (entry.number == number && found) return entry.text;
  }
  return nullptr;
}
