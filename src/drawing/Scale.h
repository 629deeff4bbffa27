#pragma once

#include <cstdint>

#include "components/base/Font.h"
#include "drawing/Outline.h"
#include "drawing/PixelRect.h"

namespace kw {

// How large the models' pixels, of which there are 96 to the inch, are on a device with another number of them.
//
// Edges are scaled, not sizes: what meets in the models meets on the device too, and what does not overlap there does
// not here.
class Scale {
public:
  static constexpr std::int32_t ModelDpi = 96;

  // Pixels of the device to the inch; what is no such number counts as 96.
  explicit Scale(std::int32_t dotsPerInch = ModelDpi) : dpi(dotsPerInch > 0 ? dotsPerInch : ModelDpi) {}

  std::int32_t Dpi() const { return dpi; }
  double Factor() const { return static_cast<double>(dpi) / ModelDpi; }

  // The device's nearest edge between two pixels, of two the one farther right or down. At most 2^30 to each side, so
  // that no sum or difference of two leaves the range.
  std::int32_t ToDevice(double position) const;
  PixelRect ToDevice(const PixelRect& bounds) const;
  PixelRect ToDevice(const Box& bounds) const;
  // What is to be seen at all is at least one pixel.
  std::int32_t LengthOnDevice(std::int32_t length) const;
  Font ToDevice(Font font) const;

  // A device position in the models' pixels.
  double ToModel(std::int32_t position) const { return static_cast<double>(position) / Factor(); }
  // The pixel of the models that shows at a pixel of the device. For a device's size: the greatest one in the models
  // that fits.
  std::int32_t ModelPixelAt(std::int32_t pixel) const;

private:
  std::int32_t dpi;
};

}  // namespace kw
