// Layers under the keyboard.

#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

constexpr std::int16_t F6 = 117;
constexpr std::int16_t Left = 37;
constexpr std::int16_t Up = 38;
constexpr std::int16_t Right = 39;
constexpr std::int16_t Down = 40;
constexpr std::int16_t Shift = Mouse::ShiftKey;

class LayersByKeyboard : public LayersTest {
protected:
  LayersByKeyboard() {
    Canvas().ReceiveFocus();
    Choose("NoTools");
  }
  // As a host offers it: the key does something only if the canvas has a use for it.
  bool IsInUse(std::int16_t key, std::int16_t shift = 0) {
    bool isInUse = false;
    Canvas().KeyUse.Raise(key, shift, isInUse);
    return isInUse;
  }
  void Strike(std::int16_t key, std::int16_t shift = 0) { Canvas().KeyDown.Raise(key, shift); }
  void StrikeTimes(int times, std::int16_t key, std::int16_t shift = 0) {
    for (int i = 0; i < times; ++i) Strike(key, shift);
  }
  // The indices of the layers with a selection frame.
  std::vector<int> Picked() {
    std::vector<int> picked;
    for (const auto& [index, layer] : Form().TransLayers) {
      if (layer->SelectionFrame() != 0) picked.push_back(index);
    }
    return picked;
  }
  using Indices = std::vector<int>;
};

TEST_F(LayersByKeyboard, KeysWithoutALayerAreTheHosts) {
  for (std::int16_t shift = 0; shift < 8; ++shift) {
    for (const std::int16_t key : {F6, Left, Up, Right, Down}) EXPECT_FALSE(IsInUse(key, shift)) << key << " " << shift;
  }
  ForgetTrace();
  Strike(F6);
  Strike(Left);
  EXPECT_EQ(Trace(), (Names{"picCanvas_KeyDown", "picCanvas_KeyDown"}));
}

TEST_F(LayersByKeyboard, F6PicksOneAfterTheOtherThroughTheActivationEvent) {
  for (int i = 0; i < 3; ++i) Add(40.0F * static_cast<float>(i), 20);
  ForgetTrace();
  Strike(F6);
  EXPECT_EQ(Trace(), (Names{"picCanvas_KeyDown", "TransLayers_Activate"}));
  EXPECT_EQ(Picked(), Indices{2});
  EXPECT_EQ(Room().CurrentLayerIndex(), 2);
  ForgetTrace();
  Strike(F6);
  EXPECT_EQ(Trace(), (Names{"picCanvas_KeyDown", "TransLayers_Deactivate", "TransLayers_Activate"}));
  EXPECT_EQ(Picked(), Indices{3});
  Strike(F6);
  Strike(F6);
  EXPECT_EQ(Picked(), Indices{2}) << "the first one follows the last";
  Strike(F6, Shift);
  EXPECT_EQ(Picked(), Indices{4});
  Strike(F6, Shift);
  EXPECT_EQ(Picked(), Indices{3});
  EXPECT_EQ(Room().ZOrder().Order(), (std::vector<std::int16_t>{1, 2, 3, 4})) << "nothing is restacked";
}

TEST_F(LayersByKeyboard, ShiftF6BeginsWithTheLastLayer) {
  Add(10, 10);
  Add(60, 10);
  Strike(F6, Shift);
  EXPECT_EQ(Picked(), Indices{3});
}

TEST_F(LayersByKeyboard, F6PassesOverLayersThatAreHidden) {
  Add(10, 10);
  Add(60, 10).SetVisible(false);
  Add(110, 10);
  Strike(F6);
  Strike(F6);
  EXPECT_EQ(Picked(), Indices{4});
}

TEST_F(LayersByKeyboard, KeepTheContentsInPlaceAsAPressDoes) {
  TransparentPicture& layer = Add(100, 80);
  Strike(F6);
  EXPECT_EQ(layer.Left(), 99);
  EXPECT_EQ(layer.Top(), 79);
  EXPECT_TRUE(layer.IsToShowResize());
  Strike(F6);
  EXPECT_EQ(layer.Left(), 99) << "the only layer stays picked";
}

TEST_F(LayersByKeyboard, AreTheHostsWithAnotherToolAndWithOtherModifiers) {
  Add(10, 10);
  Strike(F6);
  for (const std::int16_t key : {F6, Left, Up, Right, Down}) {
    EXPECT_TRUE(IsInUse(key)) << key;
    EXPECT_TRUE(IsInUse(key, Shift)) << key;
    for (std::int16_t shift = 2; shift < 8; ++shift) EXPECT_FALSE(IsInUse(key, shift)) << key << " " << shift;
    bool onForm = false;
    Form().editor.KeyUse.Raise(key, 0, onForm);
    EXPECT_FALSE(onForm) << key;
  }
  Choose("Pen");
  for (const std::int16_t key : {F6, Left, Up, Right, Down}) EXPECT_FALSE(IsInUse(key)) << key;
  const float before = Form().TransLayers(2).Left();
  Strike(Left);
  EXPECT_EQ(Form().TransLayers(2).Left(), before);
}

