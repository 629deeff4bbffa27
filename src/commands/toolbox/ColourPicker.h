#pragma once

#include <cstdint>
#include <string>

#include "commands/toolbox/ColoursAndLines.h"
#include "components/platform/Desktop.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// The swatches, the palette that drops open from them, and the colour dialog.
class ColourPicker : private EditorContext {
public:
  ColourPicker(const EditorContext& context, ColoursAndLines& colours);

  // The caption that names a colour. Its numbers are not those of the colour's parts; users rely on them as they are.
  static std::string ReadOut(Colour colour);

private:
  void SampleForeGroundColor_Click();
  void SampleBackGroundColor_Click();
  void SampleForeGroundColor_DblClick();
  void SampleBackGroundColor_DblClick();
  void picColors_GotFocus();
  void picColors_LostFocus();
  // Positions on the palette, in twips.
  void picColors_MouseMove(std::int16_t button, float x, float y);
  void kwrpColors_MouseUp(std::int16_t button, float x, float y);

  void OpenPalette(const char* procedure, bool isFore);
  // The palette's colour at a position that is clamped to it.
  Colour ColourAt(float x, float y) const;
  void LetPickedColour(Colour colour);

  ColoursAndLines& coloursAndLines;
  bool m_IsPickingForeColor = false;
};

}  // namespace kw
