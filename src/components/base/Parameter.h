#pragma once

#include <span>
#include <string_view>

namespace kw {

// A number that an operation works with and that a user may be asked for.
struct Parameter {
  std::string_view name;
  double least = 0;
  double greatest = 0;
  double standard = 0;
  // Only whole numbers are allowed.
  bool whole = false;
  // The unit that a dialog writes behind the number.
  std::string_view unit = {};
  // The meaning of 0 if it is no number like the others.
  std::string_view zero = {};
  // If the number only tells a few things apart: their names, from the least number upward.
  std::span<const std::string_view> choices = {};
};

}  // namespace kw
