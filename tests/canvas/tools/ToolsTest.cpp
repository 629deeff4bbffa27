// The table of tools.

#include <algorithm>

#include "canvas/tools/Tool.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

Names KeysBy(int Tool::*place) {
  Names keys;
  for (const Tool* tool : ToolsBy(place)) keys.emplace_back(tool->key);
  return keys;
}

TEST(ToolTable, HasAnOrderForTheMouseForTheCursorAndForTheButtons) {
  Names keys;
  for (const Tool* tool : Tools()) keys.emplace_back(tool->key);
  EXPECT_EQ(keys, (Names{"Pen", "Rubber", "NoTools", "Text", "Circle", "Line", "Rectangle", "Image", "Signature",
                         "Chooser", "Fill", "Stamp"}));
  EXPECT_EQ(KeysBy(&Tool::cursorPlace), (Names{"NoTools", "Circle", "Image", "Line", "Rectangle", "Signature",
                                               "Chooser", "Fill", "Pen", "Rubber", "Stamp", "Text"}));
  EXPECT_EQ(KeysBy(&Tool::buttonPlace), (Names{"NoTools", "Chooser", "Fill", "Pen", "Text", "Line", "Rectangle",
                                               "Circle", "Rubber", "Image", "Signature", "Stamp"}));
}

TEST(ToolTable, GivesEachToolAPlaceOfItsOwn) {
  for (int Tool::*place : {&Tool::cursorPlace, &Tool::buttonPlace}) {
    std::vector<int> places;
    for (const Tool* tool : Tools()) places.push_back(tool->*place);
    std::ranges::sort(places);
    EXPECT_EQ(places, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  }
}

using LayerMouse = LayersTest;

// A view hands a press on a layer to the layer's own model.
TEST_F(LayerMouse, GoesToTheCanvasWithThePlaceThere) {
  TransparentPicture& layer = Add(100, 80);
  Choose("NoTools");
  layer.MouseDown.Raise(1, 0, 20, 10);
  EXPECT_EQ(layer.SelectionFrame(), 1);
  layer.MouseMove.Raise(1, 0, 50, 40);
  layer.MouseUp.Raise(1, 0, 50, 40);
  EXPECT_EQ(layer.Left(), 128) << "by 29 from 99, where the frame of the picked layer put it";
  EXPECT_EQ(layer.Top(), 108);
}

using FillTool = LayersTest;

TEST_F(FillTool, TakesChannelsThatDifferBy40AndNoMore) {
  Bitmap page(4, 1, 24);
  const std::array<std::uint8_t, 4> greens{100, 140, 100, 141};
  for (std::size_t x = 0; x < 4; ++x) page.MutableRow(0)[x * 3 + 1] = greens[x];
  const std::string path = folder.File("noise.bmp");
  SavePicture(page, path);
  control->OpenFile(path);
  Choose("Fill");
  Press(0.5F, 0.5F);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  EXPECT_EQ(Form().TransLayers(2).Width(), 3);
}

}  // namespace
}  // namespace kw::test
