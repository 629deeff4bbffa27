// The way of the focus through the tree by the Tab key.

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "windows/base/Guard.h"
#include "windows/base/Mouse.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {

namespace {

// Collects the tab stops in tab order: the order of creation, container before content.
void CollectTabStops(const ViewTree& tree, const Control& holder, std::vector<const ControlView*>& stops) {
  for (const Control* child : holder.Children()) {
    const ControlView* const view = tree.ViewOf(*child);
    if (view == nullptr || !child->Visible() || !child->Enabled()) continue;
    if (view->IsTabStop() && view->Handle() != nullptr) stops.push_back(view);
    CollectTabStops(tree, *child, stops);
  }
}

LRESULT CALLBACK AskForTab(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR /*data*/) {
  return GuardOr(LRESULT{0}, [&]() -> LRESULT {
    if (message == WM_NCDESTROY) RemoveWindowSubclass(window, &AskForTab, id);
    const bool isQuestion = message == WM_GETDLGCODE && lParam != 0;
    const bool isTab = (message == WM_KEYDOWN || message == WM_CHAR) && wParam == VK_TAB;
    if (!isQuestion && !isTab) return DefSubclassProc(window, message, wParam, lParam);
    HWND view = GetParent(window);
    while (view != nullptr && !OwnWindowClass::IsOf(view)) view = GetParent(view);
    const LRESULT answer = SendMessageW(view, ViewTree::TabMessage, message, lParam);
    if (isTab && answer != 0) return 0;
    return (isQuestion ? answer : 0) | DefSubclassProc(window, message, wParam, lParam);
  });
}

}  // namespace

void ViewTree::ClaimTabOf(HWND inner) {
  if (inner != nullptr) SetWindowSubclass(inner, &AskForTab, 1, 0);
}

LRESULT ViewTree::OnTabMessage(UINT message, LPARAM argument) {
  if (message != WM_GETDLGCODE) return TakeClaimedTab(message, VK_TAB) ? 1 : 0;
  return ClaimsTab(*reinterpret_cast<const MSG*>(argument)) ? DLGC_WANTMESSAGE : 0;
}

bool ViewTree::MoveFocus(bool isBackward) {
  std::vector<const ControlView*> stops;
  CollectTabStops(*this, *root, stops);
  if (isBackward) std::ranges::reverse(stops);
  const HWND focus = GetFocus();
  auto current = std::ranges::find_if(stops, [focus](const ControlView* view) {
    return view->Handle() == focus || IsChild(view->Handle(), focus) != FALSE;
  });
  // If the focused window is no tab stop, the first stop is next.
  const auto next = current == stops.end() ? stops.begin() : current + 1;
  if (next == stops.end()) return false;
  SetFocus((*next)->Handle());
  return true;
}

bool ViewTree::ClaimsTab(const MSG& asked) {
  isTabClaimed = asked.message == WM_KEYDOWN && asked.wParam == VK_TAB && (ShiftState() & ~Mouse::ShiftKey) == 0;
  return isTabClaimed;
}

bool ViewTree::TakeClaimedTab(UINT message, WPARAM key) {
  if (key != VK_TAB) return false;
  if (message == WM_CHAR) return std::exchange(isTabCharacterDue, false);
  if (message != WM_KEYDOWN || !std::exchange(isTabClaimed, false)) return false;
  isTabCharacterDue = true;
  const bool isBackward = ShiftState() != 0;
  if (!MoveFocus(isBackward)) LeaveByTab(isBackward);
  return true;
}

void ViewTree::LeaveByTab(bool isBackward) {
  // The window whose items the Tab key visits: the host's, or one around it.
  HWND dialog = GetParent(Window());
  const auto isPart = [](HWND window) {
    return (GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) != 0 &&
           (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) != 0;
  };
  while (isPart(dialog) && GetParent(dialog) != nullptr) dialog = GetParent(dialog);
  const HWND next = GetNextDlgTabItem(dialog, Window(), isBackward ? TRUE : FALSE);
  if (next == nullptr || next == Window()) {
    SetFocus(Window());  // the host has no other item: begin again
    MoveFocus(isBackward);
    return;
  }
  const HWND before = GetFocus();
  SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
  if (GetFocus() == before) SetFocus(next);  // it is no dialog
}

void ViewTree::EnterByTab(HWND from) {
  const bool isFromHost =
      from != nullptr && !IsOwn(from) && GetAncestor(from, GA_ROOT) == GetAncestor(Window(), GA_ROOT);
  if (isFromHost && TakesInput() && GetKeyState(VK_TAB) < 0) MoveFocus(GetKeyState(VK_SHIFT) < 0);
}

}  // namespace kw::windows
