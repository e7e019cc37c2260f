#include "Xml.h"

#include <algorithm>
#include <cstddef>

namespace tolvanix::sample {

namespace {

using View = std::u16string_view;

constexpr std::size_t kDeepest = 64;
constexpr View kSpace = u" \t\r\n";

struct Entity {
  char16_t character;
  View text;
};
constexpr Entity kEntities[] = {
    {u'&', u"&amp;"}, {u'<', u"&lt;"}, {u'>', u"&gt;"}, {u'"', u"&quot;"}, {u'\'', u"&apos;"},
};

std::u16string unescaped(View text) {
  std::u16string plain;
  while (!text.empty()) {
    const auto* const entity =
        std::find_if(std::begin(kEntities), std::end(kEntities),
                     [text](const Entity& candidate) { return text.starts_with(candidate.text); });
    const bool known = entity != std::end(kEntities);
    plain += known ? entity->character : text.front();
    text.remove_prefix(known ? entity->text.size() : 1);
  }
  return plain;
}

class Reader {
 public:
  explicit Reader(View text) : rest(text) {}

  std::optional<XmlElement> read() {
    for (std::size_t tag = rest.find(u'<'); tag != View::npos; tag = rest.find(u'<')) {
      rest.remove_prefix(tag);
      if (!readMarkup()) return std::nullopt;
    }
    if (open.size() != 1 || open[0].children.size() != 1) return std::nullopt;
    return std::move(open[0].children[0]);
  }

 private:
  bool readMarkup() {
    if (rest.starts_with(u"<!--")) return skipPast(u"-->");
    if (rest.starts_with(u"<![CDATA[")) return skipPast(u"]]>");
    if (rest.starts_with(u"<?")) return skipPast(u"?>");
    if (rest.starts_with(u"<!")) return skipPast(u">");
    return take(u"</") ? readEndTag() : readStartTag();
  }

  bool readStartTag() {
    take(u"<");
    XmlElement element;
    element.name = takeName();
    if (element.name.empty() || open.size() > kDeepest) return false;
    open.push_back(std::move(element));
    while (true) {
      skipSpace();
      if (take(u"/>")) return closeElement();
      if (take(u">")) return true;
      if (!readAttribute()) return false;
    }
  }

  bool readAttribute() {
    const View name = takeName();
    skipSpace();
    if (name.empty() || !take(u"=")) return false;
    skipSpace();
    if (!rest.starts_with(u'"') && !rest.starts_with(u'\'')) return false;
    const std::size_t end = rest.find(rest.front(), 1);
    if (end == View::npos) return false;
    open.back().attributes.emplace_back(name, unescaped(rest.substr(1, end - 1)));
    rest.remove_prefix(end + 1);
    return true;
  }

  bool readEndTag() {
    const View name = takeName();
    skipSpace();
    return take(u">") && open.size() > 1 && name == open.back().name && closeElement();
  }

  bool closeElement() {
    XmlElement element = std::move(open.back());
    open.pop_back();
    open.back().children.push_back(std::move(element));
    return true;
  }

  View takeName() {
    const View name = rest.substr(0, rest.find_first_of(u" \t\r\n/><=\"'"));
    rest.remove_prefix(name.size());
    return name;
  }

  bool take(View expected) {
    if (!rest.starts_with(expected)) return false;
    rest.remove_prefix(expected.size());
    return true;
  }

  bool skipPast(View end) {
    const std::size_t at = rest.find(end);
    if (at == View::npos) return false;
    rest.remove_prefix(at + end.size());
    return true;
  }

  void skipSpace() { rest.remove_prefix(std::min(rest.find_first_not_of(kSpace), rest.size())); }

  View rest;
  std::vector<XmlElement> open{1};  // the first is the document
};

bool isHighSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Whether a document may hold the unit that the text begins with, after `before`.
bool isAllowed(View text, char16_t before) {
  const char16_t unit = text.front();
  if (unit < 0x20) return kSpace.find(unit) != View::npos;
  if (isHighSurrogate(unit)) return text.size() > 1 && isLowSurrogate(text[1]);
  if (isLowSurrogate(unit)) return isHighSurrogate(before);
  return unit < 0xFFFE;
}

}  // namespace

const XmlElement* XmlElement::child(std::u16string_view wanted) const {
  const auto found = std::find_if(children.begin(), children.end(),
                                  [wanted](const XmlElement& c) { return c.name == wanted; });
  return found != children.end() ? &*found : nullptr;
}

std::u16string_view XmlElement::attribute(std::u16string_view wanted) const {
  const auto found = std::find_if(attributes.begin(), attributes.end(),
                                  [wanted](const auto& a) { return a.first == wanted; });
  return found != attributes.end() ? View(found->second) : View();
}

std::optional<XmlElement> parseXml(std::u16string_view text) {
  return Reader(text).read();
}

void appendEscaped(std::u16string& out, std::u16string_view text) {
  char16_t before = 0;
  for (; !text.empty(); text.remove_prefix(1)) {
    const char16_t unit = text.front();
    const auto* const entity =
        std::find_if(std::begin(kEntities), std::end(kEntities),
                     [unit](const Entity& candidate) { return candidate.character == unit; });
    if (entity != std::end(kEntities)) {
      out += entity->text;
    } else {
      out += isAllowed(text, before) ? unit : u'\uFFFD';
    }
    before = unit;
  }
}

void appendAttribute(std::u16string& out, std::u16string_view name, std::u16string_view value) {
  out += u' ';
  out += name;
  out += u"=\"";
  appendEscaped(out, value);
  out += u'"';
}

}  // namespace tolvanix::sample
