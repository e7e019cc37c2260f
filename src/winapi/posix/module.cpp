#include <dlfcn.h>
#include <elf.h>
#include <sys/auxv.h>
#include <unistd.h>
#include <unwind.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "text/Ascii.h"
#include "winapi/posix/base/Failure.h"
#include "winapi/posix/base/Paths.h"
#include "winapi/posix/base/Report.h"
#include "winapi/posix/kernel32.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::equalIgnoringCase;
using tolvanix::winapi::outOfMemory;

namespace fs = std::filesystem;

using tolvanix::winapi::report;

// ---- The program's own path ----

// As the program was started, absolute; a symbolic link is not resolved.
fs::path findProgram() {
  std::error_code error;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel hands over addresses as numbers
  const auto* const startedAs = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
  if (startedAs != nullptr) {
    fs::path absolute = fs::absolute(startedAs, error);
    // ".." after a link to a folder does not cancel out.
    fs::path normal = absolute.lexically_normal();
    if (!error && fs::equivalent(normal, absolute, error)) return normal;
    if (fs::exists(absolute, error)) return absolute;
  }
  return fs::read_symlink("/proc/self/exe", error);
}

// Found once, because a relative name is lost when the program changes its directory.
const fs::path& programPath() {
  static const fs::path path = findProgram();
  return path;
}

// ---- Libraries ----

// One entry for each LoadLibraryA that was not freed.
std::vector<HMODULE>& loadedModules() {
  static std::vector<HMODULE> modules;
  return modules;
}

struct Export {
  const char* name;
  FARPROC address;
};

template <typename Function>
FARPROC asExport(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

// Only its address counts: the handle of the one library that is always there.
char kernel32Module;

FARPROC kernel32Export(const char* name) {
  const Export exports[] = {{"GetNativeSystemInfo", asExport(&GetNativeSystemInfo)},
                            {"IsWow64Process", asExport(&IsWow64Process)}};
  for (const Export& entry : exports) {
    if (std::strcmp(entry.name, name) == 0) return entry.address;
  }
  return nullptr;
}

// The file of that name in the folder; of several that differ in case the very name, else the
// first in byte order. Empty when there is none.
fs::path findIgnoringCase(const fs::path& folder, const std::string& name) {
  std::error_code error;
  if (fs::exists(folder / name, error)) return folder / name;
  std::string found;
  for (fs::directory_iterator entry(folder, error); entry != fs::directory_iterator();
       entry.increment(error)) {
    const std::string candidate = entry->path().filename().string();
    const bool same = equalIgnoringCase(candidate, name);
    if (same && (found.empty() || candidate < found)) found = candidate;
  }
  const bool isMissing = error == std::errc::no_such_file_or_directory;
  if (error && !isMissing) report(folder.string() + ": " + error.message());
  return found.empty() ? fs::path() : folder / found;
}

fs::path findLibrary(const char* libFileName) {
  const std::string name = tolvanix::winapi::toNativePath(libFileName);
  const fs::path path(name);
  if (path.has_parent_path()) {
    return findIgnoringCase(path.parent_path(), path.filename().string());
  }
  for (const fs::path& folder : {programPath().parent_path(), fs::path("./")}) {
    fs::path found = findIgnoringCase(folder, name);
    if (!found.empty()) return found;
  }
  return {};
}

template <typename Structure>
bool readAt(std::ifstream& file, std::uint64_t offset, Structure& structure) {
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(reinterpret_cast<char*>(&structure), sizeof structure);
  return file.good();
}

// Whether the segments of the shared object are all there: the loader maps a truncated one
// without complaint, and touching the missing pages ends the process.
bool isWholeLibrary(const fs::path& path) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(path, error);
  std::ifstream file(path, std::ios::binary);
  Elf64_Ehdr header;
  if (error || !readAt(file, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
      header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_phentsize != sizeof(Elf64_Phdr)) {
    return false;
  }
  for (unsigned i = 0; i < header.e_phnum; ++i) {
    Elf64_Phdr segment;
    if (!readAt(file, header.e_phoff + i * sizeof segment, segment)) return false;
    if (segment.p_offset > size || segment.p_filesz > size - segment.p_offset) return false;
  }
  return true;
}

// An exception that a library throws is to be caught on our side. The unwinder that is linked into
// the program readies itself at its first use, which the library's own would not be.
void prepareForForeignExceptions() {
  _Unwind_Backtrace([](_Unwind_Context*, void*) { return _URC_END_OF_STACK; }, nullptr);
}

// The code for what the loader says, which is reported too.
DWORD loadError() {
  const char* const text = dlerror();
  if (text == nullptr) return ERROR_BAD_EXE_FORMAT;
  report(text);
  if (std::strstr(text, "cannot open shared object file") != nullptr) return ERROR_MOD_NOT_FOUND;
  if (std::strstr(text, "undefined symbol") != nullptr) return ERROR_PROC_NOT_FOUND;
  return ERROR_BAD_EXE_FORMAT;
}

}  // namespace

