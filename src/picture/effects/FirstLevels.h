#pragma once

#include <cstddef>
#include <cstdint>

#include "components/base/Bitmap.h"

namespace kw {

// The values of 8 bits that occur first, up to two, in the order in which they do.
struct FirstLevels {
  static constexpr unsigned Many = 3;

  std::uint8_t first = 0;
  std::uint8_t second = 0;
  // How many values occur: 0, 1, 2 or Many. With one, both are that one.
  unsigned count = 0;

  // Adds those of a row that follows.
  void Add(const FirstLevels& next);
  friend bool operator==(const FirstLevels&, const FirstLevels&) = default;
};

FirstLevels FirstLevelsOf(const std::uint8_t* row, std::size_t count);

// Of the indices of a picture of 8 bits, row by row; if there are more than two, not all rows are looked at.
FirstLevels FirstLevelsOf(const Bitmap& picture);

// Makes each index of a picture of 1 bit the other one.
void ExchangeIndices(Bitmap& picture);

}  // namespace kw
