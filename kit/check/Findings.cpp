#include "check/Findings.h"

#include <algorithm>

#include "common/Wording.h"
#include "text/Conversion.h"

namespace tolvanix::kit {

void Findings::error(const std::string& file, const std::string& problem,
                     const std::string& remedy) {
  ++errors;
  add("error: ", file, problem, remedy);
}

void Findings::warning(const std::string& file, const std::string& problem,
                       const std::string& remedy) {
  ++warnings;
  add("warning: ", file, problem, remedy);
}

void Findings::add(const char* kind, const std::string& file, const std::string& problem,
                   const std::string& remedy) {
  std::string line = kind + file;
  line.append(": ").append(problem).append("; ").append(remedy);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  lines.push_back(toXmlUtf8(widen(line)) + '\n');  // names in it can be any bytes
}

std::string Findings::text() const {
  if (empty()) return "No findings.\n";
  std::string text;
  for (const std::string& line : lines) text += line;
  return text + counted(errors, "error") + ", " + counted(warnings, "warning") + ".\n";
}

}  // namespace tolvanix::kit
