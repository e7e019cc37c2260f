// Texts: conversions, entities, numbers, command lines, private-profile files. The first character
// chooses what is done with the rest.
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "fuzz.h"
#include "text/Conversion.h"
#include "text/SPString.h"
#include "text/SPUString.h"
#include "winapi/posix/base/CommandLine.h"
#include "winapi/posix/base/ProfileText.h"
#include "winapi/posix/base/Utf16.h"
#include "xml/Entities.h"
#include "xml/Numbers.h"

namespace tolvanix::fuzz {

namespace naive {

namespace {

constexpr std::pair<std::u16string_view, char16_t> kEntities[] = {
    {u"&amp;", u'&'}, {u"&lt;", u'<'}, {u"&gt;", u'>'}, {u"&quot;", u'"'}, {u"&apos;", u'\''}};

bool isCharacter(char32_t c) {
  return c <= 0x10FFFF && !(c >= 0xD800 && c <= 0xDFFF);
}

bool isXmlCharacter(char32_t c) {
  const bool excluded =
      (c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c == 0xFFFE || c == 0xFFFF;
  return isCharacter(c) && !excluded;
}

// The character whose UTF-8 these bytes are.
std::optional<char32_t> characterOf(const std::string& bytes) {
  const unsigned leadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t c = static_cast<unsigned char>(bytes[0]) & leadBits[bytes.size()];
  for (std::size_t i = 1; i < bytes.size(); ++i) {
    c = c * 64 + (static_cast<unsigned char>(bytes[i]) & 0x3F);
  }
  return isCharacter(c) && utf8(c) == bytes ? std::optional(c) : std::nullopt;
}

std::optional<char32_t> surrogatePair(std::u16string_view text) {
  if (text.size() < 2 || text[0] < 0xD800 || text[0] > 0xDBFF) return std::nullopt;
  if (text[1] < 0xDC00 || text[1] > 0xDFFF) return std::nullopt;
  return char32_t{0x10000} + (text[0] - 0xD800U) * 0x400U + (text[1] - 0xDC00U);
}

void replaceEach(std::u16string& text, std::u16string_view from, std::u16string_view to) {
  for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

}  // namespace

std::u16string widen(std::string_view text) {
  std::u16string wide;
  for (const char c : text) wide += static_cast<unsigned char>(c);
  return wide;
}

std::string utf8(char32_t c) {
  const auto byte = [](char32_t value) { return static_cast<char>(value); };
  if (c < 0x80) return {byte(c)};
  if (c < 0x800) return {byte(0xC0 + c / 64), byte(0x80 + c % 64)};
  if (c < 0x10000) {
    return {byte(0xE0 + c / 4096), byte(0x80 + c / 64 % 64), byte(0x80 + c % 64)};
  }
  return {byte(0xF0 + c / 262144), byte(0x80 + c / 4096 % 64), byte(0x80 + c / 64 % 64),
          byte(0x80 + c % 64)};
}

std::string utf16ToUtf8(std::string_view bytes, bool bigEndian) {
  std::u16string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    text += static_cast<char16_t>(bigEndian ? first * 256 + second : first + second * 256);
  }
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto pair = surrogatePair(std::u16string_view(text).substr(i));
    if (pair) ++i;
    const char32_t c = pair ? *pair : text[i];
    result += utf8(isCharacter(c) ? c : 0xFFFD);
  }
  return result;
}

std::optional<std::string> utf8ToUtf16(std::string_view text) {
  std::string bytes;
  const auto add = [&bytes](char32_t unit) {
    bytes += {static_cast<char>(unit % 256), static_cast<char>(unit / 256)};
  };
  while (!text.empty()) {
    std::optional<char32_t> c;
    std::size_t length = 0;
    while (!c && length < 4 && length < text.size())
      c = characterOf(std::string(text.substr(0, ++length)));
    if (!c) return std::nullopt;
    if (*c >= 0x10000) add(0xD800 + (*c - 0x10000) / 0x400);
    add(*c >= 0x10000 ? 0xDC00 + (*c - 0x10000) % 0x400 : *c);
    text.remove_prefix(length);
  }
  return bytes;
}

std::string xmlUtf8(std::u16string_view text) {
  std::string result;
  while (!text.empty()) {
    std::size_t units = 1;
    char32_t character = text[0];
    for (std::size_t length = 2; length <= 4; ++length) {
      std::string bytes;
      for (const char16_t unit : text.substr(0, length)) {
        if (unit >= 0x80 && unit <= 0xFF) bytes += static_cast<char>(unit);
      }
      const auto decoded = bytes.size() == length ? characterOf(bytes) : std::nullopt;
      if (decoded) units = length;
      if (decoded) character = *decoded;
    }
    if (const auto pair = surrogatePair(text)) {
      units = 2;
      character = *pair;
    }
    result += utf8(isXmlCharacter(character) ? character : 0xFFFD);
    text.remove_prefix(units);
  }
  return result;
}

std::u16string escaped(std::u16string text) {
  for (std::size_t at = text.find(u'&'); at != text.npos; at = text.find(u'&', at + 1)) {
    bool isEntity = false;
    for (const auto& [entity, character] : kEntities) {
      isEntity = isEntity || text.compare(at, entity.size(), entity) == 0;
    }
    if (!isEntity) text.replace(at, 1, u"&amp;");
  }
  for (const auto& [entity, character] : kEntities) {
    if (character != u'&') replaceEach(text, std::u16string(1, character), entity);
  }
  return text;
}

std::u16string unescaped(std::u16string text) {
  for (const auto& [entity, character] : kEntities) {
    // Each time from the start of the text again.
    for (std::size_t at = text.find(entity); at != text.npos; at = text.find(entity)) {
      text.replace(at, entity.size(), 1, character);
    }
  }
  return text;
}

std::optional<std::int32_t> decimal(std::u16string_view text) {
  const std::string digits = narrow(text);
  char* end = nullptr;
  const long long number = std::strtoll(digits.c_str(), &end, 10);
  if (end == digits.c_str()) return std::nullopt;
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(number < Limits::min()   ? Limits::min()
                                   : number > Limits::max() ? Limits::max()
                                                            : number);
}

std::int32_t hexadecimal(std::u16string_view text) {
  const std::string digits = trimmed(narrow(text), " \t\n\v\f\r");
  char* end = nullptr;
  const unsigned long long number = std::strtoull(digits.c_str(), &end, 16);
  const bool isSigned = digits.starts_with('-') || digits.starts_with('+');
  if (end == digits.c_str() || isSigned || number > 0xFFFFFFFF) return -1;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
}

std::string lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

std::string trimmed(const std::string& text, std::string_view blanks) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == text.npos) return "";
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

namespace {

// Backslashes before a quote: of each two one stays, and one left over makes the quote a character.
// In quotes two quotes are one.
std::vector<std::string> arguments(const std::string& line) {
  enum class Kind { kCharacter, kQuote, kBlank };
  std::vector<std::pair<Kind, char>> symbols;
  for (std::size_t i = 0; i < line.size(); ++i) {
    std::size_t end = i;
    while (end < line.size() && line[end] == '\\') ++end;
    const bool quoteFollows = end < line.size() && line[end] == '"';
    if (quoteFollows && end > i + 1) {
      symbols.emplace_back(Kind::kCharacter, '\\');
      ++i;
    } else if (quoteFollows && end == i + 1) {
      symbols.emplace_back(Kind::kCharacter, '"');
      ++i;
    } else if (line[i] == '"') {
      symbols.emplace_back(Kind::kQuote, '"');
    } else {
      const bool blank = line[i] == ' ' || line[i] == '\t';
      symbols.emplace_back(blank ? Kind::kBlank : Kind::kCharacter, line[i]);
    }
  }
  std::vector<std::string> found;
  bool inArgument = false;
  bool inQuotes = false;
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    const auto& [kind, c] = symbols[i];
    if (kind == Kind::kBlank && !inQuotes) {
      inArgument = false;
      continue;
    }
    if (!inArgument) found.emplace_back();
    inArgument = true;
    const bool twoQuotes = kind == Kind::kQuote && inQuotes && i + 1 < symbols.size() &&
                           symbols[i + 1].first == Kind::kQuote;
    if (kind != Kind::kQuote || twoQuotes) {
      found.back() += c;
      i += twoQuotes ? 1 : 0;
    } else {
      inQuotes = !inQuotes;
    }
  }
  return found;
}

struct ProfileLine {
  std::string section;  // the name, of a line that begins one
  std::string key;
  std::string value;
  bool hasKey = false;
};

std::vector<ProfileLine> profileLines(std::string text) {
  for (char& c : text) c = c == '\r' ? '\n' : c;
  std::vector<ProfileLine> lines;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string line = trimmed(std::string(takePart(rest, '\n')), " \t");
    ProfileLine& read = lines.emplace_back();
    const std::size_t close = line.rfind(']');
    if (line.starts_with('[') && close != line.npos) {
      read.section = trimmed(line.substr(1, close - 1), " \t");
      if (!read.section.empty()) continue;
    }
    const std::size_t equals = line.find('=');
    if (line.starts_with(';') || equals == line.npos) continue;
    read.hasKey = true;
    read.key = trimmed(line.substr(0, equals), " \t");
    read.value = trimmed(line.substr(equals + 1), " \t");
    const std::string& value = read.value;
    const bool quoted =
        value.size() > 1 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0];
    if (quoted) read.value = value.substr(1, value.size() - 2);
  }
  return lines;
}

