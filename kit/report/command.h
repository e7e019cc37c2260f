// tolvanixkit report: result documents as one table.
#pragma once

#include <string>
#include <vector>

namespace tolvanix::kit {

struct ReportOptions {
  std::vector<std::string> files;
  std::string format = "table";  // or html, json, csv
  std::string output;            // a file; empty for standard output
};

// Returns the exit code. Throws BadInput.
int report(const ReportOptions& options);

}  // namespace tolvanix::kit
