#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "winapi/posix/base/Failure.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::winapi::outOfMemory;

thread_local DWORD lastError = ERROR_SUCCESS;

struct SystemText {
  DWORD code;
  const char* text;
};

// What the program's own calls and those of this layer can fail with. Codes of the setup
// functions (0xE0000000 and above) have no text, as on Windows.
constexpr SystemText kSystemTexts[] = {
    {ERROR_SUCCESS, "The operation succeeded.\r\n"},
    {ERROR_FILE_NOT_FOUND, "There is no such file.\r\n"},
    {ERROR_PATH_NOT_FOUND, "There is no such folder.\r\n"},
    {ERROR_TOO_MANY_OPEN_FILES, "Too many files are open.\r\n"},
    {ERROR_ACCESS_DENIED, "Access is not permitted.\r\n"},
    {ERROR_INVALID_HANDLE, "The handle is not valid for this call.\r\n"},
    {ERROR_NOT_ENOUGH_MEMORY, "There is not enough memory.\r\n"},
    {ERROR_INVALID_DATA, "The data is not valid.\r\n"},
    {ERROR_NO_MORE_FILES, "There are no further files.\r\n"},
    {ERROR_GEN_FAILURE, "The device or the system failed.\r\n"},
    {ERROR_NOT_SUPPORTED, "The request is not supported.\r\n"},
    {ERROR_INVALID_PARAMETER, "A parameter is not valid.\r\n"},
    {ERROR_BROKEN_PIPE, "The other end of the pipe is closed.\r\n"},
    {ERROR_CALL_NOT_IMPLEMENTED, "This system does not have the function.\r\n"},
    {ERROR_INSUFFICIENT_BUFFER, "The buffer is too small for the data.\r\n"},
    {ERROR_INVALID_NAME, "The name of the file or folder is not valid.\r\n"},
    {ERROR_MOD_NOT_FOUND, "The library, or one that it needs, is missing.\r\n"},
    {ERROR_PROC_NOT_FOUND, "The library has no such function.\r\n"},
    {ERROR_BAD_EXE_FORMAT, "%1 is not a program or library for this system.\r\n"},
    {ERROR_FILENAME_EXCED_RANGE, "The name of the file is too long.\r\n"},
    {ERROR_MORE_DATA, "There is more data than was asked for.\r\n"},
    {ERROR_NO_MORE_ITEMS, "There are no further items.\r\n"},
    {ERROR_DIRECTORY, "The name is not that of a folder.\r\n"},
    {ERROR_MR_MID_NOT_FOUND, "There is no text for message 0x%1 in %2.\r\n"},
    {ERROR_FILE_INVALID, "The file has changed or is empty and cannot be used.\r\n"},
    {ERROR_OLD_WIN_VERSION, "The version of the system is not the one asked for.\r\n"},
    {ERROR_INVALID_USER_BUFFER, "The size of the given structure is wrong.\r\n"},
    {ERROR_RESOURCE_DATA_NOT_FOUND, "The library holds no message texts.\r\n"},
    {ERROR_RESOURCE_LANG_NOT_FOUND, "The library has the text in other languages only.\r\n"},
};

constexpr LANGID kUserDefault = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);
constexpr LANGID kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);

// The two lookups return null with the last error set when there is no text.
const char* systemText(DWORD code, DWORD language) {
  const auto* const found =
      std::find_if(std::begin(kSystemTexts), std::end(kSystemTexts),
                   [code](const SystemText& entry) { return entry.code == code; });
  if (found == std::end(kSystemTexts)) {
    SetLastError(ERROR_MR_MID_NOT_FOUND);
    return nullptr;
  }
  if (language != 0 && language != kUserDefault && language != kEnglish) {
    SetLastError(ERROR_RESOURCE_LANG_NOT_FOUND);
    return nullptr;
  }
  return found->text;
}

const char* moduleText(HMODULE module, DWORD number, DWORD language) {
  using MessageText = const char* (*)(std::uint32_t number, std::uint32_t language);
  const auto messageText = reinterpret_cast<MessageText>(
      reinterpret_cast<void (*)()>(GetProcAddress(module, "TolvanixMessageText")));
  if (messageText == nullptr) {
    SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
    return nullptr;
  }
  const char* const any = messageText(number, 0);
  if (any == nullptr) {
    SetLastError(ERROR_MR_MID_NOT_FOUND);
    return nullptr;
  }
  if (language != 0 && language != kUserDefault) {
    const char* const text = messageText(number, language);
    if (text == nullptr) SetLastError(ERROR_RESOURCE_LANG_NOT_FOUND);
    return text;
  }
  for (const LANGID wanted : {GetSystemDefaultLangID(), kEnglish}) {
    if (const char* const text = messageText(number, wanted)) return text;
  }
  return any;
}

}  // namespace

DWORD GetLastError() {
  return lastError;
}

void SetLastError(DWORD code) {
  lastError = code;
}

DWORD FormatMessageA(DWORD flags, const void* source, DWORD messageId, DWORD languageId,
                     char* buffer, DWORD size, void* arguments) try {
  const DWORD origin = flags & (FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_FROM_HMODULE);
  const bool oneOrigin =
      origin == FORMAT_MESSAGE_FROM_SYSTEM || origin == FORMAT_MESSAGE_FROM_HMODULE;
  if (!oneOrigin || buffer == nullptr || arguments != nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const char* const text = origin == FORMAT_MESSAGE_FROM_SYSTEM
                               ? systemText(messageId, languageId)
                               : moduleText(const_cast<HMODULE>(source), messageId, languageId);
  if (text == nullptr) return 0;
  const std::size_t length = std::strlen(text);
  // Escapes would have to be replaced, and there are no arguments to replace them by.
  if ((flags & FORMAT_MESSAGE_IGNORE_INSERTS) == 0 && std::strchr(text, '%') != nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  if ((flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0) {
    const HLOCAL memory = LocalAlloc(LPTR, std::max<SIZE_T>(length + 1, size));
    if (memory == nullptr) return 0;
    std::memcpy(memory, text, length + 1);
    // By the interface `buffer` is then the address of a pointer.
    std::memcpy(buffer, &memory, sizeof memory);
  } else {
    if (length >= size) {
      SetLastError(ERROR_INSUFFICIENT_BUFFER);
      return 0;
    }
    std::memcpy(buffer, text, length + 1);
  }
  return static_cast<DWORD>(length);
} catch (const std::bad_alloc&) {
  return outOfMemory(DWORD{0});
}

HLOCAL LocalAlloc(UINT flags, SIZE_T bytes) {
  if (flags != LPTR) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  // An allocation of no bytes returns an address all the same.
  void* const memory = std::calloc(bytes > 0 ? bytes : 1, 1);
  if (memory == nullptr) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return memory;
}

HLOCAL LocalFree(HLOCAL memory) {
  std::free(memory);
  return nullptr;
}
