#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "components/base/Bitmap.h"
#include "components/base/Parameter.h"

namespace kw {

// The numbers that a dialog asks the user for.
struct ParameterQuestion {
  // Gives the picture that the values lead to, no larger than the two sizes in pixels; may raise RunTimeError, and then
  // there is no picture.
  using Preview = std::function<Bitmap(std::span<const double> values)>;

  std::string title;
  std::span<const Parameter> fields;  // must outlive the question
  // Asked for once the size in pixels is known; may be slow, and is called under the hourglass. Empty: no preview.
  std::function<Preview(std::int32_t width, std::int32_t height)> makePreview{};
};

}  // namespace kw
