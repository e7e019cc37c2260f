// What all forms of the report show: the documents of one or many computers.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "common/ResultDocument.h"

namespace tolvanix::kit {

struct ReportedComputer {
  std::string name;
  std::string file;
  ResultDocument document;
};

using Report = std::vector<ReportedComputer>;

// Each computer has the name of its file without the extension; where two files share it, with
// their folders. Throws BadInput.
Report readReport(const std::vector<std::string>& files);

std::string hardwareIdOf(const ReportedDevice& device);

// One line for the reader: a device, or what a document says about the whole run. Texts that do
// not apply are empty.
struct ReportRow {
  enum class Mood { kNeutral, kGood, kBad };

  std::string computer;
  std::string place;  // bus:device.function, decimal
  std::string id;     // vendor:device
  std::string hardwareId;
  std::string device;
  std::string driver;
  std::string firmware;
  std::string package;
  std::string outcome;
  std::string advice;  // what to do about a failure
  Mood mood = Mood::kNeutral;
  bool restart = false;  // the computer is to be restarted
};

// At least one for each computer.
std::vector<ReportRow> rowsOf(const Report& report);

struct ReportSums {
  std::size_t computers = 0;
  std::size_t devices = 0;
  std::size_t installed = 0;
  std::size_t failed = 0;
  std::vector<std::string> restarts;  // the computers to be restarted
};

ReportSums sumsOf(const Report& report, const std::vector<ReportRow>& rows);

// ---- The forms ----

// Lines of that many columns where there is a limit.
std::string asTable(const Report& report, std::optional<std::size_t> limit);
std::string asHtml(const Report& report);
std::string asJson(const Report& report);
std::string asCsv(const Report& report);

}  // namespace tolvanix::kit
