#include "windows/views/Announcements.h"

#include <span>
#include <utility>

namespace kw::windows {

void Announcements::Note(HWND teller, DWORD event, HWND window, LONG child) {
  if (teller == nullptr || window == nullptr) return;
  if (count < entries.size())
    entries[count++] = {event, window, child};
  else
    isTooMuch = true;
  if (!isPosted) isPosted = PostMessageW(teller, Message, 0, 0) != FALSE;
}

void Announcements::Tell(HWND teller) {
  isPosted = false;
  const std::array<Entry, Most> told = entries;
  const bool isReordered = std::exchange(isTooMuch, false);
  for (const Entry& entry : std::span(told).first(std::exchange(count, 0))) {
    if (IsWindow(entry.window) != FALSE) NotifyWinEvent(entry.event, entry.window, OBJID_CLIENT, entry.child);
  }
  if (isReordered && IsWindow(teller) != FALSE)
    NotifyWinEvent(EVENT_OBJECT_REORDER, teller, OBJID_CLIENT, CHILDID_SELF);
}

}  // namespace kw::windows
