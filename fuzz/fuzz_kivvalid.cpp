// The validation library of fuzz_execution, which says what it returns.
#include "kivvalid.h"

extern "C" {

const KivChar* (*fuzzValidate)(const KivChar* package, const KivChar* inventory) = nullptr;
const KivChar* fuzzFreed = nullptr;

const KivChar* SPValidate(const KivChar* package, const KivChar* inventory,
                          const void* /*reserved1*/, const void* /*reserved2*/) {
  return fuzzValidate(package, inventory);
}

void SPFreeValidationXML(const KivChar* validation) {
  fuzzFreed = validation;
}
}
