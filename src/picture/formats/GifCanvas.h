#pragma once

#include "components/base/Bitmap.h"
#include "picture/formats/GifDecoder.h"

namespace kw {

inline constexpr Rgb GifPaper{255, 255, 255};

Rgb GifColourOf(const ColorMapObject* colours, std::size_t index);

// The frames drawn one over the other, in 24 bits.
class GifCanvas {
public:
  // `page` is what the next frame is drawn on.
  explicit GifCanvas(Bitmap page) : picture(std::move(page)) {}

  // False where rows of the frame are missing; they show what was drawn before.
  bool Draw(GifDecoder& decoder, const GifFrame& frame);
  // The same for a frame that covers the whole page and was decoded elsewhere.
  void Cover(Bitmap page, const GifFrame& frame);

  const Bitmap& Picture() const { return picture; }
  // What the next frame is drawn on.
  Bitmap Ground() const;

private:
  // Does what the previous frame asked for.
  void Dispose();

  Bitmap picture;
  Bitmap before;
  GifFrame last;
};

}  // namespace kw
