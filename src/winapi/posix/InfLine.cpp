#include "winapi/posix/InfLine.h"

#include <algorithm>
#include <cstring>

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

const char* endOfWholeInfLine(const char* begin, const char* limit) {
  const char* end = endOfInfLine(begin, limit);
  while (end < limit && infLineContinues(begin, end)) {
    begin = end + 1;
    end = endOfInfLine(begin, limit);
  }
  return end;
}

const char* InfLine::split(const char* begin, const char* limit) {
  start();
  const char* const lineEnd = endOfInfLine(begin, limit);
  const char* const last = trimmedEnd(begin, lineEnd);
  if (find(begin, last, '"') == nullptr && find(begin, last, ';') == nullptr &&
      (last == begin || last[-1] != '\\')) {
    splitPlain(begin, last);
    return lineEnd;
  }
  return splitDecoding(begin, limit);
}

void InfLine::start() {
  fields.clear();
  fields.push_back({0, 0});
  hasKey = false;
}

void InfLine::addPlain(const char* begin, const char* end) {
  begin = skipBlanks(begin, end);
  end = trimmedEnd(begin, end);
  fields.push_back({static_cast<std::size_t>(begin - base), static_cast<std::size_t>(end - begin)});
}

// The common case: the fields are pieces of the text.
void InfLine::splitPlain(const char* begin, const char* end) {
  base = begin;
  const char* const equals = find(begin, end, '=');
  const char* p = begin;
  if (equals != nullptr && find(begin, equals, ',') == nullptr) {
    hasKey = true;
    fields[0].length = static_cast<std::size_t>(trimmedEnd(begin, equals) - begin);
    p = equals + 1;
  }
  while (const char* const comma = find(p, end, ',')) {
    addPlain(p, comma);
    p = comma + 1;
  }
  addPlain(p, end);
  finish();
}

// Quotes, comments and continuation lines: the fields are written out anew.
const char* InfLine::splitDecoding(const char* begin, const char* limit) {
  decoded.clear();
  std::size_t fieldBegin = 0;
  std::size_t quotedEnd = 0;  // blanks before it belong to quoted text and stay
  const auto endField = [&] {
    std::size_t end = decoded.size();
    while (end > std::max(fieldBegin, quotedEnd) && isInfBlank(decoded[end - 1])) --end;
    const Field field{fieldBegin, end - fieldBegin};
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
      fields.push_back(endField());
    } else if (c == '=' && !hasKey && count() == 0) {
      fields[0] = endField();
      hasKey = true;
    } else if (!isInfBlank(c) || decoded.size() > fieldBegin) {
      decoded.push_back(c);
    }
  }
  fields.push_back(endField());
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
