// Puts the helper program for tests (test_helper.cpp) where a test wants it, with what it is to do.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tolvanix::test {

// Copies the helper to that file and the steps beside it.
void placeHelper(const std::filesystem::path& program, std::string_view steps);

}  // namespace tolvanix::test
