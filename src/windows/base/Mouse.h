#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

namespace kw::windows {

// A mouse message in the terms of the models.
struct MouseEvent {
  enum class Kind : std::uint8_t { Down, Move, Up, DoubleClick };

  Kind kind = Kind::Move;
  std::int16_t button = 0;  // the one that changed; for a move all that are held
  std::int16_t shift = 0;   // for a move without Alt
  POINT at = {};            // pixels of the window
  bool isAnyHeld = false;

  // Empty for another message.
  static std::optional<MouseEvent> Of(UINT message, WPARAM wParam, LPARAM lParam);
};

// Shift, Ctrl and Alt as they are now.
std::int16_t ShiftState();

// Has the window below the mouse, where it is one of this thread, set the pointer now: a pointer that says that the
// editor is busy must not wait for the mouse to move, and while the mouse is held nobody else asks for the pointer.
void RenewPointer();

// Takes the mouse away from the window, or from one within it, that holds it: what is being pressed or dragged there
// ends without a result.
void CancelMouse(HWND window);

// Keeps the mouse while a button is down, as a control does.
void HoldMouse(HWND window, const MouseEvent& event);

}  // namespace kw::windows
