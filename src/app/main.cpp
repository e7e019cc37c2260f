// The entry point: the program works in its own folder, whoever starts it from wherever.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#include <string>

#include "app/KivWrapper.h"
#include "app/Status.h"
#include "winapi/winapi.h"

namespace {

// A failure leaves the current directory as it is; the files are then looked for there.
void makeOwnFolderCurrent() {
  char path[MAX_PATH] = "";
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  if (length == 0) return;
  // Of a longer path the beginning, which may still hold the whole folder.
  std::string folder(path, std::min<DWORD>(length, sizeof path - 1));
  const std::size_t end = folder.rfind('\\');
  if (end != std::string::npos) folder.resize(end);
  SetCurrentDirectoryA(folder.c_str());
}

int run(int argumentCount, char* arguments[]) {
  const std::unique_ptr<tolvanix::KivWrapper> application(new (std::nothrow) tolvanix::KivWrapper);
  if (!application) {
    std::fputs("Error: Failed while trying to initialize objects.", stdout);
    return tolvanix::kInitializationFailed;
  }
  return application->runKiv(argumentCount, arguments);
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
  makeOwnFolderCurrent();
  return run(argumentCount, arguments);
}
