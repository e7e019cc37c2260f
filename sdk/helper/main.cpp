// The helper program of a driver package: tolvanixhelper64.exe <hardware ID> <INF path>
#include <cstdio>

#include "install.h"

int main(int argc, char* argv[]) {
  if (argc != 3) {
    std::fputs("usage: tolvanixhelper64.exe <hardware ID> <INF path>\n", stderr);
    return kWrongArguments;
  }
  return install(argv[1], argv[2]);
}
