#pragma once

#include "picture/PictureDocument.h"
#include "tests/picture/Scratch.h"

namespace kw {

// Tests that load bytes made by hand or by a codec library.
class KindsTest : public ScratchTest {
protected:
  void Open(const Bytes& bytes) { ASSERT_TRUE(engine.Load(Put("picture", bytes))) << engine.LastLoadError(); }
  Rgb Pixel(std::int32_t x, std::int32_t y) { return engine.Current().PixelAt(x, y); }
  PictureDocument engine;
};

}  // namespace kw
