#pragma once

namespace CLI {
class App;
}

namespace tolvanix::kit {

// Adds the command `report`; when it has run, it leaves its exit code there.
void addReport(CLI::App& app, int& exitCode);

}  // namespace tolvanix::kit
