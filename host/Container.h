#pragma once

#include <windows.h>

#include <string>

namespace kw::host {

// What the objects that the control talks to need of the window they serve.
class Container {
public:
  // The window that the control becomes a child of, and its place there.
  virtual HWND Window() const = 0;
  virtual RECT ControlArea() const = 0;

  // A message box or dialog of the control opens (true) or closes (false).
  virtual void ControlIsModal(bool isModal) = 0;
  // The control passes a Tab on: the keyboard goes to what is before or behind it.
  virtual void LeaveControl(bool backwards) = 0;
  // The control raised an event; the text names it and its arguments.
  virtual void EventRaised(const std::wstring& event) = 0;
  // The control reported an error and disabled itself. The text may be changed: who hears the event later gets that.
  virtual void ErrorOccured(SHORT number, std::wstring& message) = 0;
  // Another page is shown.
  virtual void PageChanged(SHORT page) = 0;
  // Some property of the control has a new value.
  virtual void PropertyChanged() = 0;

protected:
  ~Container() = default;
};

}  // namespace kw::host
