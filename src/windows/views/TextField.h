#pragma once

#include <windows.h>

#include "components/controls/TransparentPicture.h"
#include "drawing/Scale.h"
#include "windows/views/NamedWindow.h"

namespace kw::windows {

// The edit field for typing a layer's text, over the layer: a system control, with caret, selection, input methods and
// clipboard. The layer's caption follows at once. Escape or the loss of the focus ends the typing.
class TextField {
public:
  // Opens over the layer and takes the focus. `shownOn` is the window that shows the layer, at that scale.
  TextField(HWND shownOn, TransparentPicture& typedInto, const Scale& shownAt);
  TextField(const TextField&) = delete;
  TextField& operator=(const TextField&) = delete;
  ~TextField();

  // Follows the layer's bounds, font and colours.
  void Show();
  void Rescale(const Scale& newScale);

  // Whether the window is such a field and uses the key to move in the text, change it or end the typing.
  static bool WantsKey(HWND window, WPARAM key);

  // For the canvas: takes the text of one of these fields into its layer; ignores other windows.
  static void TakeTextOf(HWND field);
  // For the canvas: sets a field's colours and returns its background brush.
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
  NamedWindow named;
  HFONT font = nullptr;
  bool isFilling = false;
};

}  // namespace kw::windows
