// A validation library for tests. Files in the current folder:
//   answer.txt   the document: UTF-16LE with a byte-order mark, else a unit for each byte;
//                "null" for none, "throw" for an exception in place of it, "throw at the end" for
//                one when it is given back
//   calls.txt    gets a line for each call, and one when the library is unloaded
//   package.bin, inventory.bin   the texts that it was given, UTF-16LE
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "kivvalid.h"

namespace {

KivChar* answer;
bool throwsAtTheEnd = false;
// A number: an exception class would keep the library from being unloaded, as would a stream.
constexpr int kFault = 1;

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

void writeText(const char* file, const KivChar* text) {
  std::size_t size = 0;
  while (text[size] != 0) ++size;
  write(file, "wb", text, size * sizeof *text);
}

KivChar* readAnswer() {
  static char bytes[10'000'000];
  std::FILE* const in = std::fopen("answer.txt", "rb");
  if (in == nullptr) std::abort();
  const std::string_view read(bytes, std::fread(bytes, 1, sizeof bytes, in));
  std::fclose(in);
  throwsAtTheEnd = read == "throw at the end";
  if (read == "throw") throw int{kFault};
  if (read == "null") return nullptr;
  auto* const text = static_cast<KivChar*>(std::calloc(read.size() + 1, sizeof(KivChar)));
  const bool isWide = read.substr(0, 2) == "\xFF\xFE";
  if (isWide) std::memcpy(text, bytes + 2, read.size() - 2);
  for (std::size_t i = 0; !isWide && i < read.size(); ++i) {
    text[i] = static_cast<unsigned char>(read[i]);
  }
  return text;
}

}  // namespace

const KivChar* SPValidate(const KivChar* package, const KivChar* inventory, const void* reserved1,
                          const void* reserved2) {
  const bool reserved = reserved1 != nullptr || reserved2 != nullptr;
  recordCall(reserved ? "validate with more\n" : "validate\n");
  writeText("package.bin", package);
  writeText("inventory.bin", inventory);
  return answer = readAnswer();
}

void SPFreeValidationXML(const KivChar* validation) {
  recordCall(validation == answer ? "free\n" : "free another\n");
  std::free(answer);
  if (throwsAtTheEnd) throw int{kFault};
}
