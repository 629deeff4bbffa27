#include "windows/views/NamedWindow.h"

#include <commctrl.h>

#include <utility>

#include "windows/base/Guard.h"

namespace kw::windows {
namespace {

// Other subclasses of the same window have the id 0.
constexpr UINT_PTR NameId = 1;

}  // namespace

NamedWindow::NamedWindow(HWND named, std::wstring newName) : window(named), name(std::move(newName)) {
  if (window != nullptr) SetWindowSubclass(window, &Subclass, NameId, reinterpret_cast<DWORD_PTR>(this));
}

NamedWindow::~NamedWindow() { Unhook(); }

void NamedWindow::Unhook() {
  accessible.Disconnect();
  if (HWND const former = std::exchange(window, nullptr); former != nullptr)
    RemoveWindowSubclass(former, &Subclass, NameId);
}

AccessibleAnswer NamedWindow::Whole() const {
  AccessibleAnswer whole;
  whole.name = name;
  return whole;
}

LRESULT CALLBACK NamedWindow::Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                       DWORD_PTR self) {
  auto* const named = reinterpret_cast<NamedWindow*>(self);
  if (message == WM_NCDESTROY) named->Unhook();
  if (message == WM_GETOBJECT) {
    const LRESULT answer =
        GuardOr(LRESULT{0}, [&] { return named->accessible.Answer(window, *named, wParam, lParam); });
    if (answer != 0) return answer;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace kw::windows
