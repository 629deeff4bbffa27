// Where the parts of a stamp come to lie.

#include <gtest/gtest.h>

#include "stamps/Stamp.h"
#include "tests/support/ScriptedDesktop.h"

namespace kw::test {
namespace {

// A page of 200 by 100 at (10, 20). In the font of 12 points a line is 16 pixels high and a character 8 wide.
class Arranged : public testing::Test {
protected:
  Arranged() { stamp.font.size = 12; }
  StampPlaces At(std::int32_t x, std::int32_t y) { return Arrange(desktop, stamp, {10, 20, 210, 120}, x, y); }
  void Sign(std::int32_t width, std::int32_t height) { stamp.signature = Bitmap(width, height, 32); }

  ScriptedDesktop desktop;
  Stamp stamp;
};

TEST_F(Arranged, ATextLiesAtThePointAndMovesAwayFromTheEdges) {
  stamp.text = "SEEN";
  EXPECT_EQ(At(50, 60).text, (PixelRect{50, 60, 82, 76}));
  EXPECT_TRUE(At(50, 60).signature.IsEmpty());
  EXPECT_EQ(At(178, 104).text, (PixelRect{178, 104, 210, 120}));
  EXPECT_EQ(At(179, 105).text, (PixelRect{178, 104, 210, 120}));
  EXPECT_EQ(At(9, 19).text, (PixelRect{10, 20, 42, 36}));
}

TEST_F(Arranged, ATextAsWideAsThePageBreaks) {
  stamp.text = std::string(26, 'x');
  EXPECT_EQ(At(50, 60).text, (PixelRect{10, 60, 210, 92}));
  stamp.text = std::string(175, 'x');
  EXPECT_EQ(At(50, 60).text, (PixelRect{10, 20, 210, 120})) << "seven lines are more than the page";
}

TEST_F(Arranged, ASignatureFollowsTwoPixelsBelowInItsOwnSize) {
  stamp.text = "SEEN";
  Sign(60, 20);
  EXPECT_EQ(At(50, 60).text, (PixelRect{50, 60, 82, 76}));
  EXPECT_EQ(At(50, 60).signature, (PixelRect{50, 78, 110, 98}));
  EXPECT_EQ(At(200, 110).text, (PixelRect{178, 82, 210, 98}));
  EXPECT_EQ(At(200, 110).signature, (PixelRect{150, 100, 210, 120}));
}

TEST_F(Arranged, ASignatureIsAtMostAThirdAsWideAsThePage) {
  Sign(66, 20);
  EXPECT_EQ(At(50, 60).signature, (PixelRect{50, 60, 116, 80}));
  Sign(132, 40);
  EXPECT_EQ(At(50, 60).signature, (PixelRect{50, 60, 116, 80}));
  Sign(660, 1);
  EXPECT_EQ(At(50, 60).signature, (PixelRect{50, 60, 116, 61})) << "a pixel at least";
}

TEST_F(Arranged, ASignatureIsAtMostAsHighAsTheTextLeavesRoom) {
  Sign(50, 200);
  EXPECT_EQ(At(50, 60).signature, (PixelRect{50, 20, 75, 120}));
  stamp.text = "SEEN";
  EXPECT_EQ(At(50, 60).text, (PixelRect{50, 20, 82, 36}));
  EXPECT_EQ(At(50, 60).signature, (PixelRect{50, 38, 71, 120})) << "82 rows are left";
  Sign(1, 2000);
  EXPECT_EQ(At(50, 60).signature, (PixelRect{50, 38, 51, 120}));
}

TEST_F(Arranged, ASignatureWithoutRoomIsNone) {
  Sign(60, 20);
  const PixelRect narrow{0, 0, 2, 100};
  EXPECT_TRUE(Arrange(desktop, stamp, narrow, 0, 0).signature.IsEmpty());
  EXPECT_EQ(Arrange(desktop, stamp, {0, 0, 3, 100}, 0, 0).signature, (PixelRect{0, 0, 1, 1}));
  EXPECT_EQ(Arrange(desktop, stamp, {0, 0, 300, 1}, 0, 0).signature, (PixelRect{0, 0, 3, 1}));
  stamp.text = "SEEN";
  const StampPlaces low = Arrange(desktop, stamp, {0, 0, 300, 18}, 5, 5);
  EXPECT_EQ(low.text, (PixelRect{5, 2, 37, 18}));
  EXPECT_TRUE(low.signature.IsEmpty());
  EXPECT_EQ(Arrange(desktop, stamp, {0, 0, 300, 19}, 5, 5).signature, (PixelRect{5, 18, 8, 19}));
}

TEST_F(Arranged, ATextIsShownOnAGroundThatIsTransparent) {
  for (const auto& [colour, ground] : {std::pair{0x010203U, 0xFFFFFFU}, {0xFFFFFFU, 0x000000U}}) {
    stamp.text = "SEEN";
    stamp.colour = colour;
    stamp.font.bold = true;
    TransparentPicture layer("layer");
    layer.SetTextEntry(true);
    ShowText(layer, stamp, {5, 6, 15, 27});
    EXPECT_EQ(layer.DrawnFigure().kind, FigureKind::Text);
    EXPECT_FALSE(layer.IsTextEntry());
    EXPECT_EQ(layer.Caption(), "SEEN");
    EXPECT_EQ(layer.ForeColor(), colour);
    EXPECT_EQ(layer.BackColor(), ground);
    EXPECT_EQ(layer.TransparentColor(), ground);
    EXPECT_EQ(layer.TextFont(), stamp.font);
    EXPECT_EQ(layer.Left(), 5);
    EXPECT_EQ(layer.Top(), 6);
    EXPECT_EQ(layer.Width(), 10);
    EXPECT_EQ(layer.Height(), 21);
  }
}

TEST_F(Arranged, ASignatureIsShownAsAPictureWhosePaperIsTransparent) {
  Sign(4, 3);
  TransparentPicture layer("layer");
  layer.SetFigure({.kind = FigureKind::Ellipse});
  layer.SetTransparentColor(7);
  ShowSignature(layer, stamp, {5, 6, 9, 9});
  EXPECT_EQ(layer.DrawnFigure().kind, FigureKind::Picture);
  EXPECT_EQ(layer.TransparentColor(), 0xFFFFFFU);
  EXPECT_TRUE(SamePicture(layer.Picture(), stamp.signature));
  EXPECT_EQ(layer.Left(), 5);
  EXPECT_EQ(layer.Top(), 6);
  EXPECT_EQ(layer.Width(), 4);
  EXPECT_EQ(layer.Height(), 3);
}

}  // namespace
}  // namespace kw::test
