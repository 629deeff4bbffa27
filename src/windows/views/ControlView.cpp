#include "windows/views/ControlView.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

#include "scene/Accessible.h"
#include "scene/CanvasItems.h"
#include "windows/base/Gdi.h"
#include "windows/base/Guard.h"
#include "windows/base/Module.h"
#include "windows/base/Mouse.h"
#include "windows/base/Text.h"
#include "windows/base/WaitPointer.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

constexpr int ViewOffset = 0;  // offset of the view in the window's extra bytes

std::mutex classMutex;
std::atomic<ATOM> classAtom = 0;  // 0: not registered

// Whether it is user input: a key, a mouse message or a context menu.
bool IsInput(UINT message) {
  return (message >= WM_KEYFIRST && message <= WM_KEYLAST) || (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
         message == WM_CONTEXTMENU;
}

bool IsPress(UINT message) {
  const auto event = MouseEvent::Of(message, 0, 0);
  return event && (event->kind == MouseEvent::Kind::Down || event->kind == MouseEvent::Kind::DoubleClick);
}

}  // namespace

void OwnWindowClass::Register() {
  const std::lock_guard lock(classMutex);
  if (classAtom != 0) return;
  WNDCLASSEXW description = {};
  description.cbSize = sizeof description;
  description.style = CS_DBLCLKS;
  description.lpfnWndProc = &Procedure;
  description.cbWndExtra = sizeof(LONG_PTR);
  description.hInstance = Module();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.lpszClassName = Name;
  classAtom = RegisterClassExW(&description);
}

void OwnWindowClass::Unregister() {
  if (classAtom != 0) UnregisterClassW(Name, Module());
}

bool OwnWindowClass::IsOf(HWND window) { return GetClassLongPtrW(window, GCW_ATOM) == classAtom; }

void OwnWindowClass::SetView(HWND window, ControlView* view) {
  SetWindowLongPtrW(window, ViewOffset, reinterpret_cast<LONG_PTR>(view));
}

LRESULT CALLBACK OwnWindowClass::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const view = reinterpret_cast<ControlView*>(GetWindowLongPtrW(window, ViewOffset));
  if (view == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  return GuardOr(LRESULT{0}, [&] { return view->Receive(message, wParam, lParam); });
}

ControlView::ControlView(ViewTree& shared, Control& shown, ControlView* holder)
    : tree(shared), model(&shown), container(holder) {
  model->AttachView(this);
}

ControlView::~ControlView() {
  Detach();
  if (window != nullptr) Unhook();
}

void ControlView::Hook() {
  if (isOwnClass)
    OwnWindowClass::SetView(window, this);
  else
    hook.Hook(window, &ReceiveHooked, this);
}

void ControlView::Unhook() {
  if (isOwnClass)
    OwnWindowClass::SetView(window, nullptr);
  else
    hook.Unhook();
}

void ControlView::Open() {
  isOpened = true;
  ControlView* holder = container;
  while (holder != nullptr && holder->window == nullptr) holder = holder->container;
  window = Create(holder == nullptr ? nullptr : holder->window);
  if (window == nullptr) {
    Show(Aspect::Content);
    return;
  }
  isOwnClass = OwnWindowClass::IsOf(window);
  if (isOwnClass) Hook();
  tree.NoteWindow(window, *this);
  Show(Aspect::Content);
  ShowName();
  ShowEnabled();
  isFilled = true;
  if (container == nullptr) return;  // the host sets the root's position and visibility
  Fit();
  if (!model->Visible()) return;
  SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void ControlView::Unopen() {
  Leave();
  tree.ForgetWindow(window);
  Destroy();
  window = nullptr;
  isOpened = isFilled = false;
}

void ControlView::Complete() {
  if (window == nullptr || container == nullptr) return;
  if (!isOwnClass) Hook();
}

void ControlView::Detach() {
  accessibleWindow.Disconnect();
  if (model == nullptr) return;
  model->DetachView();
  model = nullptr;
}

void ControlView::Destroy() {
  if (window != nullptr) DestroyWindow(window);
}

void ControlView::Changed(Aspect aspect) {
  // To move the focus calls the host, which may close the tree.
  const ViewTree::Message underWay(tree);
  if (IsAsleep()) {
    if (aspect == Aspect::Visibility && model->Visible()) tree.Wake(*this);
    return;
  }
  if (window != nullptr && container != nullptr) {
    if (aspect == Aspect::Geometry) ShowBounds();
    if (aspect == Aspect::Visibility) ShowVisibility();
    if (aspect == Aspect::Order) ShowOrder();
  }
  if (aspect == Aspect::Enabled) {
    ShowEnabled();
    EnableDescendants(*model);
    if (IsAttached()) tree.NoteKeys();  // a page that opens or closes enables or disables the tool bars
  }
  if (aspect == Aspect::Focus && window != nullptr) SetFocus(window);
  if (!IsAttached()) return;
  Show(aspect);
  const bool isSpoken = aspect == Aspect::Content || aspect == Aspect::Colours || aspect == Aspect::Name;
  if (isSpoken && IsAttached() && window != nullptr) ShowName();
}

void ControlView::EnableDescendants(const Control& holder) {
  for (const Control* child : holder.Children()) {
    if (ControlView* view = tree.ViewOf(*child); view != nullptr && !view->IsAsleep()) view->ShowEnabled();
    EnableDescendants(*child);
  }
}

void ControlView::ChildAdded(Control& child) { tree.Add(child, this); }
void ControlView::ChildRemoved(Control& child) { tree.Remove(child); }

RECT ControlView::Bounds() const { return ToRect(tree.Scaling().ToDevice(BoundsOf(*model))); }

void ControlView::ShowBounds() {
  const RECT place = Place();
  SetWindowPos(window, nullptr, place.left, place.top, WidthOf(place), HeightOf(place), SWP_NOZORDER | SWP_NOACTIVATE);
  if (IsAttached()) Fit();
}

void ControlView::Rescale() {
  if (window == nullptr) return;
  SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(tree.Font()), FALSE);
  if (container != nullptr) ShowBounds();
  InvalidateRect(window, nullptr, TRUE);
}

