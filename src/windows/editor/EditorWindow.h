#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>

#include "components/controls/UserControl.h"
#include "drawing/Scale.h"

namespace kw::windows {

class ViewTree;

// The window of the editor's form: it has a real control for each model below the root that has a view, including
// models that are loaded later, until they are unloaded.
//
// The root must outlive the window. The window may be closed or destroyed at any time, even by an event handler of a
// model: the running code then returns without touching the models again.
class EditorWindow {
public:
  // Creates a hidden child of `parent` at `position` (client pixels of the parent). Without a scale it uses the
  // parent's. Throws RunTimeError (OutOfMemory) if the system cannot create it.
  EditorWindow(UserControl& root, HWND parent, const RECT& position, std::optional<Scale> scale = {});
  EditorWindow(const EditorWindow&) = delete;
  EditorWindow& operator=(const EditorWindow&) = delete;
  ~EditorWindow();

  // Null after the window was closed, or destroyed by its parent.
  HWND Handle() const;
  // Shows the form at another scale. The sizes of window and model do not change.
  void Rescale(const Scale& scale);
  // Moves the window only; the caller sets the model's size.
  void Resize(const RECT& position) const;
  void Show(bool isVisible) const;
  // Whether the host allows the user's input. A disabled editor takes no input in any case.
  void AllowInput(bool isAllowed);
  // Calls `hold` before the system handles the user's input, and keeps the result until it is done: the system may run
  // a message loop of its own, for a menu, a list, a scroll bar or a calendar.
  void HoldWith(std::function<std::shared_ptr<void>()> hold);
  // Destroys the window; the models stay. A second call does nothing.
  void Close();

  // Offers a key message of the thread's queue to the focused control before the host's accelerators: keys that the
  // control uses, and Tab. True if it was handled.
  bool TranslateAccelerator(MSG& message);
  // Moves the focus from outside to the first tab stop, or to the last one. False if there is none.
  bool EnterByTab(bool isBackward);
  // Whether the focus is in this window and the key has a use there.
  bool WantsKey(WPARAM key) const;
  // The message loop calls the listener if the result of WantsKey may have changed.
  void OnKeys(std::function<void()> listener);

  // Whether a menu of this window is up, or the user presses or drags something in it.
  bool IsUserAtWork() const;

  // Draws the whole form into `bounds` of any device context, without a window. In larger bounds the form is drawn at a
  // larger scale, up to 3, instead of being stretched.
  static void Draw(UserControl& root, HDC context, const RECT& bounds);

private:
  std::shared_ptr<ViewTree> tree;
};

}  // namespace kw::windows
