#pragma once

#include <windows.h>

#include <string>

#include "components/base/Font.h"
#include "components/platform/Desktop.h"
#include "drawing/TextRenderer.h"
#include "windows/base/Gdi.h"

namespace kw::windows {

// A layer's font, for pixels of 96 to the inch. The caller owns it. If the name is not installed, the system takes its
// nearest font.
HFONT CreateLayerFont(const Font& font);

// The extent of a text as GdiTextRenderer draws it at that scale, in model pixels. It is measured at that scale,
// because the letters of a larger font do not grow exactly with it.
TextExtent MeasureText(const std::string& text, const Font& font, std::int32_t widest, const Scale& scale);

// Renders texts with the system's fonts. GDI has no alpha, so the text is drawn white on black, and its brightness is
// the coverage.
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
  // Cached, because consecutive texts mostly share a font.
  Font font;
  HFONT handle = nullptr;
};

}  // namespace kw::windows
