#pragma once

#include <windows.h>

#include <string>

#include "components/base/Font.h"
#include "components/platform/Desktop.h"
#include "drawing/TextRenderer.h"
#include "windows/base/Gdi.h"

namespace kw::windows {

// A font of a layer, for pixels of 96 to the inch, in which layers are placed. Owned by the caller. A name that is not
// installed gets the system's nearest font.
HFONT CreateLayerFont(const Font& font);

// The room that a text takes as GdiTextRenderer draws it at that scale, in the models' pixels: as large as it is drawn,
// because the letters of a larger font are not exactly as much wider.
TextExtent MeasureText(const std::string& text, const Font& font, std::int32_t widest, const Scale& scale);

// Draws texts with the system's fonts. GDI knows no alpha: the text is drawn white on black, and its brightness is the
// coverage.
class GdiTextRenderer final : public TextRenderer {
public:
  GdiTextRenderer() = default;
  GdiTextRenderer(const GdiTextRenderer&) = delete;
  GdiTextRenderer& operator=(const GdiTextRenderer&) = delete;
  ~GdiTextRenderer() override;

  void Render(const TextRun& run, const PixelRect& bounds, CoverageMask& mask) override;

private:
  HFONT FontFor(const Font& wanted);

  BackBuffer buffer;
  // Consecutive texts mostly share a font.
  Font font;
  HFONT handle = nullptr;
};

}  // namespace kw::windows
