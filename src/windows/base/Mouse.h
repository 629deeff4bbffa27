#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

namespace kw::windows {

// A mouse message in the models' terms.
struct MouseEvent {
  enum class Kind : std::uint8_t { Down, Move, Up, DoubleClick };

  Kind kind = Kind::Move;
  std::int16_t button = 0;  // the button that changed; for a move, all held buttons
  std::int16_t shift = 0;   // without Alt for a move
  POINT at = {};            // window pixels
  bool isAnyHeld = false;

  // Empty if it is no mouse message.
  static std::optional<MouseEvent> Of(UINT message, WPARAM wParam, LPARAM lParam);
};

// The current state of Shift, Ctrl and Alt.
std::int16_t ShiftState();

// Makes the window below the mouse, if it belongs to this thread, set the mouse pointer now: a busy pointer must not
// wait for the mouse to move, and while the mouse is captured the system does not request the pointer.
void RenewPointer();

// Releases the mouse capture of the window or one inside it: a press or drag there ends without a result.
void CancelMouse(HWND window);

// Captures the mouse while a button is down.
void HoldMouse(HWND window, const MouseEvent& event);

}  // namespace kw::windows
