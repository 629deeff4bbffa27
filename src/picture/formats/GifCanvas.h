#pragma once

#include "components/base/Bitmap.h"
#include "picture/formats/GifDecoder.h"

namespace kw {

inline constexpr Rgb GifPaper{255, 255, 255};

Rgb GifColourOf(const ColorMapObject* colours, std::size_t index);

// Draws the frames one over the other, in 24 bits.
class GifCanvas {
public:
  // `page` is the background of the next frame.
  explicit GifCanvas(Bitmap page) : picture(std::move(page)) {}

  // False if rows of the frame are missing; there the background stays visible.
  bool Draw(GifDecoder& decoder, const GifFrame& frame);
  // As Draw, for a frame that covers the whole page and is decoded already.
  void Cover(Bitmap page, const GifFrame& frame);

  const Bitmap& Picture() const { return picture; }
  // The background of the next frame.
  Bitmap Background() const;

private:
  // Applies the disposal method of the previous frame.
  void Dispose();

  Bitmap picture;
  Bitmap before;
  GifFrame last;
};

}  // namespace kw