// Gives the focus to the form's window, which handles keys.
void ControlView::GiveKeyboardToForm() const {
  if (const ControlView* form = tree.ViewOf(tree.Root())) SetFocus(form->Handle());
}

// Hides the window without losing keys or drags: the system would move the focus of a hidden window to its parent,
// where keys have no use, and a drag in it would go on unseen.
void ControlView::ShowVisibility() {
  if (model->Visible()) {
    ShowWindow(window, SW_SHOWNA);
    return;
  }
  CancelMouse(window);
  const HWND focus = GetFocus();
  if (focus == window || IsChild(window, focus) != FALSE) GiveKeyboardToForm();
  if (IsAttached() && !model->Visible()) ShowWindow(window, SW_HIDE);
}

void ControlView::ShowOrder() const {
  if (window == nullptr) return;
  const std::vector<Control*>& fellows = model->Container()->Children();
  HWND front = HWND_TOP;
  for (auto fellow = std::ranges::find(fellows, model); fellow != fellows.end(); ++fellow) {
    const ControlView* const view = tree.ViewOf(**fellow);
    if (view == nullptr || view == this || view->window == nullptr) continue;
    front = view->window;
    break;
  }
  SetWindowPos(window, front, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void ControlView::ShowEnabled() {
  if (window == nullptr) return;
  // While the host allows no input, the controls must not look disabled: only the root's window is.
  const bool isEnabled = container == nullptr ? TakesInput() : IsEffectivelyEnabled();
  if ((IsWindowEnabled(window) != FALSE) != isEnabled) EnableWindow(window, isEnabled ? TRUE : FALSE);
}

bool ControlView::TakesInput() const { return tree.TakesInput() && IsEffectivelyEnabled(); }

bool ControlView::IsEffectivelyEnabled(const Control& model) {
  for (const Control* one = &model; one != nullptr; one = one->Container()) {
    if (!one->Enabled()) return false;
  }
  return true;
}

bool ControlView::WantsKey(WPARAM /*key*/) const { return false; }
void ControlView::OnCommand(WORD /*notification*/, WORD /*id*/) {}
LRESULT ControlView::OnNotify(NMHDR& /*header*/) { return 0; }
void ControlView::OnScroll(WORD /*code*/) {}
LRESULT ControlView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) { return Default(message, wParam, lParam); }

// With all that is known of it at once: each later change of a window takes several calls of the system.
HWND ControlView::CreateChild(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style,
                              DWORD extendedStyle) {
  const RECT place = Place();
  const DWORD disabled = IsEffectivelyEnabled() ? 0 : WS_DISABLED;
  return CreateWindowExW(extendedStyle, className, text, WS_CHILD | WS_CLIPSIBLINGS | style | disabled, place.left,
                         place.top, WidthOf(place), HeightOf(place), parent, nullptr, Module(), nullptr);
}

HWND ControlView::CreateSystemWindow(HWND parent, const wchar_t* className, DWORD style, DWORD extendedStyle) {
  const HWND created = CreateChild(parent, className, nullptr, style, extendedStyle);
  if (created != nullptr) SendMessageW(created, WM_SETFONT, reinterpret_cast<WPARAM>(tree.Font()), FALSE);
  return created;
}

HWND ControlView::CreateOwnWindow(HWND parent) {
  told = std::make_unique<AccessibleItem>(AccessibleOf(*model));
  return CreateChild(parent, OwnWindowClass::Name, ToWide(told->name).c_str(), WS_CLIPCHILDREN, WS_EX_NOPARENTNOTIFY);
}

LRESULT ControlView::Default(UINT message, WPARAM wParam, LPARAM lParam) {
  if (window == nullptr) return 0;
  return isOwnClass ? DefWindowProcW(window, message, wParam, lParam) : hook.Default(message, wParam, lParam);
}

bool ControlView::SetPointerOf(const Control& shown) const {
  const bool isBusy = WaitPointer::IsShown() || tree.Root().Pointer() == MousePointer::Hourglass;
  const HCURSOR cursor =
      tree.Pictures().CursorOf(isBusy ? MousePointer::Hourglass : shown.Pointer(), shown.PointerIcon());
  if (cursor != nullptr) SetCursor(cursor);
  return cursor != nullptr;
}

void ControlView::FocusCame() {
  tree.NoteKeys();
  // A host restores the focus to the window that had it before, which may be hidden by now.
  if (model->Visible() || container == nullptr)
    model->ReceiveFocus();
  else
    GiveKeyboardToForm();
}

void ControlView::FocusWent(HWND to) {
  tree.NoteKeys();
  // The focus went to an edit field inside this window, which belongs to it.
  if (IsChild(window, to) != FALSE && tree.ViewOf(to) == nullptr) return;
  // A dialog or another application takes the focus only for a while: the active control stays the same.
  const bool staysInWindow = to != nullptr && GetAncestor(to, GA_ROOT) == GetAncestor(window, GA_ROOT);
  if (staysInWindow || IsDropDown()) model->LoseFocus();
  // But a drag ends when its window loses the activation.
  if (!staysInWindow && IsAttached()) CancelMouse(tree.Window());
}

void ControlView::CloseDropDown() const {
  Control* const active = tree.Root().ActiveControl();
  const ControlView* const open = active == nullptr ? nullptr : tree.ViewOf(*active);
  if (open != nullptr && open != this && open->IsDropDown()) active->LoseFocus();
}

LRESULT ControlView::ReceiveHooked(void* self, UINT message, WPARAM wParam, LPARAM lParam) {
  return static_cast<ControlView*>(self)->Receive(message, wParam, lParam);
}

// A tip that cannot be made must not cost the message.
void ControlView::TellToolTips(UINT message, WPARAM wParam, LPARAM lParam) {
  Guard([&] {
    if (!hasToolTip) hasToolTip = IsAttached() && container != nullptr && tree.AddToolTip(window, *model);
    if (hasToolTip) tree.TellToolTips(window, message, wParam, lParam);
  });
}

LRESULT ControlView::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) TellToolTips(message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    Unhook();
    accessibleWindow.Disconnect();
    tree.ForgetWindow(window);
    const LRESULT result = Default(message, wParam, lParam);
    window = nullptr;
    if (container == nullptr) tree.Close();  // the host destroyed its window and this one with it
    return result;
  }
  if (!IsAttached()) return Default(message, wParam, lParam);
  const bool isInput = IsInput(message);
  // Input may still come if a disabled window kept the focus.
  if (isInput && !TakesInput()) return DefWindowProcW(window, message, wParam, lParam);
  const bool isAct = isInput && message != WM_MOUSEMOVE;
  const auto held = isAct ? tree.Hold() : nullptr;
  const ViewTree::Message underWay(tree);
  if (isAct && IsPress(message)) CloseDropDown();
  if (isAct && tree.TakeClaimedTab(message, wParam)) return 0;
  return IsAttached() ? Handle(message, wParam, lParam) : Default(message, wParam, lParam);
}

