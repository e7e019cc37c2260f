// The message library for tests as it is off Windows (FormatMessageA in winapi/winapi.h);
// test_messages.mc has the same texts for Windows.
#include <cstdint>

namespace {

struct Message {
  std::uint32_t number;
  std::uint32_t language;
  const char* text;
};

constexpr std::uint32_t kEnglish = 0x409;
constexpr std::uint32_t kGerman = 0x407;

constexpr Message kMessages[] = {
    {6046, kEnglish, "%1 is closed, %2 too: %1.\r\n"},
    {6046, kGerman, "%1 ist zu.\r\n"},
    {6047, kEnglish, "%1 is not there.\r\n"},
};

}  // namespace

extern "C" const char* TolvanixMessageText(std::uint32_t number, std::uint32_t language) {
  for (const Message& message : kMessages) {
    if (message.number == number && (language == 0 || message.language == language)) {
      return message.text;
    }
  }
  return nullptr;
}
