// The examples of docs/scripting.md, run as they are in the sample package on the sample computer.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "support/Computer.h"
#include "support/Files.h"
#include "support/Program.h"

namespace tolvanix::test {
namespace {

namespace fs = std::filesystem;

struct Block {
  std::string language;
  std::string text;
};

std::vector<Block> blocksOf(const std::string& page) {
  std::vector<Block> blocks;
  std::istringstream lines(page);
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("```")) {
      inside = !inside;
      if (inside) blocks.push_back({line.substr(3), ""});
    } else if (inside) {
      blocks.back().text += line + '\n';
    }
  }
  return blocks;
}

// What runs a script of that language here, and how the kit comes to be found; empty for nothing.
struct Shell {
  std::string program;
  Arguments arguments;
  std::string script;
  std::string preparation;
};

Shell shellFor(const std::string& language) {
  const std::string kit = fs::path(SAMPLE_PACKAGE).parent_path().string();
  const bool windows = fs::path::preferred_separator == '\\';
  if (windows && language == "bat") {
    return {R"(C:\windows\system32\cmd.exe)",
            {"/c", "script.cmd"},
            "script.cmd",
            "@echo off\r\nset PATH=%PATH%;" + kit + "\r\n"};
  }
  if (windows) return {};
  if (language == "bash") return {"/bin/bash", {"script"}, "script", "PATH+=:" + kit + '\n'};
  if (language == "python") return {"/usr/bin/env", {"python3", "script"}, "script", ""};
  return {};
}

// What an example prints is in the next block of text.
TEST(Scripting, Examples_PrintWhatThePageSays) {
  const std::vector<Block> blocks = blocksOf(readText(SCRIPTING_PAGE));
  int run = 0;
  for (auto block = blocks.begin(); block != blocks.end(); ++block) {
    const Shell shell = shellFor(block->language);
    if (shell.program.empty()) continue;
    const CurrentTempDir folder;
    const fs::path registry = folder / "computer.reg";
    writeFile(registry, readFile(SAMPLE_COMPUTER));
    const Computer computer(registry);
    fs::copy(SAMPLE_PACKAGE, "package", fs::copy_options::recursive);
    fs::current_path("package");
    writeFile(shell.script, shell.preparation + block->text);
    const ProgramResult result = runProgram(shell.program, shell.arguments);
    const auto printed =
        std::find_if(block, blocks.end(), [](const Block& b) { return b.language == "text"; });
    ASSERT_NE(printed, blocks.end()) << block->text;
    EXPECT_EQ(result.output + result.errors, printed->text) << block->text;
    fs::current_path(folder.path());
    ++run;
  }
  EXPECT_GE(run, 5);
}

}  // namespace
}  // namespace tolvanix::test
