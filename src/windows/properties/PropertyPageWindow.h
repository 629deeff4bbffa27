#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "windows/properties/PropertyEntries.h"

namespace kw::windows {

// The window of the property page: a child dialog without a frame. It shows the entries and takes over what the user
// enters. Its parent may destroy it at any time.
class PropertyPageWindow : public std::enable_shared_from_this<PropertyPageWindow> {
public:
  struct Host {
    // The user entered something.
    std::function<void()> changed;
    // Keeps the page alive until what it returns is dropped: a message may run foreign code.
    std::function<std::shared_ptr<void>()> hold;
  };

  // Creates the window, hidden. Raises OutOfMemory if the system cannot.
  static std::shared_ptr<PropertyPageWindow> Create(HWND parent, std::shared_ptr<PropertyEntries> entries, Host host);
  PropertyPageWindow(const PropertyPageWindow&) = delete;
  PropertyPageWindow& operator=(const PropertyPageWindow&) = delete;
  ~PropertyPageWindow() { Close(); }

  // Destroys the window, also in the middle of its own messages.
  void Close();

  // The size in screen pixels that the page wants, which follows the size of the dialogs' font. Raises OutOfMemory.
  static SIZE WantedSize();

  // Null if the parent destroyed it.
  HWND Handle() const { return window; }
  // Shows what the entries hold now.
  void ShowEntries();
  // Gives the keyboard to a field.
  void Focus(std::size_t field) const;
  // Says what is wrong in a message box over the frame.
  void Complain(const std::string& message) const;

  // Handles a key that came to the frame's message loop; true if nobody else may have it. `leave` offers the frame the
  // key that leads beyond the first or last field; true if the frame took it.
  bool TakesKey(MSG message, const std::function<bool()>& leave) const;

private:
  PropertyPageWindow(std::shared_ptr<PropertyEntries> shown, Host owner)
      : entries(std::move(shown)), host(std::move(owner)) {}

  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
  void Initialise() const;
  bool Command(WORD control, WORD notification);
  void Toggle(std::size_t field);
  void ReadText(std::size_t field);
  void Browse(std::size_t field);
  std::wstring TextOf(std::size_t field) const;
  HWND Item(int control) const { return GetDlgItem(window, control); }
  bool IsLastStop(bool backwards) const;

  std::shared_ptr<PropertyEntries> entries;
  Host host;
  HWND window = nullptr;
  bool isShowing = false;  // the page, not the user, changes its controls
};

}  // namespace kw::windows
