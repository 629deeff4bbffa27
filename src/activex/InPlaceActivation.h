#pragma once

#include <windows.h>

#include <oleidl.h>
#include <wrl/client.h>

#include <functional>
#include <memory>

#include "windows/base/WindowHook.h"
#include "windows/editor/EditorWindow.h"

namespace kw::activex {

class EditorCore;

// The control's in-place state: inactive (without a window), in-place active, or UI active.
//
// A container may leave the states in any order, destroy its own window first, or never deactivate the control.
class InPlaceActivation {
public:
  explicit InPlaceActivation(EditorCore& owner) : core(owner) {}
  InPlaceActivation(const InPlaceActivation&) = delete;
  InPlaceActivation& operator=(const InPlaceActivation&) = delete;
  ~InPlaceActivation() { Abandon(); }

  bool IsActive() const { return state >= State::Active; }
  bool IsUiActive() const { return state == State::UiActive; }
  // Null if there is no window.
  HWND Window() const;
  windows::EditorWindow* Content() const { return content.get(); }
  // The keys that the control wants before the container's default and cancel buttons: CTRLINFO_EATS_* flags.
  DWORD EatenKeys() const;

  // Creates the window, or shows it again. E_FAIL if there is no site, it refuses, or the control is being deactivated.
  HRESULT Activate(IOleClientSite* site);
  // Also takes the focus and becomes the container's active object. `message`, which may be null, is the container's
  // reason for it.
  HRESULT ActivateUi(IOleClientSite* site, const MSG* message = nullptr);
  HRESULT Hide();
  HRESULT DeactivateUi();
  HRESULT Deactivate();
  // The control goes to another site: nothing activates it until `move` has returned.
  void DeactivateAnd(const std::function<void()>& move);
  // Destroys the window without a call to the container: the control is being destroyed.
  void Abandon();

  // Reads the ambient UIDead property: if it is set, or in design mode, the control ignores the user's input.
  void FollowUiDead();

  HRESULT SetRects(const RECT& position, const RECT& clip);

  // Disables the container's modeless windows during its life, for a dialog of the control.
  class Modal {
  public:
    explicit Modal(const InPlaceActivation& activation);
    Modal(const Modal&) = delete;
    Modal& operator=(const Modal&) = delete;
    ~Modal();

  private:
    Microsoft::WRL::ComPtr<IOleInPlaceFrame> frame;
  };

private:
  // In UiLeaving, the container is being told that the control is no longer its active object.
  enum class State : unsigned char { Inactive, Leaving, Active, UiLeaving, UiActive };
  // Who is to be told next that the control is no longer the active object. Each is told once, also if the container
  // deactivates the control while it is told.
  enum class EndOfUi : unsigned char { Focus, Document, Frame, Site, Told };

  bool IsActiveAt(const Microsoft::WRL::ComPtr<IOleInPlaceSite>& site) const {
    return IsActive() && inPlaceSite.Get() == site.Get();
  }
  static LRESULT ReceiveOfContent(void* self, UINT message, WPARAM wParam, LPARAM lParam);
  HRESULT MakeContent();
  void CloseContent();
  void ShowAt(SIZE size);
  void LeaveDestroyedWindow();
  void TellUiIsOver();
  void TellFocus(BOOL hasFocus);
  void ReleaseSites();
  bool HasFocus() const;
  void TakeFocus(const MSG* message);
  // The user clicked into the control or moved the focus there.
  void UserCame();
  void FollowFocus();
  // Tells the container if EatenKeys has changed since it was told last.
  void TellEatenKeys();

  EditorCore& core;
  State state = State::Inactive;
  EndOfUi endOfUi = EndOfUi::Told;
  bool isMoving = false;
  DWORD toldKeys = 0;
  bool hadFocus = false;  // when FollowFocus looked last
  std::unique_ptr<windows::EditorWindow> content;
  windows::WindowHook contentHook;
  Microsoft::WRL::ComPtr<IOleInPlaceSite> inPlaceSite;
  Microsoft::WRL::ComPtr<IOleInPlaceFrame> frame;
  Microsoft::WRL::ComPtr<IOleInPlaceUIWindow> document;
};

}  // namespace kw::activex
