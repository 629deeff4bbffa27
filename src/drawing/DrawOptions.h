#pragma once

#include <optional>

#include "components/base/Units.h"

namespace kw {

// How a layer's contents show.
struct DrawOptions {
  // What has this colour shows what lies below.
  std::optional<Colour> transparent = std::nullopt;
  // Halfway to white.
  bool isLightened = false;
  friend bool operator==(const DrawOptions&, const DrawOptions&) = default;
};

}  // namespace kw
