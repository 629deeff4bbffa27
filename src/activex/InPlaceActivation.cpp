#include "activex/InPlaceActivation.h"

#include <olectl.h>

#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "activex/ComBoundary.h"
#include "activex/EditorCore.h"
#include "components/base/RaisedFlag.h"
#include "windows/base/Guard.h"
#include "windows/base/ScreenScale.h"

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;

// Tells a window of the container, if there is one, that the control is no longer its active object.
template <class Window>
void LetGo(ComPtr<Window> window) {
  if (window != nullptr) window->SetActiveObject(nullptr, nullptr);
}

SIZE SizeOf(const RECT& rectangle) { return {rectangle.right - rectangle.left, rectangle.bottom - rectangle.top}; }

}  // namespace

HWND InPlaceActivation::Window() const { return content == nullptr ? nullptr : content->Handle(); }

LRESULT InPlaceActivation::ReceiveOfContent(void* self, UINT message, WPARAM wParam, LPARAM lParam) {
  constexpr UINT ScreenScaleChanged = 0x02E3;  // WM_DPICHANGED_AFTERPARENT; older headers lack it
  auto& activation = *static_cast<InPlaceActivation*>(self);
  HWND const window = activation.Window();
  std::optional<Lifetime::Outgoing> outgoing;
  if (message == WM_MOUSEACTIVATE || message == WM_SETFOCUS || message == ScreenScaleChanged)
    outgoing.emplace(activation.core.Life());
  // A click anywhere in the control or its children makes it the container's active object.
  if (message == WM_MOUSEACTIVATE) windows::Guard([&] { activation.UserCame(); });
  // Meanwhile the container may have deactivated the control, and activated it again with another window.
  if (activation.Window() != window) return DefWindowProcW(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) activation.contentHook.Unhook();
  const LRESULT result = activation.contentHook.Default(message, wParam, lParam);
  // Within the control it moves, and says nothing of the user.
  const auto cameFromOutside = [&] { return IsChild(window, reinterpret_cast<HWND>(wParam)) == FALSE; };
  if (message == WM_SETFOCUS && cameFromOutside() && activation.HasFocus())
    windows::Guard([&] { activation.UserCame(); });
  if (message == ScreenScaleChanged && activation.Window() == window) {
    RECT client = {};
    GetClientRect(window, &client);
    windows::Guard([&] { activation.ShowAt(SizeOf(client)); });
  }
  return result;
}

HRESULT InPlaceActivation::Activate(IOleClientSite* site) {
  // A container gets the focus when the control leaves, and some give it back.
  if (state == State::Leaving || isMoving) return E_FAIL;
  LeaveDestroyedWindow();
  if (IsActive()) {
    if (content != nullptr) content->Show(true);
    return S_OK;
  }
  const ComPtr<IOleClientSite> client(site != nullptr ? site : core.Site().Get());
  ComPtr<IOleInPlaceSite> asked;
  if (client == nullptr || FAILED(client.As(&asked))) return E_FAIL;
  if (asked->CanInPlaceActivate() != S_OK) return E_FAIL;
  HRESULT result = asked->OnInPlaceActivate();
  if (FAILED(result)) return result;
  if (IsActive()) return S_OK;  // the container activated it meanwhile
  inPlaceSite = asked;
  state = State::Active;
  result = AtComBoundary(core.Life(), [this] { return MakeContent(); });
  if (FAILED(result)) {
    if (IsActiveAt(asked)) Deactivate();
    return result;
  }
  client->ShowObject();
  return S_OK;
}

