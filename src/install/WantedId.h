// The hardware ID that INF files are searched for.
#pragma once

#include <string>
#include <string_view>

namespace tolvanix {

class WantedId {
 public:
  WantedId() = default;
  explicit WantedId(std::string_view hardwareId);

  // Whether an ID of an INF file, cut before its first "&REV", contains the wanted one or is
  // contained in it. The case of ASCII letters does not count but in "&REV".
  bool matches(std::string_view listed) const;

 private:
  bool matchesAnywhere(std::string_view listed) const;
  bool firstComesAgain(std::string_view listed) const;

  std::string wanted;  // in upper case
  // Whether nothing in the wanted ID itself keeps a difference at the start from being decisive.
  bool startDecides = false;
};

}  // namespace tolvanix
