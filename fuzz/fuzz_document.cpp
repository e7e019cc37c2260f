// Documents: read, asked as the program asks validation documents, written again. The input is
// UTF-16; a byte left over is dropped.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "inventory/SPXMLData.h"
#include "text/Conversion.h"
#include "xml/SPXMLObject.h"
#include "xml/SPXMLValidation.h"

using tolvanix::SPUString;
using tolvanix::SPXMLObject;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  std::u16string text(size / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), bytes, text.size() * sizeof(char16_t));
  tolvanix::toXmlUtf8(text);

  const tolvanix::SPXMLData document(text);
  document.generateXML();

  SPXMLObject object;
  const SPUString whole(std::move(text));
  object.setXML(whole);
  const SPUString name = object.getRootName();
  SPXMLObject::getElementCData(whole, name);
  SPXMLObject::insertChild(whole, name, SPUString(u"<x/>"));
  object.getAttributeInt(name, SPUString(u"bus"));
  for (const SPUString& element : object.getElements(name)) {
    tolvanix::SPXMLValidation(element).generateXML();
  }
  return 0;
}
