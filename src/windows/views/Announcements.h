#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

namespace kw::windows {

// What screen readers are to hear of the windows of a tree. It is noted while models change and told by the message
// loop, because a listener in the same process may do anything. Noting needs no memory.
class Announcements {
public:
  // Beside ViewTree's KeysMessage and TabMessage.
  static constexpr UINT Message = WM_USER + 1;

  // Notes an event (EVENT_OBJECT_...) of a window, or of a part of it by its child id. `teller` is the window that gets
  // the message. If too many wait, the latest are lost, and the reader is told that the children are others.
  void Note(HWND teller, DWORD event, HWND window, LONG child);
  // Raises what was noted. Listeners may note anew meanwhile.
  void Tell(HWND teller);

private:
  struct Entry {
    DWORD event = 0;
    HWND window = nullptr;
    LONG child = 0;
  };
  static constexpr std::size_t Most = 64;

  std::array<Entry, Most> entries;
  std::size_t count = 0;
  bool isTooMuch = false;
  bool isPosted = false;
};

}  // namespace kw::windows
