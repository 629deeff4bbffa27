// Whole pictures of what layers look like, kept in golden/*.ppm and compared pixel by pixel, so that nobody changes
// them unawares. To accept new ones run the test with KW_ACCEPT_GOLDEN=1, look at them, and commit them.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "components/controls/LightWeightMarker.h"
#include "drawing/Compositor.h"
#include "scene/CanvasItems.h"
#include "tests/drawing/Canvas.h"

namespace kw::test {
namespace {

constexpr std::int32_t Width = 120;
constexpr std::int32_t Height = 90;
constexpr Colour Ink = MakeColour(20, 60, 200);
constexpr Colour Yellow = MakeColour(250, 220, 60);
constexpr Colour Sand = MakeColour(236, 228, 208);

// Stripes for letters: they show a text's place, line breaks and colour without a font.
class StripedText final : public TextRenderer {
public:
  void Render(const TextRun& run, const PixelRect& place, CoverageMask& mask) override {
    std::int32_t x = place.left;
    std::int32_t y = place.top;
    for (const char c : run.text) {
      if (c == '\n' || x + 6 > place.right) {
        x = place.left;
        y += 10;
      }
      if (c == '\n' || c == '\r') continue;
      if (c != ' ') Letter({x + 1, y + 1, x + 5, y + 8}, mask);
      x += 6;
    }
  }

private:
  static void Letter(const PixelRect& letter, CoverageMask& mask) {
    const PixelRect seen = Common(letter, mask.area);
    for (std::int32_t y = seen.top; y < seen.bottom; ++y) {
      for (std::int32_t x = seen.left; x < seen.right; ++x) {
        mask.Row(y)[static_cast<std::size_t>(x - mask.area.left)] = (x + y) % 2 == 0 ? 255 : 128;
      }
    }
  }
};

// A white picture with a coloured cross and a grey ramp.
Bitmap Drawing(std::int32_t width, std::int32_t height) {
  Bitmap picture(width, height, 24);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::int32_t x = 0; x < width; ++x) {
      const std::size_t at = static_cast<std::size_t>(x) * 3;
      const bool isCross = std::abs(x * height - y * width) < width + height || x == width / 2;
      const auto grey = static_cast<std::uint8_t>(y > height * 3 / 4 ? x * 255 / width : 255);
      row[at] = isCross ? 40 : grey;
      row[at + 1] = isCross ? 40 : grey;
      row[at + 2] = isCross ? 200 : grey;
    }
  }
  return picture;
}

// A canvas with a page and what a test lays on it.
class Golden : public ::testing::Test {
protected:
  Golden() {
    canvas.SetBackColor(Sand);
    canvas.Move(0, 0, Width, Height);
  }

  TransparentPicture& Add(float left, float top, float width, float height) {
    TransparentPicture& layer = *layers.emplace_back(std::make_unique<TransparentPicture>("layer"));
    layer.SetContainer(&canvas);
    layer.Move(left, top, width, height);
    return layer;
  }
  TransparentPicture& AddFigure(FigureKind kind, float left, float top, float width, float height,
                                std::int16_t lineWidth) {
    TransparentPicture& layer = Add(left, top, width, height);
    layer.SetFigure({.kind = kind});
    layer.SetLineWidth(lineWidth);
    layer.SetLineColor(Ink);
    return layer;
  }
  static void Fill(TransparentPicture& layer, Colour colour) {
    layer.SetBackColor(colour);
    layer.SetTransparentColor(colour ^ 0xFFFFFFU);  // any other colour
  }

  void ExpectGolden(const std::string& name) {
    const Canvas drawn({0, 0, Width, Height});
    Compositor compositor(canvas.BackColor());
    StripedText texts;
    compositor.Show(ItemsOf(canvas));
    compositor.Paint(drawn.Buffer(), {0, 0, Width, Height}, &texts);
    std::string picture = "P6 " + std::to_string(Width) + " " + std::to_string(Height) + " 255\n";
    for (const std::uint32_t pixel : drawn.Pixels()) {
      for (const unsigned shift : {16U, 8U, 0U}) picture += static_cast<char>(pixel >> shift & 0xFFU);
    }
    const std::string path = std::string(KW_GOLDEN_FOLDER "/") + name + ".ppm";
    if (std::getenv("KW_ACCEPT_GOLDEN") != nullptr) {
      std::ofstream(path, std::ios::binary) << picture;
      GTEST_SKIP() << "accepted " << path;
    }
    std::ifstream file(path, std::ios::binary);
    const std::string golden{std::istreambuf_iterator<char>(file), {}};
    ASSERT_EQ(golden.size(), picture.size()) << path;
    std::size_t different = 0;
    for (std::size_t i = 0; i < golden.size(); ++i) different += golden[i] != picture[i] ? 1U : 0U;
    EXPECT_EQ(different, 0U) << name << ": bytes that differ";
  }