DWORD GetModuleFileNameA(HMODULE module, char* fileName, DWORD size) try {
  if (module != nullptr) {
    SetLastError(ERROR_MOD_NOT_FOUND);
    return 0;
  }
  if (size == 0) {
    SetLastError(ERROR_SUCCESS);
    return 0;
  }
  const std::string path = tolvanix::winapi::fromNativePath(programPath().string());
  if (path.empty()) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    return 0;
  }
  const std::size_t length = std::min<std::size_t>(path.size(), size - 1);
  std::memcpy(fileName, path.data(), length);
  fileName[length] = '\0';
  const bool whole = length == path.size();
  SetLastError(whole ? ERROR_SUCCESS : ERROR_INSUFFICIENT_BUFFER);
  return whole ? static_cast<DWORD>(length) : size;
} catch (const std::bad_alloc&) {
  return outOfMemory(DWORD{0});
}

HMODULE GetModuleHandleA(const char* moduleName) {
  for (const char* const name : {"kernel32", "kernel32.dll"}) {
    if (moduleName != nullptr && equalIgnoringCase(moduleName, name)) return &kernel32Module;
  }
  SetLastError(ERROR_MOD_NOT_FOUND);
  return nullptr;
}

HMODULE LoadLibraryA(const char* libFileName) try {
  const auto fail = [](DWORD code) -> HMODULE {
    SetLastError(code);
    return nullptr;
  };
  if (libFileName == nullptr || *libFileName == '\0') return fail(ERROR_INVALID_PARAMETER);
  const fs::path path = findLibrary(libFileName);
  std::error_code error;
  if (path.empty() || fs::is_directory(path, error)) return fail(ERROR_MOD_NOT_FOUND);
  if (access(path.c_str(), R_OK) != 0) {
    report(path.string() + ": " + std::strerror(errno));
    return fail(ERROR_ACCESS_DENIED);
  }
  if (!isWholeLibrary(path)) {
    report(path.string() + ": not a whole shared object of 64 bits");
    return fail(ERROR_BAD_EXE_FORMAT);
  }
  void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return fail(loadError());
  prepareForForeignExceptions();
  loadedModules().push_back(module);
  return module;
} catch (const std::bad_alloc&) {
  return outOfMemory(HMODULE{});
}

BOOL FreeLibrary(HMODULE module) {
  if (module == &kernel32Module) return TRUE;
  std::vector<HMODULE>& modules = loadedModules();
  const auto found = std::find(modules.begin(), modules.end(), module);
  if (found == modules.end()) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  modules.erase(found);
  dlclose(module);
  return TRUE;
}

FARPROC GetProcAddress(HMODULE module, const char* procName) {
  FARPROC address = nullptr;
  if (module == &kernel32Module) {
    address = kernel32Export(procName);
  } else {
    const std::vector<HMODULE>& modules = loadedModules();
    if (std::find(modules.begin(), modules.end(), module) == modules.end()) {
      SetLastError(ERROR_INVALID_HANDLE);
      return nullptr;
    }
    address = reinterpret_cast<FARPROC>(dlsym(module, procName));
  }
  if (address == nullptr) SetLastError(ERROR_PROC_NOT_FOUND);
  return address;
}
