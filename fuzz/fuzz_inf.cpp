// INF files: opened, and searched for IDs that they list and for one that they do not.
#include <algorithm>

#include "fuzz.h"
#include "install/CInf.h"

namespace tolvanix::fuzz {

namespace naive {

namespace {

struct Line {
  std::optional<std::string> key;
  std::vector<std::string> values;
};
using Sections = std::map<std::string, std::vector<Line>>;  // by names in lower case

bool isBlank(char c) {
  return c >= 0 && c <= ' ';
}

std::string withoutBlanksBefore(const std::string& text) {
  return {std::find_if_not(text.begin(), text.end(), isBlank), text.end()};
}

bool isEmptyOrComment(const std::string& text) {
  const std::string content = withoutBlanksBefore(text);
  return content.empty() || content[0] == ';';
}

// Takes one line after the other, as long as each goes on in the next one.
class LineReader {
 public:
  // True when the line ends in a backslash, and so goes on in the next one.
  bool add(const std::string& text) {
    const std::string content = withoutBlanksBefore(text);
    for (std::size_t i = 0; i < content.size(); ++i) {
      const char c = content[i];
      if (c == ';') return false;
      if (c == '\\' && isEmptyOrComment(content.substr(i + 1))) {
        trimField();
        return true;
      }
      if (c == '"') {
        i = addQuoted(content, i + 1);
      } else if (c == ',' || (c == '=' && !line.key && line.values.empty())) {
        endField(c == '=');
      } else if (!isBlank(c) || !field.empty()) {
        field += c;
      }
    }
    return false;
  }

  Line finish() {
    endField(false);
    // A single value is its own key.
    if (!line.key && line.values.size() == 1) line.key = line.values[0];
    return line;
  }

 private:
  // The place of the closing quote; a quote without one ends with the line, carriage return aside.
  std::size_t addQuoted(const std::string& content, std::size_t at) {
    const std::size_t end = content.size() - (content.size() > at && content.ends_with('\r'));
    for (; at < end; ++at) {
      if (content[at] == '"' && (at + 1 == end || content[at + 1] != '"')) break;
      if (content[at] == '"') ++at;
      field += content[at];
    }
    quoted = field.size();
    return at;
  }

  void trimField() {
    while (field.size() > quoted && isBlank(field.back())) field.pop_back();
  }

  void endField(bool isKey) {
    trimField();
    if (isKey) line.key = field;
    if (!isKey) line.values.push_back(field);
    field.clear();
    quoted = 0;
  }

