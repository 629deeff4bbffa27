#pragma once

#include <optional>

#include "components/base/Units.h"

namespace kw {

// How a layer's contents are drawn.
struct DrawOptions {
  // Pixels of this colour are transparent.
  std::optional<Colour> transparent = std::nullopt;
  // The colour halfway to white.
  bool isLightened = false;
  friend bool operator==(const DrawOptions&, const DrawOptions&) = default;
};

}  // namespace kw
