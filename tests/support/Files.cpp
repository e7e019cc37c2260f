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
  if (!before.empty()) fs::current_path(before, ignored);
  fs::remove_all(folder, ignored);
}

CurrentTempDir::CurrentTempDir() {
  before = fs::current_path();
  fs::current_path(path());
}

fs::path fixture(std::string_view name) {
  return fs::path(TOLVANIX_FIXTURES) / name;
}

void writeFile(const fs::path& file, std::string_view bytes) {
  if (file.has_parent_path()) fs::create_directories(file.parent_path());
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

bool releaseHelper(const fs::path& program, std::string_view file) {
  const fs::path given = program.parent_path() / file;
  writeFile(given, "");
  for (int tries = 0; tries < 2000; ++tries) {  // longer than any helper needs
    std::error_code stillRuns;                  // Windows removes no program that runs
    if (!exists(given) && fs::remove(program, stillRuns)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

void placeValidationLibrary(const fs::path& folder, std::string_view answer,
                            const std::string& withoutExport) {
  std::string library = readFile(TEST_KIVVALID);
  const std::string name = withoutExport + '\0';
  for (std::size_t at = 0;
       !withoutExport.empty() && (at = library.find(name, at)) < std::string::npos;) {
    library[at + withoutExport.size() - 1] = '_';
  }
  writeFile(folder / "kivvalid.dll", library);
  writeFile(folder / "answer.txt", answer);
}

std::string utf16File(std::u16string_view text) {
  return std::string("\xFF\xFE")
      .append(reinterpret_cast<const char*>(text.data()), 2 * text.size());
}

}  // namespace tolvanix::test
