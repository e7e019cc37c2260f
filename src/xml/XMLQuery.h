// The searches that every query of a document is made of, on views: a found part is a view into the
// searched text. SPXMLObject says what each returns; nothing here copies.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xml/SPXMLAttribute.h"

namespace tolvanix::xmlquery {

using View = std::u16string_view;

// One element of the searched text.
struct Element {
  View whole;        // with both tags
  View inner;        // between the tags; empty for a self-closing element
  std::size_t next;  // where the search for a further element goes on
};

View elementName(View text);

// "</", the name, ">".
std::u16string closeTag(View name);

// The first start tag of that name at or after `start`, with its ">" (to the end of the text when
// there is none); empty when there is none.
View startTag(View text, View name, std::size_t start);

// Just past that element: past the first closing tag at or after `start`, even one
// before the start tag.
std::optional<std::size_t> elementEnd(View text, View name, std::size_t start);

// The first element of that name at or after `start`; none when its closing tag is missing, too.
std::optional<Element> element(View text, View name, std::size_t start);

// The element found from `previous.next` on. That is `previous` once more after a stray closing tag
// before it, and then it is not searched for again: that would take quadratic time.
std::optional<Element> nextElement(View text, View name, const Element& previous);

// The inner text of the first element of that name; empty when there is none.
View innerText(View text, View name);

// Calls `visit` with each element's text in order, until it returns false.
template <typename Visit>
void forEachElement(View text, View name, Visit visit) {
  auto found = element(text, name, 0);
  while (found) {
    if (!visit(found->whole)) return;
    found = nextElement(text, name, *found);
  }
}

// The text of the last element of that name; empty when there is none.
View lastElement(View text, View name);

// name="value" of one element's text; empty when the element has no such text.
View attributePair(View elementText, View attribute);

// The value in what `attributePair` found; empty when there is none.
View attributeValue(View pair);

// The attributes of the elements of one name, for element classes that read many of them.
class AttributeReader {
 public:
  AttributeReader(View text, View name);

  // The first non-empty value among the elements; empty when there is none.
  View value(View attribute) const;
  void read(SPXMLAttribute& attribute) const;

 private:
  View searched;
  View elementName;
  std::optional<Element> first;  // found once for all attributes
};

// Appends an element class for each element of that name.
template <typename List>
void readElements(View text, View name, List& list) {
  forEachElement(text, name, [&](View element) {
    list.emplace_back(element);
    return true;
  });
}

}  // namespace tolvanix::xmlquery
