#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kw::windows {

class AccessibleObject;

// What a screen reader is told of a window or of a part that the window draws. Empty and 0 stand for what the system
// says of such a window.
struct AccessibleAnswer {
  LONG id = 0;     // 0 the window, else the part's child id
  LONG role = 0;   // ROLE_SYSTEM_...
  LONG state = 0;  // STATE_SYSTEM_..., added to the system's
  std::wstring name;
  std::wstring value;
  std::wstring action;  // what Do does; empty if it does nothing
  RECT place = {};      // of a part, in the window's client area
};

// A window that answers screen readers. All members are called on the window's thread.
class AccessibleSource {
public:
  AccessibleSource() = default;
  AccessibleSource(const AccessibleSource&) = delete;
  AccessibleSource& operator=(const AccessibleSource&) = delete;
  virtual ~AccessibleSource() = default;

  virtual AccessibleAnswer Whole() const = 0;
  // Whether the system knows the parts of this window; the next ones are not called then.
  virtual bool HasSystemsParts() const { return true; }
  // The parts that the window draws, back to front. Child windows are none of them.
  virtual std::vector<AccessibleAnswer> Parts() const { return {}; }
  // The part that is drawn at a point of the client area; 0 if there is none.
  virtual LONG PartAt(POINT /*point*/) const { return 0; }
  // The default action of the window or of a part.
  virtual void Do(LONG /*id*/) {}
};

// A window's side of its accessible object, which is made when a client asks for it. Clients may keep the object for as
// long as they like; without its window every method of it gives CO_E_OBJNOTCONNECTED.
class AccessibleWindow {
public:
  AccessibleWindow() = default;
  AccessibleWindow(const AccessibleWindow&) = delete;
  AccessibleWindow& operator=(const AccessibleWindow&) = delete;
  ~AccessibleWindow() { Disconnect(); }

  // Answers WM_GETOBJECT; 0 if the system is to answer.
  LRESULT Answer(HWND window, AccessibleSource& source, WPARAM wParam, LPARAM lParam);
  // Called before the source or the window goes.
  void Disconnect();

  // Whether a client holds an object of any window: its code must stay loaded. Thread-safe.
  static bool AreObjectsHeld();

private:
  AccessibleObject* object = nullptr;  // counted
};

}  // namespace kw::windows
