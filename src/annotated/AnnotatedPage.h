#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "components/base/Bitmap.h"
#include "drawing/DisplayItem.h"
#include "drawing/TextRenderer.h"
#include "form/EditorForm.h"
#include "picture/Stream.h"

namespace kw {

// The page as it is seen: the background while it is shown, the page, and the floating layers, on the area that page
// and background cover. It has neither frames, marks and handles nor what is still being drawn. One of its pixels is
// one pixel of the page, whatever the screen.
//
// A snapshot: later changes of the editor do not reach it. It shares the pixels of the pictures.
class AnnotatedPage {
public:
  explicit AnnotatedPage(const EditorForm& form);

  // Whether no page is open.
  bool IsEmpty() const { return width <= 0 || height <= 0; }
  std::int32_t Width() const { return width; }
  std::int32_t Height() const { return height; }
  // The page's dots per inch; 0 if its file does not say.
  double HorizontalResolution() const { return horizontalResolution; }
  double VerticalResolution() const { return verticalResolution; }

  // The most memory for one band and what its drawing needs, unless a single row needs more.
  static constexpr std::size_t MostBandBytes = std::size_t{64} << 20U;

  // Receives the page in bands of 24 bits with its resolution, and the row at which the band begins. False: enough.
  using BandTaker = std::function<bool(std::int32_t top, const Bitmap& band)>;

  // Draws the page band by band from the top. False if `take` ended it. `take` may run any code. Raises OutOfMemory,
  // also if a text could not be drawn.
  bool Draw(TextRenderer& texts, const BandTaker& take, std::size_t mostBytes = MostBandBytes) const;

  // Writes it as a TIFF file of one page of 24 bits. Raises InvalidPicture if the stream fails or the file would pass
  // 4 GiB, and OutOfMemory.
  void WriteTiff(TextRenderer& texts, Stream& to) const;

private:
  Bitmap DrawBand(const class Compositor& compositor, std::int32_t top, std::int32_t rows, TextRenderer& texts) const;

  std::vector<DisplayItem> items;  // back to front
  Colour paper = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  double horizontalResolution = 0;
  double verticalResolution = 0;
};

}  // namespace kw
