// The helper program of a driver package: tolvanixhelper64.exe <hardware ID> <INF path>
#include <cstdio>
#include <new>

#include "install.h"

int main(int argc, char* argv[]) try {
  if (argc != 3) {
    std::fputs("usage: tolvanixhelper64.exe <hardware ID> <INF path>\n", stderr);
    return kWrongArguments;
  }
  return install(argv[1], argv[2]);
} catch (const std::bad_alloc&) {
  std::fputs("there is not enough memory\n", stderr);
  return kNotInstalled;
}
