#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>

#include "components/controls/UserControl.h"
#include "drawing/Scale.h"

namespace kw::windows {

class ViewTree;

// The window that shows the editor's form: a real control for each model below the root that has a look, also for those
// that are loaded later, until they are unloaded.
//
// The root must outlive the window. A window may be closed or destroyed at any time, also by code that an event of one
// of the models called: what is under way then ends without touching the models again.
class EditorWindow {
public:
  // A child of `parent` at `position` (client pixels of the parent), not yet shown. It is as large as the parent's
  // window is scaled, unless told otherwise. Throws RunTimeError (OutOfMemory) where the system gives no window.
  EditorWindow(UserControl& root, HWND parent, const RECT& position, std::optional<Scale> scale = {});
  EditorWindow(const EditorWindow&) = delete;
  EditorWindow& operator=(const EditorWindow&) = delete;
  ~EditorWindow();

  // Null once the window is closed or was destroyed by its parent.
  HWND Handle() const;
  // Shows the form at another scale. Window and model keep their sizes.
  void Rescale(const Scale& scale);
  // Moves the window only; the model gets its size from the one who knows why it changes.
  void Resize(const RECT& position) const;
  void Show(bool isVisible) const;
  // Whether the user may do anything, as far as the host is concerned; an editor that is disabled takes nothing anyway.
  void AllowInput(bool isAllowed);
  // What `hold` returns lives while the system handles the user's input, which may run a loop of messages of its own:
  // in a menu, a list, a scroll bar, a calendar.
  void HoldWith(std::function<std::shared_ptr<void>()> hold);
  // Destroys the window; the models live on without. Does nothing a second time.
  void Close();

  // Offers a key message of the thread's queue to the control that has the focus before the host's own accelerators:
  // what it has a use for, and Tab between the controls. True where it was handled.
  bool TranslateAccelerator(MSG& message);
  // Whether the keyboard is in this window and that key has a use there.
  bool WantsKey(WPARAM key) const;
  // The listener is called at the message loop when the answer may be another one.
  void OnKeys(std::function<void()> listener);

  // A menu of this window is up, or something is being dragged or pressed in it.
  bool IsUserAtWork() const;

  // Paints the whole form, as the models say, into `bounds` of any device context; needs no window. In larger bounds it
  // is drawn larger, up to three times, and not stretched.
  static void Draw(UserControl& root, HDC context, const RECT& bounds);

private:
  std::shared_ptr<ViewTree> tree;
};

}  // namespace kw::windows
