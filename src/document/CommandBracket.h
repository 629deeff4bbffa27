#pragma once

#include <cstdint>

#include "components/Desktop.h"
#include "components/PictureEngine.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// What stands around every operation of the picture engine: the result lands on the current layer by way of the
// scratch bitmap.
class CommandBracket {
public:
  CommandBracket(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, Layers& layerArray, Zoom& zoomFactor,
                 PictureEngine& engine);

  void DoPreCommandProcess();
  void DoPostCommandProcess();

  // The depth that results are written back in.
  std::int16_t BitsPerPixel() const { return m_BitsPerPixel; }
  void SetBitsPerPixel(std::int16_t value) { m_BitsPerPixel = value; }

private:
  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  Layers& layers;
  Zoom& zoom;
  PictureEngine& KWPic;
  std::int16_t m_BitsPerPixel = 0;
};

}  // namespace kw
