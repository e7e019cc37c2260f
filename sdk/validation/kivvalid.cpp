// The two exports of the validation library; no exception leaves them.
#include "kivvalid.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string>

#include "Validation.h"

namespace {

std::u16string_view textOf(const KivChar* text) {
  return text != nullptr ? std::u16string_view(text) : std::u16string_view();
}

}  // namespace

const KivChar* SPValidate(const KivChar* package, const KivChar* inventory,
                          const void* /*reserved1*/, const void* /*reserved2*/) {
  try {
    const std::u16string text = tolvanix::sample::validate(textOf(package), textOf(inventory));
    auto document = std::make_unique<KivChar[]>(text.size() + 1);
    std::copy(text.begin(), text.end(), document.get());
    return document.release();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void SPFreeValidationXML(const KivChar* validation) {
  delete[] validation;
}
