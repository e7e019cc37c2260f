// What the narrow and the wide text type add alike to the standard string of their characters.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

#include "text/Ascii.h"

namespace tolvanix {

// How a string compares; any value but 2 counts as 1.
enum CompareMode : int { kCaseSensitive = 1, kCaseInsensitive = 2 };

// Base of SPString and SPUString. `compareMode` goes with copies, substrings and assignments from
// the same class; every other string starts case-sensitive.
template <typename Derived, typename Char>
class ComparableString : public std::basic_string<Char> {
 public:
  using Base = std::basic_string<Char>;

  ComparableString() = default;
  explicit ComparableString(Base text) : Base(std::move(text)) {}
  ComparableString(const ComparableString&) = default;
  ComparableString& operator=(const ComparableString&) = default;
  ComparableString(ComparableString&&) noexcept = default;
  ComparableString& operator=(ComparableString&&) noexcept = default;
  virtual ~ComparableString() = default;

  void setCompareMode(int mode) { compareMode = mode; }
  int getCompareMode() const { return compareMode; }

  // Negative, 0 or positive as this sorts before, with or after `other`, by unsigned code units;
  // mode 2 folds A to Z first.
  int compare(const Base& other, int mode) const {
    const auto unit = [mode](Char c) {
      const auto value = static_cast<std::make_unsigned_t<Char>>(c);
      return mode == kCaseInsensitive ? toLower(value) : value;
    };
    const std::size_t common = std::min(this->size(), other.size());
    for (std::size_t i = 0; i < common; ++i) {
      const auto left = unit((*this)[i]);
      const auto right = unit(other[i]);
      if (left != right) return left < right ? -1 : 1;
    }
    if (this->size() == other.size()) return 0;
    return this->size() < other.size() ? -1 : 1;
  }

  // By the left one's mode.
  friend bool operator==(const Derived& left, const Derived& right) {
    return left.compare(right, left.getCompareMode()) == 0;
  }

  // `count` characters from `start`, all to the end for -1; takes this string's mode.
  Derived substr(std::size_t start, int count = -1) const {
    Derived part;
    if (start < this->size()) {
      part.assign(*this, start, count < 0 ? Base::npos : static_cast<std::size_t>(count));
    }
    part.setCompareMode(compareMode);
    return part;
  }

  // Without leading and trailing blanks (U+0020 only), mode 1.
  Derived trim() const {
    const std::size_t first = this->find_first_not_of(Char(' '));
    if (first == Base::npos) return Derived();
    const std::size_t last = this->find_last_not_of(Char(' '));
    return Derived(Base(*this, first, last - first + 1));
  }

  using Base::operator+=;
  Derived& operator+=(const Derived& other) {
    this->append(other);
    return static_cast<Derived&>(*this);
  }

 private:
  int compareMode = kCaseSensitive;
};

}  // namespace tolvanix
