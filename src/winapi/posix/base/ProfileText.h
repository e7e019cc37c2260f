// The text of a private-profile (INI) file, of which section after section may be asked for.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tolvanix::winapi {

class ProfileText {
 public:
  explicit ProfileText(std::string fileText);
  ProfileText(const ProfileText&) = delete;
  ProfileText& operator=(const ProfileText&) = delete;
  ~ProfileText() = default;

  // The names of the sections in the order of the file, each with a terminating zero. A name that
  // comes again is listed again.
  std::string sectionNames() const;

  // The value of the key in the first section of that name, without blanks and one pair of quotes
  // around it; a part of the text. Names are compared without regard to case.
  std::optional<std::string_view> value(std::string_view section, std::string_view key) const;

 private:
  struct Section {
    std::string_view name;
    std::string_view rest;  // of the text, after the line with the name
  };

  std::string text;
  std::vector<Section> sections;
  std::unordered_map<std::string, std::size_t> firstOfName;  // by the name in lower case
};

}  // namespace tolvanix::winapi
