#include "check/Trial.h"

#include <sstream>
#include <stdexcept>
#include <string_view>

#include "check/ChildRun.h"
#include "check/PackageFolder.h"
#include "common/Files.h"
#include "common/Outcome.h"

namespace tolvanix::kit {

namespace {

namespace fs = std::filesystem;

void copyFile(const fs::path& from, const fs::path& to) {
  fs::copy_file(from, to, fs::copy_options::overwrite_existing);
  fs::permissions(to, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add);
}

// Of folders and files. A link to a folder stays one, so that a tree of links has an end.
void copyTree(const fs::path& from, const fs::path& to) {
  fs::create_directory(to);
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(from)) {
    const fs::path target = to / entry.path().lexically_relative(from);
    if (entry.is_regular_file()) {
      copyFile(entry.path(), target);
    } else if (entry.is_symlink()) {
      fs::copy_symlink(entry.path(), target);
    } else if (entry.is_directory()) {
      fs::create_directory(target);
    }
  }
}

void replace(const fs::path& file, const fs::path& substitute) {
  if (substitute.empty()) return;
  fs::create_directories(file.parent_path());
  fs::remove(file);
  copyFile(substitute, file);
  fs::permissions(file, fs::perms::owner_exec, fs::perm_options::add);
}

std::string quoted(const std::string& text) {
  return '"' + text + "\" ";
}

// The validation document in a trace; empty for none.
std::string validationIn(const std::string& trace) {
  constexpr std::string_view kBefore = "converted wchar Validation XML is:\n\n";
  constexpr std::string_view kAfter = "\n\nVerifyValidationXML: Checking validation XML.\n";
  const std::size_t before = trace.find(kBefore);
  if (before == std::string::npos) return {};
  const std::size_t begin = before + kBefore.size();
  return trace.substr(begin, trace.rfind(kAfter) - begin);
}

// The lines about the computer have the copy's path in them; it is left out, with what is before.
void sortLines(const std::string& output, const std::string& copy, TrialRun& run) {
  const std::string aboutComputer = "tolvanix: " + copy;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(aboutComputer)) {
      run.complaints.push_back(line.substr(aboutComputer.size()));
    } else if (!line.empty()) {
      run.said.push_back(line);
    }
  }
}

}  // namespace

Trial::Trial(const TrialParts& parts) : description(parts.description) {
  const fs::path package = folder.path() / "package";
  copyTree(".", package);
  replace(package / kLinuxProgram, parts.program);
  replace(package / kLibrary, parts.validationLibrary);
  replace(package / kHelper, parts.helperProgram);
}

TrialRun Trial::run(const fs::path& computer) const {
  const std::string copy = folder.file("computer");
  const std::string result = folder.file("result.xml");
  const std::string trace = folder.file("trace");
  fs::remove_all(copy);
  fs::remove(result);
  if (fs::is_directory(computer)) {
    copyTree(computer, copy);
  } else {
    copyFile(computer, copy);
  }

  const auto child =
      runChild(quoted("/usr/bin/env") + quoted("TOLVANIX_MACHINE=" + copy) +
               quoted(folder.file("package/" + std::string(kLinuxProgram))) + "-u -p " +
               quoted(description) + "-d=4 -o " + quoted(result) + "-e " + quoted(trace));
  if (!child) throw std::runtime_error("the program of the package cannot be started");
  TrialRun run;
  run.exitCode = static_cast<int>(child->exitCode);
  sortLines(child->output, copy, run);
  try {
    run.validation = validationIn(readFile(trace));
    run.result = readResultDocument(result);
  } catch (const BadInput&) {
    // The exit code says what is to be said of a run without them.
  }
  writeFile(validationFile(), run.validation);
  return run;
}

}  // namespace tolvanix::kit
