#include "winapi/posix/base/Report.h"

#include <cstdio>

namespace tolvanix::winapi {

void report(const std::string& problem) {
  std::fprintf(stderr, "tolvanix: %s\n", problem.c_str());
}

}  // namespace tolvanix::winapi
