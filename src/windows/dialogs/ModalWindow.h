#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

#include "components/controls/DialogForm.h"
#include "windows/editor/EditorWindow.h"

namespace kw::windows {

// The window of a dialog form: a caption with a close box, and a real control for each of the form's. Tab cycles
// through the controls; Alt and a mnemonic chooses its control.
class ModalWindow {
public:
  // Creates the window hidden, centred on its owner `above`, which may be null. Throws RunTimeError (OutOfMemory) if
  // the system cannot create it.
  ModalWindow(DialogForm& shown, HWND above);
  ModalWindow(const ModalWindow&) = delete;
  ModalWindow& operator=(const ModalWindow&) = delete;

  // Shows the window, with its owner disabled, until the form is hidden. If the window is destroyed or the thread is to
  // end, the form is closed as by its close box.
  void Run();

private:
  struct Destroy {
    void operator()(HWND window) const { DestroyWindow(window); }
  };

  static LRESULT CALLBACK Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                   DWORD_PTR self);
  void Loop();
  // Handles a message that is for the dialog as a whole; true if it was one.
  bool IsTaken(MSG& message);
  void TakeTyping(HWND field) const;
  void MoveFocus(MSG& tab);

  DialogForm& form;
  HWND owner;
  std::unique_ptr<std::remove_pointer_t<HWND>, Destroy> window;  // destroyed even if the content cannot be created
  HWND focus = nullptr;                                          // had the focus when another window became active
  std::unique_ptr<EditorWindow> content;
};

}  // namespace kw::windows