std::optional<std::string> profileValue(const std::vector<ProfileLine>& lines,
                                        const std::string& section, const std::string& key) {
  std::size_t i = 0;
  while (i < lines.size() &&
         (lines[i].section.empty() || lower(lines[i].section) != lower(section)))
    ++i;
  for (++i; i < lines.size() && lines[i].section.empty(); ++i) {
    if (lines[i].hasKey && lower(lines[i].key) == lower(key)) return lines[i].value;
  }
  return std::nullopt;
}

}  // namespace
}  // namespace naive

namespace {

std::u16string unitsOf(std::string_view bytes) {
  std::u16string units;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    units += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) +
                                   static_cast<unsigned char>(bytes[i + 1]) * 256);
  }
  return units;
}

void entities(std::string_view input) {
  const std::u16string plain = naive::widen(input);
  std::u16string escaped;
  appendEscaped(escaped, plain);
  expectEqual("escaped text", escaped, naive::escaped(plain));
  expectEqual("unescaped text", unescaped(plain), naive::unescaped(plain));
}

void numbers(std::string_view input) {
  const std::u16string digits = naive::widen(input);
  expectEqual("decimal number", readDecimal(digits), naive::decimal(digits));
  expectEqual("hexadecimal number", readHexadecimal(digits), naive::hexadecimal(digits));
  const std::int32_t number = naive::decimal(digits).value_or(naive::hexadecimal(digits));
  char text[20] = "";
  std::snprintf(text, sizeof text, "%.4d", number);
  expectEqual("decimal text", SPUString(number, SPUString::Decimal{}), naive::widen(text));
  std::snprintf(text, sizeof text, "%.4X", static_cast<unsigned>(number));
  expectEqual("hexadecimal text", SPUString(static_cast<std::uint32_t>(number)),
              naive::widen(text));
}

