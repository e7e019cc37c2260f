#pragma once

namespace CLI {
class App;
}

namespace tolvanix::kit {

// Adds the command `check`; when it has run, it leaves its exit code there.
void addCheck(CLI::App& app, int& exitCode);

}  // namespace tolvanix::kit
