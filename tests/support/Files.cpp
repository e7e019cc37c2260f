#include "support/Files.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <thread>

namespace tolvanix::test {

namespace fs = std::filesystem;

TempDir::TempDir() {
  std::random_device random;
  do {
    folder = fs::temp_directory_path() / ("tolvanix-" + std::to_string(random()));
  } while (!fs::create_directory(folder));
}

TempDir::~TempDir() {
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}

CurrentTempDir::CurrentTempDir() : before(fs::current_path()) {
  fs::current_path(path());
}

CurrentTempDir::~CurrentTempDir() {
  std::error_code ignored;
  fs::current_path(before, ignored);
}

fs::path fixture(std::string_view name) {
  return fs::path(TOLVANIX_FIXTURES) / name;
}

void writeFile(const fs::path& file, std::string_view bytes) {
  fs::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
}

namespace {

std::string readAll(const fs::path& file, std::ios::openmode mode) {
  std::ifstream in(file, mode);
  if (!in) throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

std::string readFile(const fs::path& file) {
  return readAll(file, std::ios::in | std::ios::binary);
}

std::string readText(const fs::path& file) {
  return readAll(file, std::ios::in);
}

std::string infFile(const std::vector<std::string>& hardwareIds, std::string_view version) {
  std::string text = "[Version]\nSignature=\"$Windows NT$\"\nClass=System\n";
  text.append(version).append("\n[Manufacturer]\n%Maker%=Models,NTamd64\n");
  text += "[Strings]\nMaker=\"The maker\"\nDevice=\"A 100% device\"\n[Models.NTamd64]\n";
  for (const std::string& id : hardwareIds) text.append("%Device%=Install,").append(id) += '\n';
  return text;
}

void placeHelper(const fs::path& program, std::string_view steps) {
  fs::create_directories(program.parent_path());
  fs::remove(program);  // the option to overwrite does not work everywhere
  fs::copy_file(TEST_HELPER_PROGRAM, program);
  writeFile(fs::path(program).replace_extension(".txt"), steps);
}

namespace {

// Whether it holds within a time that is long for a step of any program.
template <typename Condition>
bool soon(Condition condition) {
  for (int tries = 0; tries < 2000; ++tries) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

}  // namespace

bool releaseHelper(const fs::path& program, std::string_view file) {
  const fs::path given = program.parent_path() / file;
  writeFile(given, "");
  if (!soon([&given] { return !exists(given); })) return false;
  // Windows removes no program that runs.
  return soon([&program] {
    std::error_code stillRuns;
    return fs::remove(program, stillRuns);
  });
}

void placeValidationLibrary(const fs::path& folder, std::string_view answer, Exports exports) {
  const char* library = TEST_KIVVALID;
  if (exports == Exports::kWithoutValidate) library = TEST_KIVVALID_WITHOUT_VALIDATE;
  if (exports == Exports::kWithoutFree) library = TEST_KIVVALID_WITHOUT_FREE;
  fs::copy_file(library, folder / "kivvalid.dll");
  writeFile(folder / "answer.txt", answer);
}

std::string foreignLibrary() {
  std::string bytes = readFile(TEST_KIVVALID);
  // The machine is at a fixed place in ELF; in PE two bytes after a signature, whose place is
  // at 0x3C. 0x28 is ARM in ELF and nothing in PE.
  std::size_t machine = 18;
  if (bytes.starts_with("MZ")) {
    machine = static_cast<unsigned char>(bytes.at(0x3C)) + 4 +
              std::size_t{256} * static_cast<unsigned char>(bytes.at(0x3D));
  }
  return bytes.replace(machine, 2, std::string("\x28\0", 2));
}

std::string utf16File(std::u16string_view text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

}  // namespace tolvanix::test
