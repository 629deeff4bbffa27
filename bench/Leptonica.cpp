#include "bench/Leptonica.h"

#ifdef KW_HAS_LEPTONICA

namespace kw::leptonica {

PIX* ToPix(const Bitmap& page) {
  PIX* const pix = pixCreate(page.Width(), page.Height(), page.BitsPerPixel() == 24 ? 32 : page.BitsPerPixel());
  for (std::int32_t y = 0; y < page.Height(); ++y) {
    for (std::int32_t x = 0; x < page.Width(); ++x) {
      const Rgb c = page.PixelAt(x, y);
      if (page.BitsPerPixel() == 24) {
        pixSetRGBPixel(pix, x, y, c.red, c.green, c.blue);
      } else {
        pixSetPixel(pix, x, y, page.BitsPerPixel() == 1 ? static_cast<l_uint32>(c.red == 0) : c.red);
      }
    }
  }
  return pix;
}

Bitmap ToBitmap(PIX* pix) {
  PIX* colours = pixConvertTo32(pix);
  Bitmap made(pixGetWidth(colours), pixGetHeight(colours), 24);
  for (std::int32_t y = 0; y < made.Height(); ++y) {
    const auto row = made.MutableRow(y);
    for (std::int32_t x = 0; x < made.Width(); ++x) {
      l_int32 red = 0;
      l_int32 green = 0;
      l_int32 blue = 0;
      pixGetRGBPixel(colours, x, y, &red, &green, &blue);
      const std::size_t at = static_cast<std::size_t>(x) * 3;
      row[at] = static_cast<std::uint8_t>(blue);
      row[at + 1] = static_cast<std::uint8_t>(green);
      row[at + 2] = static_cast<std::uint8_t>(red);
    }
  }
  pixDestroy(&colours);
  return made;
}

}  // namespace kw::leptonica

#endif