HRESULT InPlaceActivation::MakeContent() {
  HWND parent = nullptr;
  RECT position = {};
  RECT clip = {};
  OLEINPLACEFRAMEINFO frameInfo = {};
  frameInfo.cb = sizeof frameInfo;
  const ComPtr<IOleInPlaceSite> asked = inPlaceSite;
  HRESULT result = asked->GetWindow(&parent);
  if (FAILED(result)) return result;
  ComPtr<IOleInPlaceFrame> givenFrame;
  ComPtr<IOleInPlaceUIWindow> givenDocument;
  result = asked->GetWindowContext(&givenFrame, &givenDocument, &position, &clip, &frameInfo);
  if (FAILED(result)) return result;
  // The container may have deactivated the control meanwhile, and activated it again, here or elsewhere.
  if (!IsActiveAt(asked) || IsWindow(parent) == FALSE) return E_FAIL;
  if (content != nullptr) return S_OK;
  frame = givenFrame;
  document = givenDocument;
  core.SetWindowSize(SizeOf(position), windows::ScaleOf(parent));
  if (!IsActiveAt(asked)) return E_FAIL;
  auto made = std::make_unique<windows::EditorWindow>(core.Editor().Root(), parent, position);
  if (!IsActiveAt(asked)) return E_FAIL;
  content = std::move(made);
  content->HoldWith([this] { return std::make_shared<Lifetime::Outgoing>(core.Life()); });
  content->OnKeys([this] {
    const Lifetime::Outgoing outgoing(core.Life());
    FollowFocus();
    TellEatenKeys();
  });
  contentHook.Hook(Window(), &ReceiveOfContent, this);
  SetRects(position, clip);
  FollowUiDead();
  if (content != nullptr) content->Show(true);
  return S_OK;
}

HRESULT InPlaceActivation::ActivateUi(IOleClientSite* site, const MSG* message) {
  LeaveDestroyedWindow();
  if (state == State::UiLeaving) return E_FAIL;
  if (IsUiActive()) {
    if (message != nullptr) TakeFocus(message);
    return S_OK;
  }
  const HRESULT result = Activate(site);
  if (FAILED(result)) return result;
  const ComPtr<IOleInPlaceSite> asked = inPlaceSite;
  if (asked == nullptr) return E_FAIL;
  const HRESULT allowed = asked->OnUIActivate();
  if (FAILED(allowed)) return allowed;
  // The container may have deactivated the control meanwhile, moved it, or made it its active object by another call.
  if (!IsActiveAt(asked)) return E_FAIL;
  if (IsUiActive()) return S_OK;
  state = State::UiActive;
  endOfUi = EndOfUi::Focus;
  ComPtr<IOleInPlaceActiveObject> active;
  core.Life().Unknown().QueryInterface(IID_PPV_ARGS(&active));
  // Whoever is told may deactivate the control.
  const auto isStill = [&] { return IsUiActive() && IsActiveAt(asked); };
  const std::array<ComPtr<IOleInPlaceUIWindow>, 2> told = {frame, document};
  for (const ComPtr<IOleInPlaceUIWindow>& window : told) {
    if (window == nullptr) continue;
    window->SetActiveObject(active.Get(), nullptr);
    if (!isStill()) return E_FAIL;
    window->SetBorderSpace(nullptr);  // the control needs no border space
    if (!isStill()) return E_FAIL;
  }
  TakeFocus(message);
  if (!isStill()) return E_FAIL;
  TellFocus(TRUE);
  return S_OK;
}

// The container may have destroyed the window alone.
void InPlaceActivation::LeaveDestroyedWindow() {
  if (IsActive() && content != nullptr && Window() == nullptr) Deactivate();
}

bool InPlaceActivation::HasFocus() const {
  const HWND focus = GetFocus();
  return Window() != nullptr && focus != nullptr && (focus == Window() || IsChild(Window(), focus) != FALSE);
}

// A container that got the Tab key hands it over: the focus goes to the first stop or, with Shift, to the last one.
void InPlaceActivation::TakeFocus(const MSG* message) {
  if (Window() == nullptr) return;  // the container destroyed it with its own
  if (!HasFocus()) {
    const bool isByTab = message != nullptr && message->message == WM_KEYDOWN && message->wParam == VK_TAB;
    if (!isByTab || !content->EnterByTab(GetKeyState(VK_SHIFT) < 0)) SetFocus(Window());
  }
  hadFocus = HasFocus();
}

void InPlaceActivation::UserCame() {
  if (!core.Editor().IsDesigned()) ActivateUi(nullptr);
}

// The focus may come without a click: by the Tab key, or because the container restores it. If it stays in the control
// after the container has deactivated it, that is no reason to become active again.
void InPlaceActivation::FollowFocus() {
  const bool hasFocus = HasFocus();
  if (!std::exchange(hadFocus, hasFocus) && hasFocus) UserCame();
}

// Containers track which control has the focus, for their default button and their own focus events.
void InPlaceActivation::TellFocus(BOOL hasFocus) {
  if (const auto site = core.Site().As<IOleControlSite>()) site->OnFocus(hasFocus);
}

