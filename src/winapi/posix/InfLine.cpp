#include "winapi/posix/InfLine.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "winapi/posix/InfScan.h"

namespace tolvanix {

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
  // The common case, fields that are pieces of the text; quotes and continuation lines are rare.
  std::size_t count = 0;
  for (const char* block = begin;; block += kInfScanWidth) {
    if (dividers.size() < count + kInfScanWidth + 1) dividers.resize(2 * dividers.size() + 64);
    for (unsigned bits = infDividerBits(block); bits != 0; bits &= bits - 1) {
      const char* const p = block + std::countr_zero(bits);
      const auto place = static_cast<std::uint32_t>(p - begin);
      if (*p == ',' || *p == '=') {
        if (*p == '=' && count > 0) continue;
        hasKey = hasKey || *p == '=';
        if (count == 0 && *p == ',') dividers[count++] = kNoKey;
        dividers[count++] = place;
        continue;
      }
      if (*p == '"' || endsInBackslash(begin, p)) return splitDecoding(begin, limit);
      if (count == 0) dividers[count++] = kNoKey;
      dividers[count++] = place;
      dividerCount = count;
      return *p == '\n' ? p : endOfInfLine(p, limit);
    }
  }
}

// Quotes, comments and continuation lines: the fields are written out anew, a comma behind each.
const char* InfLine::splitDecoding(const char* begin, const char* limit) {
  exact = true;
  hasKey = false;
  dividerCount = 0;
  decoded.clear();
  std::size_t fieldBegin = 0;
  std::size_t quotedEnd = 0;  // blanks before it belong to quoted text and stay
  const auto addDivider = [this](std::size_t place) {
    if (dividerCount == dividers.size()) dividers.resize(2 * dividerCount + 64);
    dividers[dividerCount++] = static_cast<std::uint32_t>(place);
  };
  const auto endField = [&] {
    if (dividerCount == 0 && !hasKey) addDivider(kNoKey);
    while (decoded.size() > std::max(fieldBegin, quotedEnd) && isInfBlank(decoded.back())) {
      decoded.pop_back();
    }
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

}  // namespace tolvanix
