// The result documents that whole runs write.
#pragma once

#include <string>

namespace tolvanix::test {

// What xmllint says against the document by docs/result.xsd; empty when it is valid. Under Wine
// nothing is said: the documents are those of Linux to the byte.
std::string schemaErrors(const std::string& document);

}  // namespace tolvanix::test
