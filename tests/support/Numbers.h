#pragma once

#include <cstddef>
#include <string_view>

#include "components/base/Parameter.h"

namespace kw::test {

// Fields of every kind that a user may be asked for; for a fixture to inherit.
struct Numbers {
  static constexpr std::size_t Angle = 0;
  static constexpr std::size_t Sigma = 1;
  static constexpr std::size_t Level = 2;
  static constexpr std::size_t Kernel = 3;
  static constexpr std::string_view Choices[] = {"First", "Second", "Third"};
  static constexpr Parameter Fields[] = {{"Angle", -360, 360, 90, false, "degrees"},
                                         {"BlurSigma", 0.3, 50, 1.5, false, "pixels"},
                                         {"Level", 0, 255, 0, true, "", "found"},
                                         {"Kernel", 1, 3, 1, true, "", "", Choices}};
};

}  // namespace kw::test
