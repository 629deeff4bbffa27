#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>

#include "components/controls/Control.h"
#include "windows/base/WindowHook.h"
#include "windows/views/AccessibleSource.h"

namespace kw {
struct AccessibleItem;
}  // namespace kw

namespace kw::windows {

class Images;
class ViewTree;

// The view of a model, with a window of its own or drawn in the window of its container's view.
//
// A detached view must not use its model. Therefore a view checks IsAttached after every call that may have run code of
// the editor.
class ControlView : public View, protected AccessibleSource {
public:
  ControlView(ViewTree& shared, Control& shown, ControlView* holder);
  ~ControlView() override;

  bool IsAttached() const { return model != nullptr; }
  Control& Model() const { return *model; }
  // Null for a view that is drawn in its container's window.
  HWND Handle() const { return window; }
  ControlView* Container() const { return container; }

  // Creates the window, if the view has one, behind its fellows, and shows the model's present state.
  void Open();
  // Destroys the window and is as before Open().
  void Unopen();
  // A view with a window is opened when its control is shown first: until then it has no window, and what the control
  // holds has no views.
  bool IsAsleep() const { return !isOpened; }
  virtual bool SleepsWhileHidden() const { return true; }
  // Lays the window behind those of the controls in front of its own.
  void ShowOrder() const;
  // Called when all views that are made together are open. From here on the view gets the messages of a system's
  // window: each of them asks Wine's server twice, so the many that fill the windows do without.
  virtual void Complete();
  // Called before the model leaves its container or the window goes. The model may be partly destroyed: only members of
  // Control may be used.
  virtual void Leave() {}
  // Disconnects the model; the window stays, without effect, until Destroy.
  void Detach();
  void Destroy();

  void Changed(Aspect aspect) final;
  void ChildAdded(Control& child) final;
  void ChildRemoved(Control& child) final;

  // Called after the tree's scale, font or images have changed.
  virtual void Rescale();

  // Whether Tab stops at the control.
  virtual bool IsTabStop() const { return false; }
  // Whether the control is open only while it has the focus: a press elsewhere, a dialog or another program closes it.
  virtual bool IsDropDown() const { return false; }
  // Whether the control wants the key before the host's accelerators.
  virtual bool WantsKey(WPARAM key) const;

  // A notification of the control's window to its parent.
  virtual void OnCommand(WORD notification, WORD id);
  virtual LRESULT OnNotify(NMHDR& header);
  virtual void OnScroll(WORD code);
  // Handles a message to the view's window; by default its window class does.
  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

  // Whether the control and all its containers are enabled.
  static bool IsEffectivelyEnabled(const Control& model);
  bool IsEffectivelyEnabled() const { return IsEffectivelyEnabled(*model); }
  // Whether it is enabled and the host allows input.
  bool TakesInput() const;
  // The window's bounds in the container's window.
  RECT Bounds() const;

  // Links the tree's list of retired views.
  std::unique_ptr<ControlView> retiredBefore;

protected:
  // Creates the view's window, hidden and behind its fellows; null for a view without one.
  virtual HWND Create(HWND parent) = 0;
  // Shows a changed aspect of the model. ControlView handles geometry, order, visibility and enabling itself.
  virtual void Show(Aspect aspect) = 0;
  // The window's bounds in its parent: by default those of the control.
  virtual RECT Place() const { return Bounds(); }
  // Called when the window has got its place.
  virtual void Fit() {}
  virtual void ShowEnabled();

  AccessibleAnswer Whole() const override;
  bool HasSystemsParts() const override { return !isOwnClass; }
  void Do(LONG id) override;

  ViewTree& Shared() const { return tree; }
  // Creates a window of a system class, with the tree's font.
  HWND CreateSystemWindow(HWND parent, const wchar_t* className, DWORD style, DWORD extendedStyle = 0);
  // Creates a window of our own class.
  HWND CreateOwnWindow(HWND parent);
  // Whether the view's window is made and filled: what has not been shown needs no painting.
  bool IsFilled() const { return isFilled; }
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);
  // Sets the control's mouse pointer; false if it is the default one.
  bool SetPointerOf(const Control& shown) const;
  // The window got the focus, or loses it to the window `to`.
  void FocusCame();
  void FocusWent(HWND to);

private:
  friend class OwnWindowClass;

  static LRESULT ReceiveHooked(void* self, UINT message, WPARAM wParam, LPARAM lParam);
  // Starts or stops the window's messages coming to this view.
  void Hook();
  void Unhook();
  void TellToolTips(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  HWND CreateChild(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style, DWORD extendedStyle);
  void ShowBounds();
  void ShowVisibility();
  // Shows the accessible name as the window's text, and tells screen readers if name or value changed.
  void ShowName();
  void EnableDescendants(const Control& holder);
  void GiveKeyboardToForm() const;
  // Closes a control that is dropped down elsewhere: the user pressed on this view.
  void CloseDropDown() const;

  ViewTree& tree;
  Control* model;
  ControlView* container;
  HWND window = nullptr;
  WindowHook hook;  // if the window is of a class of the system
  bool isOwnClass = false;
  bool isOpened = false;
  bool isFilled = false;
  bool hasToolTip = false;
  AccessibleWindow accessibleWindow;
  std::unique_ptr<AccessibleItem> told;  // to screen readers
};

// ROLE_SYSTEM_...; 0 for Standard.
LONG SystemRoleOf(AccessibleRole role);

// The window class of views that paint themselves. It stores the view in the window, which is faster than a subclass,
// which the system looks up for each message.
class OwnWindowClass {
public:
  static constexpr const wchar_t* Name = L"KwEditorView";
  // Must be called before a window of it is created. A second call does nothing. Thread-safe.
  static void Register();
  // Called when the DLL is unloaded, because a class that outlives it would call into unmapped memory. Not earlier,
  // because the system refuses while a window of the class exists, as it still does during the window's last message.
  static void Unregister();
  static bool IsOf(HWND window);
  // A null view disconnects the window.
  static void SetView(HWND window, ControlView* view);

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
};

}  // namespace kw::windows
