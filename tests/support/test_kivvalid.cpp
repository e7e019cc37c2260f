// A validation library for tests. Files in the current folder:
//   answer.txt   the document: UTF-16LE with a byte-order mark, else a unit for each byte;
//                "null" for none, "throw" for an exception in place of it, "throw at the end" for
//                one when it is given back
//   calls.txt    gets a line for each call, and one when the library is unloaded
//   package.bin, inventory.bin   the texts that it was given, UTF-16LE
// WITHOUT_VALIDATE and WITHOUT_FREE leave out an export.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "kivvalid.h"

namespace {

[[maybe_unused]] KivChar* answer;
[[maybe_unused]] bool throwsAtTheEnd = false;
// A number: an exception class would keep the library from being unloaded, as would a stream.
[[maybe_unused]] constexpr int kFault = 1;

void write(const char* file, const char* mode, const void* bytes, std::size_t size) {
  std::FILE* const out = std::fopen(file, mode);
  if (out == nullptr || std::fwrite(bytes, 1, size, out) != size) std::abort();
  std::fclose(out);
}

void recordCall(const char* line) {
  write("calls.txt", "ab", line, std::strlen(line));
}

struct Loaded {
  Loaded() = default;
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;
  ~Loaded() { recordCall("unloaded\n"); }
} loaded;

[[maybe_unused]] void writeText(const char* file, const KivChar* text) {
  std::size_t size = 0;
  while (text[size] != 0) ++size;
  write(file, "wb", text, size * sizeof *text);
}

[[maybe_unused]] KivChar* readAnswer() {
  std::FILE* const in = std::fopen("answer.txt", "rb");
  if (in == nullptr) std::abort();
  std::fseek(in, 0, SEEK_END);
  const auto size = static_cast<std::size_t>(std::ftell(in));
  std::rewind(in);
  auto* const bytes = static_cast<unsigned char*>(std::malloc(size + 1));
  auto* text = static_cast<KivChar*>(std::calloc(size + 1, sizeof(KivChar)));
  if (std::fread(bytes, 1, size, in) != size) std::abort();
  std::fclose(in);
  if (size >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) {
    std::memcpy(text, bytes + 2, size - 2);
  } else {
    for (std::size_t i = 0; i < size; ++i) text[i] = bytes[i];
  }
  const std::string_view asked(reinterpret_cast<char*>(bytes), size);
  const bool isThrow = asked == "throw";
  throwsAtTheEnd = asked == "throw at the end";
  if (asked == "null" || isThrow) {
    std::free(text);
    text = nullptr;
  }
  std::free(bytes);
  if (isThrow) throw kFault;
  return text;
}

}  // namespace

#ifndef WITHOUT_VALIDATE
const KivChar* SPValidate(const KivChar* package, const KivChar* inventory, const void* reserved1,
                          const void* reserved2) {
  const bool reserved = reserved1 != nullptr || reserved2 != nullptr;
  recordCall(reserved ? "validate with more\n" : "validate\n");
  writeText("package.bin", package);
  writeText("inventory.bin", inventory);
  answer = readAnswer();
  return answer;
}
#endif

#ifndef WITHOUT_FREE
void SPFreeValidationXML(const KivChar* validation) {
  recordCall(validation == answer ? "free\n" : "free another\n");
  std::free(answer);
  if (throwsAtTheEnd) throw kFault;
}
#endif
