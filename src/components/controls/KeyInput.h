#pragma once

#include <cstdint>

#include "components/base/Event.h"

namespace kw {

// The keyboard events of a control: key codes and characters as the platform numbers them, with the shift state.
struct KeyInput {
  Event<std::int16_t, std::int16_t> KeyDown;
  Event<std::int16_t> KeyPress;
  Event<std::int16_t, std::int16_t> KeyUp;
  // Asks whether that key, with that shift state, has a use now; else it is the host's.
  Event<std::int16_t, std::int16_t, bool&> KeyUse;
};

}  // namespace kw
