#include "tests/activex/Hand.h"

#include <gtest/gtest.h>

#include <cwctype>

#include "tests/support/win32/ChildWindows.h"

namespace kw::test {
namespace {

constexpr DWORD LongestWait = 10000;

INPUT ButtonInput(Hand::Button button, bool isUp) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  switch (button) {
    case Hand::Button::Left:
      input.mi.dwFlags = isUp ? MOUSEEVENTF_LEFTUP : MOUSEEVENTF_LEFTDOWN;
      break;
    case Hand::Button::Right:
      input.mi.dwFlags = isUp ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_RIGHTDOWN;
      break;
    case Hand::Button::Middle:
      input.mi.dwFlags = isUp ? MOUSEEVENTF_MIDDLEUP : MOUSEEVENTF_MIDDLEDOWN;
      break;
  }
  return input;
}

INPUT MoveInput(POINT point) {
  // Absolute positions are in 65536ths of the screen; one more than the quotient is within the pixel.
  const auto absolute = [](LONG pixel, int extent) { return static_cast<LONG>(pixel * 65536LL / extent + 1); };
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx = absolute(point.x, GetSystemMetrics(SM_CXSCREEN));
  input.mi.dy = absolute(point.y, GetSystemMetrics(SM_CYSCREEN));
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
  return input;
}

POINT Pointer() {
  POINT point = {};
  GetCursorPos(&point);
  return point;
}

}  // namespace

void Hand::Pump() const {
  MSG message = {};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    // The control may give up being the active object in the very call.
    const Microsoft::WRL::ComPtr<IOleInPlaceActiveObject> active = container.ActiveObject();
    if (isKey && active != nullptr && active->TranslateAccelerator(&message) == S_OK) continue;
    if (isKey && accelerators != nullptr && TranslateAcceleratorW(container.Window(), accelerators, &message) != 0) {
      continue;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool Hand::Await(const std::function<bool()>& condition) const {
  for (const DWORD start = GetTickCount(); GetTickCount() - start < LongestWait;) {
    Pump();
    if (condition()) return true;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
  }
  return false;
}

void Hand::SendOnly(INPUT input) { EXPECT_EQ(SendInput(1, &input, sizeof input), 1U) << GetLastError(); }

void Hand::SendRelease() { SendOnly(ButtonInput(Button::Left, true)); }

void Hand::Send(const INPUT& input) const {
  SendOnly(input);
  Pump();
}

void Hand::MoveTo(POINT point) {
  at = point;
  Send(MoveInput(point));
}

// The system asks the display server for the position, and so hears all that the server has told until then, when the
// last move is a tenth of a second old.
void Hand::Settle() const {
  constexpr DWORD StillTime = 110;
  const DWORD start = GetTickCount();
  EXPECT_TRUE(Await([&] { return GetTickCount() - start > StillTime; }));
  static_cast<void>(Pointer());
  Pump();
}

// A display server tells of a pointer that a program moved once more, a little later and perhaps after the next move,
// so the pointer may jump back for a moment.
void Hand::Rest() const {
  Settle();
  EXPECT_TRUE(Await([&] {
    const POINT now = Pointer();
    return now.x == at.x && now.y == at.y;
  })) << "the pointer does not stay at "
      << at.x << ", " << at.y;
}

void Hand::GlideTo(POINT point) {
  constexpr int Steps = 4;
  const POINT start = at;
  for (int step = 1; step <= Steps; ++step) {
    MoveTo({start.x + (point.x - start.x) * step / Steps, start.y + (point.y - start.y) * step / Steps});
  }
  Rest();
}

void Hand::Press(Button button) const { Send(ButtonInput(button, false)); }
void Hand::Release(Button button) const { Send(ButtonInput(button, true)); }

void Hand::ClickAt(POINT point, Button button, WORD held) {
  MoveTo(point);
  Rest();
  if (held != 0) Hold(held);
  Press(button);
  Release(button);
  if (held != 0) LetGo(held);
}

void Hand::DragFrom(POINT start, POINT end) {
  MoveTo(start);
  Rest();
  Press();
  GlideTo(end);
  Release();
}

void Hand::DragAtOnce(POINT start, POINT end) {
  MoveTo(start);
  Rest();
  const POINT middle = {(start.x + end.x) / 2, (start.y + end.y) / 2};
  INPUT inputs[] = {ButtonInput(Button::Left, false), MoveInput(middle), MoveInput(end),
                    ButtonInput(Button::Left, true)};
  EXPECT_EQ(SendInput(4, inputs, sizeof(INPUT)), 4U) << GetLastError();
  at = end;
  Pump();
  Rest();
}

void Hand::Hold(WORD key) const {
  SendKey(key, false);
  Pump();
}
void Hand::LetGo(WORD key) const {
  SendKey(key, true);
  Pump();
}

// The display server knows nothing of the key that is held: it would be let go when a window that goes or comes makes
// the server tell which keys are down. So that is waited for.
void Hand::Strike(WORD key, WORD held) const {
  if (held != 0) {
    Settle();
    Hold(held);
  }
  Hold(key);
  LetGo(key);
  if (held != 0) LetGo(held);
}

void Hand::Type(const std::wstring& text) const {
  for (const wchar_t character : text) Strike(static_cast<WORD>(towupper(static_cast<wint_t>(character))));
}

}  // namespace kw::test
