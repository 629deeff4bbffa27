#pragma once

#include <windows.h>

#include <cstdint>

#include "windows/base/Mouse.h"

namespace kw::windows {

// Hands a key message to a model that has keyboard events; false for another message. The model may be gone afterwards.
template <class Model>
bool SendKey(Model& model, UINT message, WPARAM wParam) {
  const auto code = static_cast<std::int16_t>(wParam);
  switch (message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      model.KeyDown.Raise(code, ShiftState());
      return true;
    case WM_CHAR:
      model.KeyPress.Raise(code);
      return true;
    case WM_KEYUP:
    case WM_SYSKEYUP:
      model.KeyUp.Raise(code, ShiftState());
      return true;
    default:
      return false;
  }
}

// Whether the model has a use for that key, so that a host's accelerators must not take it.
template <class Model>
bool HasUseFor(const Model& model, WPARAM key) {
  bool isInUse = false;
  model.KeyUse.Raise(static_cast<std::int16_t>(key), ShiftState(), isInUse);
  return isInUse;
}

}  // namespace kw::windows
