// Puts the validation library for tests (test_kivvalid.cpp) into a package.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tolvanix::test {

enum class Exports { kBoth, kWithoutValidate, kWithoutFree };

// As kivvalid.dll in that folder, with what it is to answer.
void placeValidationLibrary(const std::filesystem::path& folder, std::string_view answer,
                            Exports exports = Exports::kBoth);

// The bytes of a library that is whole, but for another kind of machine.
std::string foreignLibrary();

}  // namespace tolvanix::test
