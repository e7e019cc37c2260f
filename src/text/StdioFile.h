// A C stream that closes itself.
#pragma once

#include <cstdio>
#include <memory>

namespace tolvanix {

struct StdioFileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// Null when the file did not open.
using StdioFile = std::unique_ptr<std::FILE, StdioFileCloser>;

}  // namespace tolvanix
