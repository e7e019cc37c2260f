// A validation library for tests. Files in the current folder:
//   answer.txt   what it answers: UTF-16LE with a byte-order mark, else a unit for each byte;
//                "null" for no document
//   calls.txt    gets a line for each call, and one when the library is unloaded
//   package.bin, inventory.bin   the texts that it was given, UTF-16LE
// WITHOUT_VALIDATE and WITHOUT_FREE leave out an export.
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "kivvalid.h"

namespace {

[[maybe_unused]] KivChar* answer;

void recordCall(const char* line) {
  std::ofstream("calls.txt", std::ios::app | std::ios::binary) << line << '\n';
}

struct Loaded {
  Loaded() = default;
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;
  ~Loaded() { recordCall("unloaded"); }
} loaded;

[[maybe_unused]] void writeText(const char* file, const KivChar* text) {
  const std::u16string_view units(text);
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(text), static_cast<std::streamsize>(2 * units.size()));
}

[[maybe_unused]] KivChar* readAnswer() {
  std::ifstream in("answer.txt", std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(in), {}};
  if (bytes == "null") return nullptr;
  const bool wide = bytes.starts_with("\xFF\xFE");
  const std::size_t step = wide ? 2 : 1;
  auto* const text = new KivChar[bytes.size() + 1]();
  KivChar* out = text;
  for (std::size_t i = wide ? 2 : 0; i + step <= bytes.size(); i += step) {
    const auto unit = static_cast<unsigned char>(bytes[i]);
    *out++ =
        wide ? static_cast<KivChar>(unit | static_cast<unsigned char>(bytes[i + 1]) << 8) : unit;
  }
  return text;
}

}  // namespace

#ifndef WITHOUT_VALIDATE
const KivChar* SPValidate(const KivChar* package, const KivChar* inventory, const void* reserved1,
                          const void* reserved2) {
  const bool reserved = reserved1 != nullptr || reserved2 != nullptr;
  recordCall(reserved ? "validate with more" : "validate");
  writeText("package.bin", package);
  writeText("inventory.bin", inventory);
  answer = readAnswer();
  return answer;
}
#endif

#ifndef WITHOUT_FREE
void SPFreeValidationXML(const KivChar* validation) {
  recordCall(validation == answer ? "free" : "free another");
  delete[] answer;
}
#endif
