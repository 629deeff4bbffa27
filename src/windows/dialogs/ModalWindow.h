#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

#include "components/controls/DialogForm.h"
#include "windows/editor/EditorWindow.h"

namespace kw::windows {

// The window of a dialog form: a caption with a close box, and real controls for what the form holds. Tab goes round
// the controls, Alt and a letter chooses the button whose caption marks that letter.
class ModalWindow {
public:
  // Not yet shown, in the middle of the window `above`, which may be null. Throws RunTimeError (OutOfMemory) where the
  // system gives no window.
  ModalWindow(DialogForm& shown, HWND above);
  ModalWindow(const ModalWindow&) = delete;
  ModalWindow& operator=(const ModalWindow&) = delete;

  // Shows it, with the owner disabled, until the form is visible no more. When the window is destroyed or the thread
  // is to end, the form is closed as by its close box.
  void Run();

private:
  struct Destroy {
    void operator()(HWND window) const { DestroyWindow(window); }
  };

  static LRESULT CALLBACK Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                   DWORD_PTR self);
  void Loop();
  // Whether the message was for the dialog as a whole; then it is done with.
  bool IsTaken(MSG& message);
  void TakeTyping(HWND field) const;
  void MoveFocus(MSG& tab);
  bool PressMnemonic(wchar_t letter) const;

  DialogForm& form;
  HWND owner;
  std::unique_ptr<std::remove_pointer_t<HWND>, Destroy> window;  // goes also where the content cannot be made
  HWND focus = nullptr;                                          // had the keyboard when another window became active
  std::unique_ptr<EditorWindow> content;
};

}  // namespace kw::windows