  Line line;
  std::string field;
  std::size_t quoted = 0;  // blanks up to there are in quotes
};

// None when the file is not text with sections.
std::optional<Sections> readSections(const std::string& text) {
  Sections sections;
  std::vector<Line>* section = nullptr;
  std::optional<LineReader> line;  // one that goes on
  for (std::string_view rest = text; !rest.empty();) {
    const std::string physical(takePart(rest, '\n'));
    const std::string content = withoutBlanksBefore(physical);
    if (!line && isEmptyOrComment(content)) continue;
    if (!line && content[0] == '[') {
      const std::size_t end = content.find(']');
      if (end > 256) return std::nullopt;  // none, or the name is longer than 255
      section = &sections[lower(content.substr(1, end - 1))];
      continue;
    }
    if (section == nullptr) continue;  // a title
    if (!line) line.emplace();
    if (line->add(physical) && !rest.empty()) continue;
    section->push_back(line->finish());
    line.reset();
  }
  return section != nullptr ? std::optional(sections) : std::nullopt;
}

std::optional<std::string> firstValue(const Sections& sections, const std::string& name,
                                      const std::string& key) {
  const auto section = sections.find(lower(name));
  if (section == sections.end()) return std::nullopt;
  for (const Line& line : section->second) {
    if (line.key && lower(*line.key) == lower(key)) return line.values[0];
  }
  return std::nullopt;
}

// The text with the strings that the file defines in place of their %names%.
std::string expanded(const Sections& sections, const std::string& field) {
  std::string text;
  std::size_t at = 0;
  while (at < field.size()) {
    const std::size_t end = field[at] == '%' ? field.find('%', at + 1) : field.npos;
    if (end == field.npos) {
      text += field[at++];
      continue;
    }
    const std::string name = field.substr(at + 1, end - at - 1);
    auto value = firstValue(sections, "Strings.0409", name);
    if (!value) value = firstValue(sections, "Strings", name);
    if (value) value = value->substr(0, 511);
    if (name.empty()) value = "%";
    text += value ? *value : field.substr(at, end + 1 - at);
    at = end + 1;
  }
  return text.substr(0, 4095);
}

bool isGuid(const std::string& text) {
  const std::string form = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  return text.size() == form.size() &&
         std::equal(text.begin(), text.end(), form.begin(), [](char c, char wanted) {
           return wanted == 'x'
                      ? std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos
                      : c == wanted;
         });
}

// Of the present style, and of a class.
bool hasVersion(const Sections& sections) {
  const std::string signature = lower(firstValue(sections, "Version", "Signature").value_or(""));
  const auto guid = firstValue(sections, "Version", "ClassGuid");
  const std::string name =
      expanded(sections, firstValue(sections, "Version", "Class").value_or(""));
  return (signature == "$windows nt$" || signature == "$chicago$") &&
         (guid ? isGuid(expanded(sections, *guid)) : !name.empty()) && name.size() < 64;
}

std::string decoded(std::string_view bytes) {
  std::string text(bytes);
  if (bytes.starts_with("\xFF\xFE")) text = utf16ToUtf8(bytes.substr(2), false);
  if (bytes.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
  if (bytes.starts_with("\xFE\xFF")) text.clear();  // is no INF file
  // Ctrl-Z ends the text where nothing but blanks follows it.
  const std::string_view blanks(" \t\r\n\0\x1A", 6);
  const std::size_t last = text.find_last_not_of(blanks);
  return text.substr(0, text.find('\x1A', last == text.npos ? 0 : last + 1));
}

}  // namespace

InfContent readInf(std::string_view bytes) {
  InfContent content;
  const auto sections = readSections(decoded(bytes));
  content.opens = sections && hasVersion(*sections);
  if (!content.opens) return content;
  const auto fieldText = [&](const std::string& field) {
    return upToZero(expanded(*sections, field));
  };
  const auto linesOf = [&](const std::string& name) {
    const auto section = sections->find(lower(name));
    return section != sections->end() ? section->second : std::vector<Line>();
  };
  for (const Line& manufacturer : linesOf("Manufacturer")) {
    if (!manufacturer.key) break;
    for (std::size_t i = 0; i < manufacturer.values.size() && i < 99; ++i) {
      std::string name = fieldText(manufacturer.values[0]);
      if (i > 0) name += '.' + fieldText(manufacturer.values[i]);
      for (const Line& line : linesOf(name)) {
        if (!line.key) break;
        Model& model = content.models.emplace_back();
        model.manufacturer = fieldText(*manufacturer.key);
        model.description = fieldText(*line.key);
        for (std::size_t id = 1; id < line.values.size(); ++id) {
          model.ids.push_back(fieldText(line.values[id]));
        }
        if (model.ids.empty()) model.ids.emplace_back();  // which every ID contains
      }
    }
  }
  return content;
}

const Model* findModel(const InfContent& content, const std::string& id) {
  for (const Model& model : content.models) {
    for (const std::string& listed : model.ids) {
      if (matchesId(id, listed)) return &model;
    }
  }
  return nullptr;
}

}  // namespace naive

void inf(std::string_view input) {
  static const MemoryFile file;
  file.write(input);
  const naive::InfContent content = naive::readInf(input);
  CInf found;
  expectEqual("the file opens", found.Open(file.platformName(), 0) == ERROR_SUCCESS, content.opens);
  if (!content.opens) return;
  constexpr std::size_t kMostIds = 4;
  std::vector<std::string> wanted = {"PCI\\VEN_none"};
  for (std::size_t i = 0; i < content.models.size() && wanted.size() < kMostIds; ++i) {
    wanted.push_back(content.models[i].ids[0]);
  }
  for (const std::string& id : wanted) {
    found.setHardwareId(id);
    const naive::Model* const model = naive::findModel(content, id);
    expectEqual("the ID is listed", found.EnumManufacturers() == ERROR_SUCCESS, model != nullptr);
    if (model == nullptr) continue;
    expectEqual("manufacturer", found.getManufacturer(), model->manufacturer);
    expectEqual("description", found.getDescription(), model->description);
  }
}

}  // namespace tolvanix::fuzz