void conversions(std::u16string_view wide) {
  expectEqual("UTF-8 for a document", toXmlUtf8(wide), naive::xmlUtf8(wide));
  std::string bytes;
  for (const char16_t unit : wide) bytes += unit < 0x100 ? static_cast<char>(unit) : '?';
  expectEqual("narrow text", narrow(wide), bytes);
}

void narrowConversions(std::string_view input) {
  const std::u16string wide = widen(input);
  expectEqual("wide text", wide, naive::widen(input));
  conversions(wide);
}

void wideConversions(std::string_view input) {
  conversions(unitsOf(input));
}

// In one piece, and cut in two at a place that the first character chooses.
void utf16(std::string_view input) {
  const std::size_t cut = input.empty() ? 0 : static_cast<unsigned char>(input[0]) % input.size();
  expectEqual("UTF-8 of UTF-16", winapi::utf16ToUtf8(input), naive::utf16ToUtf8(input, false));
  for (const bool bigEndian : {false, true}) {
    const auto order = bigEndian ? winapi::ByteOrder::kBigEndian : winapi::ByteOrder::kLittleEndian;
    std::string found;
    std::size_t taken = winapi::appendUtf16(input.substr(0, cut), order, found);
    taken += winapi::appendUtf16(input.substr(taken), order, found);
    if (input.size() - taken > 1) found += naive::utf8(0xFFFD);  // half a pair
    expectEqual("UTF-8 of UTF-16 in pieces", found, naive::utf16ToUtf8(input, bigEndian));
  }
}

void commandLine(std::string_view input) {
  expectEqual("arguments", winapi::splitArguments(input), naive::arguments(std::string(input)));
}

void profile(std::string_view input) {
  const std::string section(takePart(input));
  const std::string key(takePart(input));
  const auto lines = naive::profileLines(std::string(input));
  std::string names;
  for (const auto& line : lines) {
    if (!line.section.empty()) names += line.section + '\0';
  }
  const winapi::ProfileText text((std::string(input)));
  expectEqual("sections of a profile", text.sectionNames(), names);
  expectEqual("value of a profile", text.value(section, key),
              naive::profileValue(lines, section, key));
}

void comparison(std::string_view input) {
  const std::string left(takePart(input));
  const std::string right(input);
  const auto sign = [](int value) { return (value > 0) - (value < 0); };
  expectEqual("order", sign(SPString(left).compare(right, kCaseSensitive)),
              sign(left.compare(right)));
  expectEqual("order without case", sign(SPString(left).compare(right, kCaseInsensitive)),
              sign(naive::lower(left).compare(naive::lower(right))));
  expectEqual("trimmed text", SPString(left).trim(), naive::trimmed(left, " "));
}

}  // namespace

void text(std::string_view input) {
  constexpr void (*kChecks[])(std::string_view) = {entities,        numbers,   narrowConversions,
                                                   wideConversions, utf16,     commandLine,
                                                   profile,         comparison};
  if (input.empty()) return;
  const auto choice = static_cast<unsigned char>(input[0] - '0');
  kChecks[choice % std::size(kChecks)](input.substr(1));
}

}  // namespace tolvanix::fuzz
