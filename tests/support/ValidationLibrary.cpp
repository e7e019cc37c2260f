#include "support/ValidationLibrary.h"

#include <cstdint>
#include <cstring>

#include "support/Files.h"

namespace tolvanix::test {

void placeValidationLibrary(const std::filesystem::path& folder, std::string_view answer,
                            Exports exports) {
  const char* library = TEST_KIVVALID;
  if (exports == Exports::kWithoutValidate) library = TEST_KIVVALID_WITHOUT_VALIDATE;
  if (exports == Exports::kWithoutFree) library = TEST_KIVVALID_WITHOUT_FREE;
  std::filesystem::copy_file(library, folder / "kivvalid.dll");
  writeFile(folder / "answer.txt", answer);
}

std::string foreignLibrary() {
  std::string bytes = readFile(TEST_KIVVALID);
  // The machine stands at a fixed place in ELF; in PE two bytes behind a signature, whose place is
  // at 0x3C. 0x28 is ARM in ELF and nothing in PE.
  std::uint32_t machine = 18;
  if (bytes.starts_with("MZ")) {
    std::memcpy(&machine, bytes.data() + 0x3C, sizeof machine);
    machine += 4;
  }
  bytes.at(machine) = 0x28;
  bytes.at(machine + 1) = 0;
  return bytes;
}

}  // namespace tolvanix::test
