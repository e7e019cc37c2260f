#pragma once

namespace CLI {
class App;
}

namespace tolvanix::kit {

// Adds the command `explain`; when it has run, it leaves its exit code there.
void addExplain(CLI::App& app, int& exitCode);

}  // namespace tolvanix::kit