DWORD InPlaceActivation::EatenKeys() const {
  if (content == nullptr) return 0;
  return (content->WantsKey(VK_RETURN) ? DWORD{CTRLINFO_EATS_RETURN} : 0) |
         (content->WantsKey(VK_ESCAPE) ? DWORD{CTRLINFO_EATS_ESCAPE} : 0);
}

void InPlaceActivation::TellEatenKeys() {
  const DWORD now = EatenKeys();
  if (std::exchange(toldKeys, now) == now) return;
  if (const auto site = core.Site().As<IOleControlSite>()) site->OnControlInfoChanged();
}

HRESULT InPlaceActivation::Hide() {
  const HWND window = Window();
  DeactivateUi();
  if (content != nullptr && Window() == window) content->Show(false);
  return S_OK;
}

HRESULT InPlaceActivation::DeactivateUi() {
  if (!IsUiActive()) return S_OK;
  state = State::UiLeaving;
  TellUiIsOver();
  return S_OK;
}

void InPlaceActivation::TellUiIsOver() {
  for (;;) {
    switch (endOfUi) {
      case EndOfUi::Focus:
        endOfUi = EndOfUi::Document;
        TellFocus(FALSE);
        break;
      case EndOfUi::Document:
        endOfUi = EndOfUi::Frame;
        LetGo(document);
        break;
      case EndOfUi::Frame:
        endOfUi = EndOfUi::Site;
        LetGo(frame);
        break;
      case EndOfUi::Site: {
        endOfUi = EndOfUi::Told;
        // Within this call the container may make the control its active object again.
        if (state == State::UiLeaving) state = State::Active;
        const ComPtr<IOleInPlaceSite> asked = inPlaceSite;
        if (asked != nullptr) asked->OnUIDeactivate(FALSE);
        return;
      }
      case EndOfUi::Told:
        return;
    }
  }
}

HRESULT InPlaceActivation::Deactivate() {
  if (!IsActive()) return S_OK;
  state = State::Leaving;
  TellUiIsOver();
  CloseContent();
  const ComPtr<IOleInPlaceSite> asked = inPlaceSite;
  ReleaseSites();
  if (asked != nullptr) asked->OnInPlaceDeactivate();
  TellEatenKeys();
  return S_OK;
}

void InPlaceActivation::DeactivateAnd(const std::function<void()>& move) {
  const RaisedFlag moving(isMoving);
  Deactivate();
  move();
}

void InPlaceActivation::Abandon() {
  CloseContent();
  ReleaseSites();
}

void InPlaceActivation::CloseContent() {
  state = State::Leaving;
  if (content != nullptr) {
    contentHook.Unhook();
    content->Close();
    content.reset();
  }
  state = State::Inactive;
}

void InPlaceActivation::ReleaseSites() {
  inPlaceSite.Reset();
  frame.Reset();
  document.Reset();
}

void InPlaceActivation::FollowUiDead() {
  if (Window() == nullptr) return;
  const bool isDead = core.Site().AmbientBoolean(DISPID_AMBIENT_UIDEAD).value_or(false);
  if (content != nullptr) content->AllowInput(!isDead && !core.Editor().IsDesigned());
}

HRESULT InPlaceActivation::SetRects(const RECT& position, const RECT& clip) {
  const HWND window = Window();
  if (window == nullptr) return E_UNEXPECTED;  // not created yet, or destroyed with the container's window
  RECT visible = {};
  IntersectRect(&visible, &position, &clip);
  HRGN region = nullptr;
  if (EqualRect(&visible, &position) == 0) {
    OffsetRect(&visible, -position.left, -position.top);
    region = CreateRectRgnIndirect(&visible);
  }
  // A container that hears of the window's messages may deactivate the control in them.
  SetWindowRgn(window, region, TRUE);  // the system owns the region now
  if (Window() == window) content->Resize(position);
  if (Window() == window) ShowAt(SizeOf(position));
  return S_OK;
}

// The container may have moved its window to a screen with another DPI.
void InPlaceActivation::ShowAt(SIZE size) {
  const HWND window = Window();
  const Scale scale = windows::ScaleOf(GetParent(window));
  content->Rescale(scale);
  if (Window() == window) core.SetWindowSize(size, scale);
}

InPlaceActivation::Modal::Modal(const InPlaceActivation& activation) : frame(activation.frame) {
  if (frame != nullptr) frame->EnableModeless(FALSE);
}

InPlaceActivation::Modal::~Modal() {
  if (frame != nullptr) frame->EnableModeless(TRUE);
}

}  // namespace kw::activex
