#include "winapi/posix/InfLine.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "winapi/posix/InfScan.h"

namespace tolvanix {

namespace {

const char* find(const char* begin, const char* end, char c) {
  return static_cast<const char*>(std::memchr(begin, c, static_cast<std::size_t>(end - begin)));
}

const char* skipBlanks(const char* begin, const char* end) {
  while (begin < end && isInfBlank(*begin)) ++begin;
  return begin;
}

// The end of the text without the blanks before `end`.
const char* trimmedEnd(const char* begin, const char* end) {
  while (begin < end && isInfBlank(end[-1])) --end;
  return end;
}

// Past the quoted text that begins behind a quote; a quote without an end ends with the line.
// `put` receives its characters, of two quotes in a row one.
template <typename Put>
const char* readQuoted(const char* p, const char* lineEnd, Put put) {
  while (p < lineEnd) {
    if (*p == '"') {
      if (p + 1 == lineEnd || p[1] != '"') return p + 1;
      ++p;
    }
    put(*p++);
  }
  return p;
}

// Whether nothing follows on the line but a comment.
bool isRestEmpty(const char* p, const char* lineEnd) {
  p = skipBlanks(p, lineEnd);
  return p == lineEnd || *p == ';';
}

}  // namespace

const char* endOfInfLine(const char* begin, const char* limit) {
  const char* const end = find(begin, limit, '\n');
  return end != nullptr ? end : limit;
}

const char* skipToInfContent(const char* begin, const char* limit) {
  const char* p = skipBlanks(begin, limit);
  while (p < limit && *p == ';') p = skipBlanks(endOfInfLine(p, limit), limit);
  return p;
}

bool infLineContinues(const char* begin, const char* lineEnd) {
  const char* const last = trimmedEnd(begin, lineEnd);
  const bool backslash = last > begin && last[-1] == '\\';
  if (!backslash && find(begin, lineEnd, ';') == nullptr) return false;
  for (const char* p = begin; p < lineEnd;) {
    const char c = *p++;
    if (c == ';') return false;
    if (c == '"') p = readQuoted(p, lineEnd, [](char) {});
    if (c == '\\' && isRestEmpty(p, lineEnd)) return true;
  }
  return false;
}

void InfLine::start(const char* fieldBase) {
  base = fieldBase;
  exact = false;
  hasKey = false;
  fieldCount = 0;
  addField({0, 0});
}

const char* InfLine::split(const char* begin, const char* limit) {
  start(begin);
  // The common case, fields that are pieces of the text; quotes and continuation lines are rare.
  const char* block = begin;
  std::uint32_t fieldBegin = 0;
  for (unsigned bits = infDividerBits(block);; bits &= bits - 1) {
    while (bits == 0) {
      block += kInfScanWidth;
      bits = infDividerBits(block);
    }
    const char* const p = block + std::countr_zero(bits);
    const auto place = static_cast<std::uint32_t>(p - begin);
    if (*p == ',') {
      addField({fieldBegin, place});
      fieldBegin = place + 1;
    } else if (*p == '=') {
      if (hasKey || count() != 0) continue;
      fields[0] = {0, place};
      hasKey = true;
      fieldBegin = place + 1;
    } else if (*p == '"') {
      return splitDecoding(begin, limit);
    } else {
      const char* const end = trimmedEnd(begin, p);
      if (end > begin && end[-1] == '\\') return splitDecoding(begin, limit);
      addField({fieldBegin, place});
      finish();
      return *p == '\n' ? p : endOfInfLine(p, limit);
    }
  }
}

// Quotes, comments and continuation lines: the fields are written out anew.
const char* InfLine::splitDecoding(const char* begin, const char* limit) {
  start(begin);
  exact = true;
  decoded.clear();
  std::size_t fieldBegin = 0;
  std::size_t quotedEnd = 0;  // blanks before it belong to quoted text and stay
  const auto endField = [&] {
    std::size_t end = decoded.size();
    while (end > std::max(fieldBegin, quotedEnd) && isInfBlank(decoded[end - 1])) --end;
    const Field field{static_cast<std::uint32_t>(fieldBegin), static_cast<std::uint32_t>(end)};
    fieldBegin = decoded.size();
    return field;
  };
  const char* p = begin;
  const char* lineEnd = endOfInfLine(p, limit);
  while (p < lineEnd) {
    const char c = *p++;
    if (c == ';') break;
    if (c == '"') {
      p = readQuoted(p, lineEnd, [this](char quoted) { decoded.push_back(quoted); });
      quotedEnd = decoded.size();
    } else if (c == '\\' && isRestEmpty(p, lineEnd)) {
      p = std::min(lineEnd + 1, limit);
      lineEnd = endOfInfLine(p, limit);
      p = skipBlanks(p, lineEnd);
    } else if (c == ',') {
      addField(endField());
    } else if (c == '=' && !hasKey && count() == 0) {
      fields[0] = endField();
      hasKey = true;
    } else if (!isInfBlank(c) || decoded.size() > fieldBegin) {
      decoded.push_back(c);
    }
  }
  addField(endField());
  base = decoded.data();
  finish();
  return lineEnd;
}

void InfLine::finish() {
  if (hasKey || count() != 1) return;
  fields[0] = fields[1];
  hasKey = true;
}

}  // namespace tolvanix