TEST_F(LayersByKeyboard, DoNothingWhileAnotherControlHasTheKeyboard) {
  TransparentPicture& layer = Add(10, 10);
  Form().sldLineHeight.ReceiveFocus();
  Form().editor.KeyDown.Raise(F6, 0);
  EXPECT_EQ(layer.SelectionFrame(), 0);
}

TEST_F(LayersByKeyboard, ArrowsMoveThePickedLayerByOnePixel) {
  TransparentPicture& layer = Add(100, 80, 50, 40);
  EXPECT_FALSE(IsInUse(Left)) << "none is picked";
  Strike(F6);
  Strike(Left);
  Strike(Left);
  Strike(Up);
  EXPECT_EQ(layer.Left(), 97);
  EXPECT_EQ(layer.Top(), 78);
  Strike(Right);
  StrikeTimes(3, Down);
  EXPECT_EQ(layer.Left(), 98);
  EXPECT_EQ(layer.Top(), 81);
  EXPECT_EQ(layer.Width(), 50);
  EXPECT_EQ(layer.Height(), 40);
}

TEST_F(LayersByKeyboard, ALayerIsNotMovedOffTheCanvas) {
  TransparentPicture& layer = Add(10, 10, 20, 20);
  Strike(F6);
  StrikeTimes(100, Left);
  EXPECT_EQ(layer.Left(), -19);
  StrikeTimes(100, Up);
  EXPECT_EQ(layer.Top(), -19);
  StrikeTimes(1000, Right);
  EXPECT_EQ(layer.Left(), Canvas().Width() - 1);
  StrikeTimes(1000, Down);
  EXPECT_EQ(layer.Top(), Canvas().Height() - 1);
}

TEST_F(LayersByKeyboard, ALayerBesideTheCanvasComesBack) {
  TransparentPicture& layer = Add(-300, 10, 20, 20);
  Strike(F6);
  StrikeTimes(301, Right);
  EXPECT_EQ(layer.Left(), 0);
}

TEST_F(LayersByKeyboard, ShiftWithArrowsSizesThePickedLayer) {
  TransparentPicture& layer = Add(100, 80, 50, 40);
  Strike(F6);
  Strike(Right, Shift);
  Strike(Down, Shift);
  Strike(Down, Shift);
  EXPECT_EQ(layer.Left(), 99);
  EXPECT_EQ(layer.Top(), 79);
  EXPECT_EQ(layer.Width(), 51);
  EXPECT_EQ(layer.Height(), 42);
  StrikeTimes(100, Left, Shift);
  StrikeTimes(100, Up, Shift);
  EXPECT_EQ(layer.Width(), 8);
  EXPECT_EQ(layer.Height(), 8);
  StrikeTimes(1000, Right, Shift);
  StrikeTimes(1000, Down, Shift);
  EXPECT_EQ(layer.Left() + layer.Width(), Canvas().Width());
  EXPECT_EQ(layer.Top() + layer.Height(), Canvas().Height());
}

TEST_F(LayersByKeyboard, DeleteIsTheCommandWithItsBoxAndDeletesNoLayer) {
  desktop.Expect("clear");
  Add(100, 80);
  Strike(F6);
  BasicBar("Clear").SetButtonEnabled("Clear", true);
  desktop.boxes.clear();
  Strike(46);
  Canvas().KeyUp.Raise(46, 0);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].prompt, "clear");
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
}

TEST_F(LayersByKeyboard, DoNothingInADrag) {
  TransparentPicture& layer = Add(100, 80, 50, 40);
  Press(120, 100);
  Drag(140, 110);
  EXPECT_FALSE(IsInUse(Left));
  Strike(Left);
  Strike(F6);
  EXPECT_EQ(layer.Left(), 99);
  Release(140, 110);
  EXPECT_EQ(layer.Left(), 119);
  EXPECT_TRUE(IsInUse(Left));
}

TEST_F(LayersByKeyboard, APickedLayerThatGoesTakesTheKeysAlong) {
  Add(100, 80);
  Strike(F6);
  Room().UnloadLayerItems();
  EXPECT_FALSE(IsInUse(Left));
  EXPECT_FALSE(IsInUse(F6));
  Strike(Left);
  Strike(F6);
}

// A screen reader picks a layer without a press and without a key.
TEST_F(LayersByKeyboard, TheUserMayPickALayerByItsName) {
  TransparentPicture& first = Add(10, 10);
  TransparentPicture& second = Add(60, 10);
  second.UserPick();
  EXPECT_EQ(Picked(), Indices{3});
  first.UserPick();
  EXPECT_EQ(Picked(), Indices{2});
  Form().TransLayers(1).UserPick();
  EXPECT_EQ(Picked(), Indices{2}) << "the page is not picked";
  Choose("Pen");
  second.UserPick();
  EXPECT_EQ(Picked(), Indices{2});
}

}  // namespace
}  // namespace kw::test
