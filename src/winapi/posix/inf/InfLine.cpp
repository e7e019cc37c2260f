#include "winapi/posix/inf/InfLine.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

namespace tolvanix::winapi {

namespace {

constexpr std::uint32_t kNoKey = std::numeric_limits<std::uint32_t>::max();

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

bool endsInBackslash(const char* begin, const char* end) {
  end = trimmedEnd(begin, end);
  return end > begin && end[-1] == '\\';
}

// Past the quoted text that begins after a quote; a quote without an end ends with the line.
// `put` receives its characters, of two quotes in a row one.
template <typename Put>
const char* readQuoted(const char* p, const char* lineEnd, Put put) {
  if (lineEnd > p && lineEnd[-1] == '\r') --lineEnd;
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
  if (!endsInBackslash(begin, lineEnd) && find(begin, lineEnd, ';') == nullptr) return false;
  for (const char* p = begin; p < lineEnd;) {
    const char c = *p++;
    if (c == ';') return false;
    if (c == '"') p = readQuoted(p, lineEnd, [](char) {});
    if (c == '\\' && isRestEmpty(p, lineEnd)) return true;
  }
  return false;
}

const char* InfLine::split(const char* begin, const char* limit) {
  base = begin;
  exact = false;
  hasKey = false;
  dividerCount = 0;
  ahead.seek(begin);
  // The common case, fields that are pieces of the text; quotes and continuation lines are rare.
  for (;;) {
    const char* const p = ahead.take();
    const char c = *p;
    if (c == ',') {
      if (dividerCount == 0) addDivider(kNoKey);
    } else if (c == '=') {
      if (dividerCount > 0) continue;
      hasKey = true;
    } else if (c == '"' || endsInBackslash(begin, p)) {
      return splitDecoding(begin, limit);
    } else {
      if (dividerCount == 0) addDivider(kNoKey);
      addDivider(static_cast<std::size_t>(p - begin));
      return c == '\n' ? p : endOfInfLine(p, limit);
    }
    addDivider(static_cast<std::size_t>(p - begin));
  }
}

// Quotes, comments and continuation lines: the fields are written out anew, a comma after each.
const char* InfLine::splitDecoding(const char* begin, const char* limit) {
  exact = true;
  hasKey = false;
  dividerCount = 0;
  decoded.clear();
  std::size_t fieldBegin = 0;
  std::size_t quotedEnd = 0;  // blanks before it belong to quoted text and stay
  const auto trimField = [&] {
    while (decoded.size() > std::max(fieldBegin, quotedEnd) && isInfBlank(decoded.back())) {
      decoded.pop_back();
    }
  };
  const auto endField = [&] {
    if (dividerCount == 0 && !hasKey) addDivider(kNoKey);
    trimField();
    addDivider(decoded.size());
    decoded.push_back(',');
    fieldBegin = decoded.size();
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
      trimField();
      p = std::min(lineEnd + 1, limit);
      lineEnd = endOfInfLine(p, limit);
      p = skipBlanks(p, lineEnd);
    } else if (c == '=' && dividerCount == 0) {
      hasKey = true;
      endField();
    } else if (c == ',') {
      endField();
    } else if (!isInfBlank(c) || decoded.size() > fieldBegin) {
      decoded.push_back(c);
    }
  }
  endField();
  base = decoded.data();
  return lineEnd;
}

}  // namespace tolvanix::winapi