LRESULT ControlView::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      if (ControlView* sender = tree.ViewOf(reinterpret_cast<HWND>(lParam))) {
        sender->OnCommand(HIWORD(wParam), LOWORD(wParam));
        return 0;
      }
      break;
    case WM_HSCROLL:
    case WM_VSCROLL:
      if (ControlView* sender = tree.ViewOf(reinterpret_cast<HWND>(lParam))) {
        sender->OnScroll(LOWORD(wParam));
        return 0;
      }
      break;
    case WM_NOTIFY: {
      NMHDR& header = *reinterpret_cast<NMHDR*>(lParam);
      if (ControlView* sender = tree.ViewOf(header.hwndFrom)) return sender->OnNotify(header);
      break;
    }
    case WM_SETCURSOR:
      if (reinterpret_cast<HWND>(wParam) == window && LOWORD(lParam) == HTCLIENT && SetPointerOf(*model)) return TRUE;
      break;
    case WM_GETDLGCODE: {
      // For a host that calls IsDialogMessage.
      const auto* const asked = reinterpret_cast<const MSG*>(lParam);
      const bool isWanted =
          asked != nullptr && ((asked->message == WM_KEYDOWN && WantsKey(asked->wParam)) || tree.ClaimsTab(*asked));
      return OnMessage(message, wParam, lParam) | (isWanted ? DLGC_WANTMESSAGE : 0);
    }
    case WM_GETOBJECT:
      if (const LRESULT answer = accessibleWindow.Answer(window, *this, wParam, lParam); answer != 0) return answer;
      break;
    case WM_SETFOCUS: {
      const LRESULT result = OnMessage(message, wParam, lParam);
      if (IsAttached()) FocusCame();
      if (IsAttached() && container == nullptr) tree.EnterByTab(reinterpret_cast<HWND>(wParam));
      return result;
    }
    case WM_KILLFOCUS: {
      const LRESULT result = OnMessage(message, wParam, lParam);
      if (IsAttached()) FocusWent(reinterpret_cast<HWND>(wParam));
      return result;
    }
    default:
      break;
  }
  return OnMessage(message, wParam, lParam);
}

}  // namespace kw::windows
