// What is wrong with a package, as it is found.
#pragma once

#include <string>
#include <vector>

namespace tolvanix::kit {

class Findings {
 public:
  // An error keeps the package from working, a warning need not. One line each: the file, what is
  // wrong with it, and what to do.
  void error(const std::string& file, const std::string& problem, const std::string& remedy);
  void warning(const std::string& file, const std::string& problem, const std::string& remedy);

  bool empty() const { return lines.empty(); }
  // All lines, and how many there are of each kind.
  std::string text() const;

 private:
  void add(const char* kind, const std::string& file, const std::string& problem,
           const std::string& remedy);

  std::vector<std::string> lines;
  unsigned errors = 0;
  unsigned warnings = 0;
};

}  // namespace tolvanix::kit
