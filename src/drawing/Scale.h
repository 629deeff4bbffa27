#pragma once

#include <cstdint>

#include "components/base/Font.h"
#include "drawing/Outline.h"
#include "drawing/PixelRect.h"

namespace kw {

// Maps the models' pixels, 96 to the inch, to the pixels of a device.
//
// It scales edges, not sizes: rectangles that meet in the models meet on the device, and none overlap that did not.
class Scale {
public:
  static constexpr std::int32_t ModelDpi = 96;

  // The device's dots to the inch; a number that is not positive counts as 96.
  explicit Scale(std::int32_t dotsPerInch = ModelDpi) : dpi(dotsPerInch > 0 ? dotsPerInch : ModelDpi) {}

  std::int32_t Dpi() const { return dpi; }
  double Factor() const { return static_cast<double>(dpi) / ModelDpi; }

  // The nearest pixel edge of the device; a tie goes right or down. Clamped to 2^30 on each side, so that sums and
  // differences of two do not overflow.
  std::int32_t ToDevice(double position) const;
  PixelRect ToDevice(const PixelRect& bounds) const;
  PixelRect ToDevice(const Box& bounds) const;
  // A positive length is at least one pixel.
  std::int32_t LengthOnDevice(std::int32_t length) const;
  Font ToDevice(Font font) const;

  // Converts a device position to model pixels.
  double ToModel(std::int32_t position) const { return static_cast<double>(position) / Factor(); }
  // The model pixel that is shown at a device pixel. For a size on the device: the largest model size that fits.
  std::int32_t ModelPixelAt(std::int32_t pixel) const;

private:
  std::int32_t dpi;
};

}  // namespace kw
