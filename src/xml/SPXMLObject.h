// A document held as one wide text and asked by text search: no tokenizer, no tree. Nothing tests
// or normalises the text, and markup in comments, CDATA sections or values counts like any other.
// Names compare exactly. Results are copies; malformed text gives "not found" or the part that the
// rules yield, never a read beyond the text.
#pragma once

#include <cstdint>
#include <vector>

#include "text/SPString.h"
#include "text/SPUString.h"
#include "xml/SPXMLAttribute.h"

namespace tolvanix {

class SPXMLObject {
 public:
  SPXMLObject() = default;
  SPXMLObject(const SPXMLObject&) = default;
  SPXMLObject& operator=(const SPXMLObject&) = default;
  virtual ~SPXMLObject() = default;

  void setXML(const SPUString& text) { xml = text; }
  const SPUString& getXML() const { return xml; }
  // Throws SPException (SPModuleFile's numbers); the document is then unchanged.
  void loadXMLFile(const SPString& path);

  // The name of the first element that is no processing instruction; empty if there is none. A
  // comment counts as an element: its name is "!--".
  static SPUString getElementName(const SPUString& text);
  SPUString getRootName() const;

  // The first start tag of exactly that name at or after the position; empty if there is none.
  static SPUString findStartTag(const SPUString& text, const SPUString& name, std::int32_t start);
  // Just past the end of that element; -1 if there is none.
  static std::int32_t findElementEnd(const SPUString& text, const SPUString& name,
                                     std::int32_t start);
  // The whole element, or what is between its tags; an element ends at the first closing tag of
  // its name. Empty if there is none.
  static SPUString extractElement(const SPUString& text, const SPUString& name, std::int32_t start,
                                  bool withTags);
  static SPUString getElementText(const SPUString& text, const SPUString& name);
  SPUString getElementText(const SPUString& name) const;
  // The inner text of the first such element, a CDATA section in it unwrapped and trimmed.
  static SPUString getElementCData(const SPUString& text, const SPUString& name);
  // All such elements at any depth, in order, up to the first that is not closed.
  static std::vector<SPUString> getElements(const SPUString& text, const SPUString& name);
  std::vector<SPUString> getElements(const SPUString& name) const;

  // The name="value" piece of each such element that has the attribute. The attribute's name is
  // taken where it first occurs in the element's text, even inside a longer name or a child.
  static std::vector<SPUString> getAttributePairs(const SPUString& text, const SPUString& element,
                                                  const SPUString& attribute);
  // The non-empty values, raw: entities stay.
  static std::vector<SPUString> getAttributeValues(const SPUString& text, const SPUString& element,
                                                   const SPUString& attribute);
  std::vector<SPUString> getAttributeValues(const SPUString& element,
                                            const SPUString& attribute) const;
  // The first value, or empty.
  SPUString getAttribute(const SPUString& element, const SPUString& attribute) const;
  SPString getAttribute(const SPString& element, const SPString& attribute) const;
  // The first value as a decimal number within the range of the result; 0 if it is none.
  std::int32_t getAttributeInt(const SPUString& element, const SPUString& attribute) const;
  std::int32_t getAttributeInt(const SPString& element, const SPString& attribute) const;

  static SPUString makeCloseTag(const SPUString& name);

  // The five special characters as entities; a "&" that begins one of the five entities stays.
  static SPUString escapeText(const SPUString& text);
  // The five entities as characters. Text escaped more than once collapses: &amp;lt; gives <.
  static SPUString unescapeText(const SPUString& text);

  // An element with its closing tag; attributes without a value are left out, `inner` is XML.
  static SPUString buildElement(const SPUString& name,
                                const std::vector<SPXMLAttribute>& attributes,
                                const SPUString& inner);
  // Every element of that name with the child text as its last child, and nothing else of the text.
  static SPUString insertChild(const SPUString& text, const SPUString& name,
                               const SPUString& child);

 private:
  SPUString xml;
};

}  // namespace tolvanix
