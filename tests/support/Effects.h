#pragma once

#include <string_view>

#include "picture/PictureDocument.h"

namespace kw::test {

// Runs an effect with every parameter at its default.
inline void Apply(PictureDocument& document, std::string_view command) {
  const Effect& effect = *FindEffect(command);
  document.Apply(effect, StandardValues(effect));
}

}  // namespace kw::test
