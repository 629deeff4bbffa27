#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>

#include "components/controls/Control.h"

namespace kw::windows {

class Images;
class ViewTree;

// The view of one model. It shows the model in a window of its own, or on the window of the container's view.
//
// Once detached it has neither model nor window and does nothing any more; a view therefore looks again (IsAttached)
// after everything that may have run code of the editor.
class ControlView : public View {
public:
  ControlView(ViewTree& shared, Control& shown, ControlView* holder);
  ~ControlView() override;

  bool IsAttached() const { return model != nullptr; }
  Control& Model() const { return *model; }
  // Null for a view that draws on its container's window.
  HWND Handle() const { return window; }
  ControlView* Container() const { return container; }

  // Makes the window, if the view has one, and shows the model as it is.
  void Open();
  // The model leaves its container: the last moment at which its place in it is known. Of the model only what every
  // control has may still be used.
  virtual void Leave() {}
  // Lets go of the model; the window, if any, goes on without effect until Destroy.
  void Detach();
  void Destroy();

  void Changed(Aspect aspect) final;
  void ChildAdded(Control& child) final;
  void ChildRemoved(Control& child) final;

  // The tree's scale is another one, with another font and other pictures.
  virtual void Rescale();

  // A control that may get the focus from the keyboard.
  virtual bool IsTabStop() const { return false; }
  // Open only as long as it has the keyboard. A press elsewhere takes that away, and so do a dialog and another
  // program.
  virtual bool IsDropDown() const { return false; }
  // Keys that the control wants before the host's accelerators.
  virtual bool WantsKey(WPARAM key) const;

  // What the control's window told its parent.
  virtual void OnCommand(WORD notification, WORD id);
  virtual LRESULT OnNotify(NMHDR& header);
  virtual void OnScroll(WORD code);
  // A message to the view's own window. Unless a view handles it, the window's own class does.
  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

  // The control, what holds it and what holds that, all are enabled.
  static bool IsEffectivelyEnabled(const Control& model);
  bool IsEffectivelyEnabled() const { return IsEffectivelyEnabled(*model); }
  // Enabled, and the host lets the user act.
  bool TakesInput() const;
  // The window's place in the container's window.
  RECT Bounds() const;

  // For the tree, of views that are kept aside.
  std::unique_ptr<ControlView> retiredBefore;

protected:
  // Makes the window of a view that has one; null for others.
  virtual HWND Create(HWND parent) = 0;
  // Shows what one of the model's aspects now is; those that every window has are done already.
  virtual void Show(Aspect aspect) = 0;
  virtual void ShowBounds();
  virtual void ShowEnabled();

  ViewTree& Shared() const { return tree; }
  // A window of a system class with the tree's font.
  HWND CreateSystemWindow(HWND parent, const wchar_t* className, DWORD style, DWORD extendedStyle = 0);
  // A window of our own class, whose messages come to OnMessage.
  HWND CreateOwnWindow(HWND parent, DWORD extendedStyle = 0);
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);
  // Sets the mouse pointer that the control wants; false for the default one.
  bool SetPointerOf(const Control& shown) const;
  // The window got the keyboard, or loses it to the window `to`.
  void FocusCame();
  void FocusWent(HWND to);

private:
  friend class OwnWindowClass;

  static LRESULT CALLBACK Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                   DWORD_PTR self);
  // Has the window's messages come to this view, or no longer.
  void Hook();
  void Unhook();
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void ShowOrder();
  void ShowVisibility();
  void EnableDescendants(const Control& holder);
  void GiveKeyboardToForm() const;
  // A press on this view closes what is dropped open elsewhere.
  void CloseDropDown() const;

  ViewTree& tree;
  Control* model;
  ControlView* container;
  HWND window = nullptr;
  bool isOwnClass = false;
};

// The window class of views that paint themselves. A window of it knows its view, which is quicker than a subclass,
// whose view is looked up at each message.
class OwnWindowClass {
public:
  static constexpr const wchar_t* Name = L"KwEditorView";
  // Before a window of it is made; does nothing a second time. Any thread may call it.
  static void Register();
  // When the DLL goes: a class that outlives it would call into memory that is no longer code. Not before, because the
  // system keeps a class that has a window, and the last message of a window comes while it is still there.
  static void Unregister();
  static bool IsOf(HWND window);
  // Null for none.
  static void SetView(HWND window, ControlView* view);

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
};

}  // namespace kw::windows
