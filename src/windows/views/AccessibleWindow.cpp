#include "windows/views/AccessibleObject.h"

#include <objbase.h>

#include <utility>

#include "windows/views/AccessibleSource.h"

namespace kw::windows {

LRESULT AccessibleWindow::Answer(HWND window, AccessibleSource& source, WPARAM wParam, LPARAM lParam) {
  if (static_cast<LONG>(lParam) != OBJID_CLIENT) return 0;
  if (object == nullptr) object = AccessibleObject::Make(window, source);
  if (object == nullptr) return 0;
  return LresultFromObject(__uuidof(IAccessible), wParam, static_cast<IAccessible*>(object));
}

void AccessibleWindow::Disconnect() {
  AccessibleObject* const former = std::exchange(object, nullptr);
  if (former == nullptr) return;
  former->Disconnect();
  // Clients in other processes would keep the library loaded for nothing.
  CoDisconnectObject(static_cast<IAccessible*>(former), 0);
  former->Release();
}

bool AccessibleWindow::AreObjectsHeld() { return AccessibleObject::AreHeld(); }

}  // namespace kw::windows
