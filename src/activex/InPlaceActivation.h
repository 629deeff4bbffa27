#pragma once

#include <windows.h>

#include <oleidl.h>
#include <wrl/client.h>

#include <memory>

#include "windows/editor/EditorWindow.h"

namespace kw::activex {

class EditorCore;

// The control's state in its container's window: without a window, in place active, or user-interface active.
//
// A container may take the states down in any order, destroy its own window first, or forget to take them down.
class InPlaceActivation {
public:
  explicit InPlaceActivation(EditorCore& owner) : core(owner) {}
  InPlaceActivation(const InPlaceActivation&) = delete;
  InPlaceActivation& operator=(const InPlaceActivation&) = delete;
  ~InPlaceActivation() { Abandon(); }

  bool IsActive() const { return state != State::Inactive; }
  bool IsUiActive() const { return state == State::UiActive; }
  // Null without a window.
  HWND Window() const;
  windows::EditorWindow* Content() const { return content.get(); }
  // Whether the control, and not the container's default or cancel button, has Enter and Escape, as CTRLINFO says it.
  DWORD EatenKeys() const;

  // Gets the window, or shows it again. E_FAIL when the site refuses or there is none.
  HRESULT Activate(IOleClientSite* site);
  // Takes the focus and the container's menu and tool space too.
  HRESULT ActivateUi(IOleClientSite* site);
  HRESULT Hide();
  HRESULT DeactivateUi();
  HRESULT Deactivate();
  // The window goes and nobody is told: the control is being destroyed.
  void Abandon();

  // The container may ask its controls to ignore the user for a while.
  void FollowUiDead();

  HRESULT SetRects(const RECT& position, const RECT& clip);

  // While one of these lives the container's modeless windows are disabled, for a dialog of the control.
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
  enum class State : unsigned char { Inactive, Active, UiActive };

  static LRESULT CALLBACK ContentProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                           DWORD_PTR self);
  HRESULT MakeContent();
  void CloseContent();
  void ShowAt(SIZE size);
  void TellFocus(BOOL hasFocus);
  void ReleaseSites();
  // Tells the container when the answer of EatenKeys is another one than it was told last.
  void TellEatenKeys();

  EditorCore& core;
  State state = State::Inactive;
  DWORD toldKeys = 0;
  std::unique_ptr<windows::EditorWindow> content;
  Microsoft::WRL::ComPtr<IOleInPlaceSite> inPlaceSite;
  Microsoft::WRL::ComPtr<IOleInPlaceFrame> frame;
  Microsoft::WRL::ComPtr<IOleInPlaceUIWindow> document;
};

}  // namespace kw::activex
