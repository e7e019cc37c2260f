// The entry point: the program works in its own folder, wherever it is started from.
#include <cstring>
#include <memory>
#include <new>

#include "app/KivWrapper.h"
#include "winapi/StartUp.h"
#include "winapi/winapi.h"

namespace {

// A failure leaves the current directory as it is; the files are then looked for there.
void makeOwnFolderCurrent() {
  // Room for the longest folder that can be current, and a name in it. Of a longer path only the
  // beginning would be there, which names another folder.
  char path[2 * MAX_PATH] = "";
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  if (length == 0 || length >= sizeof path) return;
  // With its backslash: "C:" alone would mean whatever folder is current on that drive.
  if (char* const end = std::strrchr(path, '\\')) end[1] = '\0';
  SetCurrentDirectoryA(path);
}

// Null when there is no memory for it.
std::unique_ptr<tolvanix::KivWrapper> createApplication() {
  try {
    return std::make_unique<tolvanix::KivWrapper>();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
  tolvanix::winapi::startUp();
  makeOwnFolderCurrent();
  const std::unique_ptr<tolvanix::KivWrapper> application = createApplication();
  if (!application) return tolvanix::KivWrapper::reportInitializationFailure();
  return application->runKiv(argumentCount, arguments);
}
