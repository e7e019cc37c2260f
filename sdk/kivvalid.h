/* The interface of a package's validation library, kivvalid.dll.
 *
 * A package brings a library of that name beside the program. For an update the program calls
 * SPValidate once, then SPFreeValidationXML once with what it answered (unless that was null), and
 * then unloads the library. All texts are zero-terminated UTF-16 in native byte order. */
#ifndef KIVVALID_H
#define KIVVALID_H

#ifdef __cplusplus
extern "C" {
using KivChar = char16_t;
#else
#include <uchar.h>
typedef char16_t KivChar;
#endif

/* Judges the package against the computer.
 *   package    the whole text of package.xml. A UTF-16 file's text begins with its byte-order mark
 *              U+FEFF; of any other file each byte is one unit of the same value.
 *   inventory  the computer's SVMInventory document, with its OperatingSystem element; narrow text
 *              in it is one unit for each byte, too.
 *   reserved1, reserved2  always null.
 * Returns the validation document: a root element whose Device elements are the devices to update
 * and whose Validation elements are the findings; a finding of the type "qualification" or "hard"
 * refuses the update. The library owns the text, which stays valid until it is given back. Null:
 * no document, and the update ends with an error. */
const KivChar* SPValidate(const KivChar* package, const KivChar* inventory, const void* reserved1,
                          const void* reserved2);

/* Takes back a document that SPValidate answered. */
void SPFreeValidationXML(const KivChar* validation);

#ifdef __cplusplus
}
#endif

#endif
