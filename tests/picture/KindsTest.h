#pragma once

#include "picture/OpenedPicture.h"
#include "picture/PictureDocument.h"
#include "tests/picture/Scratch.h"

namespace kw {

// Tests that load bytes made by hand or by a codec library. The header of each page has to say what the page is.
class KindsTest : public ScratchTest {
protected:
  void Open(const Bytes& bytes) { Open(Put("picture", bytes)); }
  void Open(const std::string& path) {
    ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
    OpenedPicture opened(path, {});
    const PageHeader header = opened.source->Header(opened.file, 1);
    EXPECT_EQ(static_cast<std::uint64_t>(engine.Width()), header.size.width);
    EXPECT_EQ(static_cast<std::uint64_t>(engine.Height()), header.size.height);
    EXPECT_EQ(engine.PageValue(), header.bitsPerPixel);
    EXPECT_EQ(engine.Current().HorizontalResolution(), header.horizontalResolution);
    EXPECT_EQ(engine.Current().VerticalResolution(), header.verticalResolution);
  }
  Rgb Pixel(std::int32_t x, std::int32_t y) { return engine.Current().PixelAt(x, y); }
  PictureDocument engine;
};

}  // namespace kw
