#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "winapi/posix/base/Failure.h"
#include "winapi/posix/inf/InfFile.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::winapi::fail;
using tolvanix::winapi::InfFile;
using tolvanix::winapi::InfLine;
using tolvanix::winapi::InfPosition;
using tolvanix::winapi::outOfMemory;

constinit std::vector<std::unique_ptr<InfFile>> openFiles;

// A closed file of ordinary size is kept for the next one: reading a folder of them then takes no
// memory anew (300 files, 27 MB: 60 ms; with new memory for each, 90).
constexpr std::size_t kLargestSpare = std::size_t{1024} * 1024;

constinit std::unique_ptr<InfFile> spareFile;

void keepSpare(std::unique_ptr<InfFile> file) {
  if (file->capacity() <= kLargestSpare) spareFile = std::move(file);
}

// A bare name means a file of the system's own folder, and this system has none.
DWORD openFile(const char* fileName, UINT& errorLine) {
  if (std::strpbrk(fileName, "\\/") == nullptr) return ERROR_FILE_NOT_FOUND;
  std::unique_ptr<InfFile> file = std::move(spareFile);
  if (file == nullptr) file = std::make_unique<InfFile>();
  const DWORD error = file->open(fileName, errorLine);
  if (error == ERROR_SUCCESS) {
    openFiles.push_back(std::move(file));
  } else {
    keepSpare(std::move(file));
  }
  return error;
}

// Null, with the last error set, for what is no handle of an open file.
InfFile* fromHandle(HINF handle) {
  for (const auto& file : openFiles) {
    if (file.get() == handle) return file.get();
  }
  SetLastError(ERROR_INVALID_HANDLE);
  return nullptr;
}

// Null, with the last error set, for what is no line of an open file.
const InfLine* lineOf(InfFile* file, const INFCONTEXT& context) {
  if (file == nullptr) return nullptr;
  const InfLine* const line = file->lineAt({context.Section, context.Line});
  if (line == nullptr) SetLastError(ERROR_INVALID_PARAMETER);
  return line;
}

BOOL giveOut(HINF inf, std::optional<InfPosition> position, INFCONTEXT* context) {
  if (!position) return fail(ERROR_LINE_NOT_FOUND);
  *context = {inf, inf, position->section, position->line};
  return TRUE;
}

BOOL copyField(InfFile& file, std::string_view field, char* buffer, DWORD size,
               DWORD* requiredSize) {
  // A line is asked in this way whether it has the field: no name in it needs to be replaced.
  const bool noRoom = buffer != nullptr && size <= 1 && requiredSize == nullptr;
  if (noRoom && !field.empty()) return fail(ERROR_INSUFFICIENT_BUFFER);
  const std::string_view text = file.expand(field);
  if (requiredSize != nullptr) *requiredSize = static_cast<DWORD>(text.size() + 1);
  if (buffer == nullptr) return TRUE;
  if (size <= text.size()) return fail(ERROR_INSUFFICIENT_BUFFER);
  std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = '\0';
  return TRUE;
}

}  // namespace

HINF SetupOpenInfFileA(const char* fileName, const char* infClass, DWORD style,
                       UINT* errorLine) try {
  UINT faultyLine = 0;
  const bool supported = fileName != nullptr && infClass == nullptr && style == INF_STYLE_WIN4;
  const DWORD error = supported ? openFile(fileName, faultyLine) : ERROR_INVALID_PARAMETER;
  if (errorLine != nullptr) *errorLine = faultyLine;
  SetLastError(error);
  return error == ERROR_SUCCESS ? openFiles.back().get() : INVALID_HANDLE_VALUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(INVALID_HANDLE_VALUE);
}

void SetupCloseInfFile(HINF inf) {
  const auto found = std::find_if(openFiles.begin(), openFiles.end(),
                                  [inf](const auto& file) { return file.get() == inf; });
  if (found == openFiles.end()) return;
  keepSpare(std::move(*found));
  openFiles.erase(found);
}

BOOL SetupFindFirstLineA(HINF inf, const char* section, const char* key, INFCONTEXT* context) try {
  InfFile* const file = fromHandle(inf);
  if (file == nullptr) return FALSE;
  // Looking for a key is nothing that the program does.
  if (section == nullptr || key != nullptr || context == nullptr) {
    return fail(ERROR_INVALID_PARAMETER);
  }
  return giveOut(inf, file->firstLine(section), context);
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

BOOL SetupFindNextLine(INFCONTEXT* contextIn, INFCONTEXT* contextOut) try {
  InfFile* const file = fromHandle(contextIn->Inf);
  if (lineOf(file, *contextIn) == nullptr) return FALSE;
  return giveOut(contextIn->Inf, file->nextLine({contextIn->Section, contextIn->Line}), contextOut);
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

DWORD SetupGetFieldCount(INFCONTEXT* context) {
  const InfLine* const line = lineOf(fromHandle(context->Inf), *context);
  return line != nullptr ? static_cast<DWORD>(line->count()) : 0;
}

BOOL SetupGetStringFieldA(INFCONTEXT* context, DWORD fieldIndex, char* buffer, DWORD size,
                          DWORD* requiredSize) try {
  InfFile* const file = fromHandle(context->Inf);
  const InfLine* const line = lineOf(file, *context);
  if (line == nullptr) return FALSE;
  if (!line->has(fieldIndex)) return fail(ERROR_INVALID_PARAMETER);
  return copyField(*file, *line->field(fieldIndex), buffer, size, requiredSize);
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}
