#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "tests/activex/StrictContainer.h"

namespace kw::test {

// A point as a mouse message carries it.
inline LPARAM Packed(POINT point) { return MAKELPARAM(point.x, point.y); }

// A user at the mouse and the keyboard. What it does goes through the system's own input, and the messages that come of
// it through a container's loop: the active object is asked first for a key, the container's accelerators come after
// it. Points are on the screen.
class Hand {
public:
  enum class Button { Left, Right, Middle };

  // The container outlives the hand.
  explicit Hand(StrictContainer& user) : container(user) {}

  void Use(HACCEL table) { accelerators = table; }

  // Handles what waits.
  void Pump() const;
  // Handles messages until the condition holds; false when that takes longer than ten seconds.
  bool Await(const std::function<bool()>& condition) const;

  void MoveTo(POINT point);
  // Moves there in steps and lets the pointer come to rest.
  void GlideTo(POINT point);
  void Press(Button button = Button::Left) const;
  void Release(Button button = Button::Left) const;
  // Clicks, with a key held if one is given.
  void ClickAt(POINT point, Button button = Button::Left, WORD held = 0);
  void DragFrom(POINT start, POINT end);
  // The same for a control that handles all of it in a loop of its own: press, moves and release wait before it begins.
  void DragAtOnce(POINT start, POINT end);

  // Presses and releases a key while another one, if any, is held.
  void Strike(WORD key, WORD held = 0) const;
  void Hold(WORD key) const;
  void LetGo(WORD key) const;
  // Types letters, digits and blanks.
  void Type(const std::wstring& text) const;
  // Only sends it; for other threads.
  static void SendRelease();

private:
  // The display has told all that there is to tell of what was shown, hidden and moved.
  void Settle() const;
  // The pointer has come to rest where it was moved to.
  void Rest() const;
  void Send(const INPUT& input) const;
  static void SendOnly(INPUT input);

  StrictContainer& container;
  HACCEL accelerators = nullptr;
  POINT at = {};
};

}  // namespace kw::test
