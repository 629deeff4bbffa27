#pragma once

#include <cstdint>

#include "components/engine/KWPicEd.h"
#include "components/platform/Desktop.h"
#include "document/DocumentProcedure.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// Brackets every operation of the picture engine: afterwards the result goes to the current layer through the scratch
// bitmap.
class CommandBracket : private EditorContext {
public:
  // Everything passed in must outlive the bracket.
  explicit CommandBracket(const EditorContext& context);

  void DoPreCommandProcess();
  void DoPostCommandProcess();

  // The depth that results are written back in.
  std::int16_t BitsPerPixel() const { return m_BitsPerPixel; }
  void SetBitsPerPixel(std::int16_t value) { m_BitsPerPixel = value; }

private:
  std::int16_t m_BitsPerPixel = 0;
};

}  // namespace kw