  PictureBox canvas{"canvas"};
  std::vector<std::unique_ptr<TransparentPicture>> layers;
};

TEST_F(Golden, Lines) {
  for (const int width : {1, 3, 8}) {
    const auto left = static_cast<float>(5 + width * 8);
    AddFigure(FigureKind::Line, left, 5, 30, 35, static_cast<std::int16_t>(width));
    AddFigure(FigureKind::Line, left, 48, 30, 35, static_cast<std::int16_t>(width))
        .SetFigure({.kind = FigureKind::Line, .isRising = true});
  }
  ExpectGolden("lines");
}

TEST_F(Golden, Rectangles) {
  AddFigure(FigureKind::Rectangle, 5, 5, 30, 35, 1);
  AddFigure(FigureKind::Rectangle, 40, 5, 30, 35, 3);
  AddFigure(FigureKind::Rectangle, 75, 5, 30, 35, 8);
  Fill(AddFigure(FigureKind::Rectangle, 5, 48, 30, 35, 1), Yellow);
  Fill(AddFigure(FigureKind::Rectangle, 40, 48, 30, 35, 3), Yellow);
  Fill(AddFigure(FigureKind::Rectangle, 75, 48, 30, 35, 8), Yellow);
  ExpectGolden("rectangles");
}

TEST_F(Golden, Ellipses) {
  AddFigure(FigureKind::Ellipse, 5, 5, 30, 35, 1);
  AddFigure(FigureKind::Ellipse, 40, 5, 30, 35, 3);
  AddFigure(FigureKind::Ellipse, 75, 5, 40, 35, 8);
  Fill(AddFigure(FigureKind::Ellipse, 5, 48, 30, 35, 1), Yellow);
  Fill(AddFigure(FigureKind::Ellipse, 40, 48, 30, 35, 3), Yellow);
  Fill(AddFigure(FigureKind::Ellipse, 75, 48, 40, 35, 8), Yellow);
  ExpectGolden("ellipses");
}

TEST_F(Golden, AFillOfTheColour20IsTransparent) {
  TransparentPicture& layer = AddFigure(FigureKind::Rectangle, 20, 20, 60, 40, 3);
  layer.SetBackColor(20);
  layer.SetTransparentColor(20);
  ExpectGolden("blind-spot");
}

TEST_F(Golden, KeyedAndLightenedPictures) {
  Add(0, 0, Width, Height).SetPicture(Drawing(Width, Height));
  layers.back()->SetTransparentColor(MakeColour(1, 2, 3));
  Add(5, 5, 50, 50).SetPicture(Drawing(50, 50));
  Add(62, 5, 50, 30).SetPicture(Drawing(100, 60));
  Add(10, 45, 100, 40).SetPicture(Drawing(20, 8));
  layers[1]->SetTransparentColor(White);
  layers[2]->SetLightened(true);
  layers[2]->SetTransparentColor(MakeColour(1, 2, 3));
  layers[3]->SetTransparentColor(MakeColour(200, 40, 40));
  ExpectGolden("pictures");
}

TEST_F(Golden, TextsWrapAndStandOnTheirGround) {
  TransparentPicture& hollow = Add(5, 5, 70, 40);
  hollow.SetFigure({.kind = FigureKind::Text});
  hollow.SetCaption("see through to the page");
  hollow.SetForeColor(Ink);
  TransparentPicture& filled = Add(20, 50, 90, 30);
  filled.SetFigure({.kind = FigureKind::Text});
  filled.SetCaption("on its\r\nground");
  Fill(filled, Yellow);
  ExpectGolden("texts");
}

TEST_F(Golden, FramesHandlesAndMarkers) {
  TransparentPicture& picked = AddFigure(FigureKind::Ellipse, 4, 4, 50, 40, 2);
  picked.SetSelectionFrame(1);
  picked.SetIsToShowResize(true);
  TransparentPicture& hovered = AddFigure(FigureKind::Rectangle, 65, 4, 50, 40, 2);
  hovered.SetIsToShowBorderMarks(true);
  TransparentPicture& band = Add(10, 55, 45, 28);
  band.SetIsToShowBorderMarks(true);
  band.SetIsToShowResize(true);
  LightWeightMarker marker("marker");
  marker.SetContainer(&canvas);
  marker.Move(80, 60, 9, 9);
  marker.SetColor(Ink);
  ExpectGolden("frames");
}

}  // namespace
}  // namespace kw::test
