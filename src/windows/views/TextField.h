#pragma once

#include <windows.h>

#include "components/controls/TransparentPicture.h"
#include "drawing/Scale.h"

namespace kw::windows {

// The field of the system in which a layer's text is typed, over the layer, with all that a field can do: caret,
// selection, input methods, clipboard. What is typed is the layer's caption at once. Escape ends the typing, and so
// does the loss of the keyboard.
class TextField {
public:
  // Opens over the layer with the keyboard on it. `shownOn` is the window on which the layer shows itself, at
  // that scale.
  TextField(HWND shownOn, TransparentPicture& typedInto, const Scale& shownAt);
  TextField(const TextField&) = delete;
  TextField& operator=(const TextField&) = delete;
  ~TextField();

  // Shows the layer's place, font and colours as they are now.
  void Show();
  void Rescale(const Scale& newScale);

  // Whether the window is such a field and uses that key: to move in the text, to change it or to end the typing.
  static bool WantsKey(HWND window, WPARAM key);

  // For the canvas: takes over what is typed in one of these fields; nothing for another window.
  static void TakeTextOf(HWND field);
  // For the canvas: sets a field's colours and returns the brush of its ground.
  static HBRUSH BackgroundOf(HWND field, HDC context);

private:
  static TextField* FieldOf(HWND window);
  static LRESULT CALLBACK Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                   DWORD_PTR self);
  static void Release(HWND window);
  void TakeText();

  HWND canvas;
  TransparentPicture* layer;
  Scale scale;
  HWND window;
  HFONT font = nullptr;
  bool isFilling = false;
};

}  // namespace kw::windows
