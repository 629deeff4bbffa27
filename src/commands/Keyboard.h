#pragma once

#include <cstdint>

#include "commands/Dispatcher.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/LayerKeys.h"
#include "layers/Layers.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// The keys of the canvas, which are also those that the container hands to the control itself.
class Keyboard : private EditorContext {
public:
  Keyboard(const EditorContext& context, Dispatcher& commands);

  void picCanvas_KeyDown(std::int16_t keyCode, std::int16_t shift);
  void picCanvas_KeyPress(std::int16_t keyAscii);
  void picCanvas_KeyUp(std::int16_t keyCode, std::int16_t shift);

  // Whether that key has a use now, wherever in the control the keyboard is; else it is the host's.
  bool IsInUse(std::int16_t keyCode, std::int16_t shift) const;
  // The same for the canvas, which has keys for layers.
  bool IsInUseOnCanvas(std::int16_t keyCode, std::int16_t shift) const;

  void mnuSelectAll_Click();
  void mnuMergeDown_Click();

private:
  // The command of a letter with the Ctrl key.
  struct Shortcut {
    char letter;
    void (*run)(Keyboard& keyboard);
  };
  // The shortcut of the character that a key press gave, null if there is none.
  static const Shortcut* ShortcutOf(std::int16_t character);

  void ClickIfEnabled(const char* key);

  Dispatcher& dispatcher;
  LayerKeys layerKeys;
  // Set to 0 by Escape, and read by nobody.
  std::int16_t m_EscapeFlag = 0;
};

}  // namespace kw
