// The result documents that whole runs write.
#pragma once

#include <string>
#include <string_view>

namespace tolvanix::test {

// The element of a status and its message, alone and as the outcome of a run.
std::string messageElement(int status);
std::string statusElement(int status);

// The whole document of `-u` or `-uhid`.
std::string executionDocument(const std::string& content, int reboot = 0);

// A document of tests/fixtures/, where each device is on a line of its own.
std::string fixtureDocument(std::string_view name);

// What xmllint says against the document by docs/result.xsd; empty when it is valid. Under Wine
// nothing is said: the documents are those of Linux to the byte.
std::string schemaErrors(const std::string& document);

}  // namespace tolvanix::test
