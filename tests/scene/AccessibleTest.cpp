// What a screen reader is told of controls and of the parts of a canvas.

#include <gtest/gtest.h>

#include "components/controls/ControlArray.h"
#include "components/controls/DialogForm.h"
#include "components/controls/Label.h"
#include "components/controls/LightWeightMarker.h"
#include "components/controls/RaisedArea.h"
#include "components/controls/RangeControl.h"
#include "drawing/DisplayItem.h"
#include "scene/Accessible.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

using Names = std::vector<std::string>;

class AccessibleParts : public testing::Test {
protected:
  AccessibleParts() {
    page.SetContainer(&canvas);
    page.SetAccessibleName("Page 1 of 1");
    page.Move(0, 0, 300, 200);
    layers(0).SetContainer(&canvas);
    layers(0).SetVisible(false);
  }
  TransparentPicture& Add(std::int32_t index, float left, float top, float width, float height) {
    TransparentPicture& layer = layers.Load(index);
    layer.Move(left, top, width, height);
    layer.SetVisible(true);
    return layer;
  }
  Names NamesOfParts() const {
    Names names;
    for (const AccessiblePart& part : PartsOf(canvas)) names.push_back(part.name);
    return names;
  }

  PictureBox canvas{"canvas"};
  TransparentPicture page{"page"};
  ControlArray<TransparentPicture> layers{"layers", 1};
};

TEST_F(AccessibleParts, AreThePageAndTheLayersBackToFront) {
  Add(1, 10, 10, 20, 20).SetFigure({.kind = FigureKind::Ellipse});
  Add(2, 30, 10, 20, 20).SetFigure({.kind = FigureKind::Rectangle});
  Add(3, 50, 10, 20, 20).SetFigure({.kind = FigureKind::Line});
  Add(4, 70, 10, 20, 20);
  TransparentPicture& text = Add(5, 90, 10, 20, 20);
  text.SetFigure({.kind = FigureKind::Text});
  text.SetCaption("checked\r\nby me");
  layers(1).ZOrder();
  EXPECT_EQ(NamesOfParts(), (Names{"Page 1 of 1", "Rectangle layer 2", "Line layer 3", "Picture layer 4",
                                   "Text layer 5", "Circle layer 1"}));
  const auto parts = PartsOf(canvas);
  EXPECT_EQ(parts[4].role, AccessibleRole::Text);
  EXPECT_EQ(parts[4].value, "checked\r\nby me");
  EXPECT_EQ(parts[5].role, AccessibleRole::Graphic);
  EXPECT_FALSE(parts[0].isPickable);
  EXPECT_TRUE(parts[5].isPickable);
  EXPECT_EQ(parts[5].item, &layers(1));
}

TEST_F(AccessibleParts, AreNotTheRubberBandNorMarkersNorWhatIsHidden) {
  TransparentPicture rubberBand("fr");
  rubberBand.SetContainer(&canvas);
  LightWeightMarker marker("point1");
  marker.SetIndex(0);
  marker.SetContainer(&canvas);
  Label label("label");
  label.SetContainer(&canvas);
  label.SetAccessibleName("has a window of its own");
  Add(1, 10, 10, 20, 20).SetVisible(false);
  EXPECT_EQ(NamesOfParts(), Names{"Page 1 of 1"});
}

TEST_F(AccessibleParts, OfAPickedLayerAreItsHandlesToo) {
  TransparentPicture& layer = Add(1, 100, 50, 40, 30);
  EXPECT_FALSE(PartsOf(canvas)[1].isPicked);
  layer.SetSelectionFrame(1);
  layer.SetIsToShowResize(true);
  const auto parts = PartsOf(canvas);
  ASSERT_EQ(parts.size(), 10U);
  EXPECT_TRUE(parts[1].isPicked);
  EXPECT_EQ(parts[2].name, "Top left handle");
  EXPECT_EQ(parts[5].name, "Right handle");
  EXPECT_EQ(parts[9].name, "Left handle");
  EXPECT_EQ(parts[2].role, AccessibleRole::Grip);
  EXPECT_EQ(parts[2].handle, 0U);
  EXPECT_FALSE(parts[2].isPickable);
}

TEST_F(AccessibleParts, LieWhereTheyAreDrawn) {
  TransparentPicture& layer = Add(1, 100, 50, 41, 31);
  layer.SetSelectionFrame(1);
  layer.SetIsToShowResize(true);
  LightWeightMarker border("border");
  border.SetContainer(&canvas);
  border.SetAccessibleName("Bottom border");
  border.Move(0, 200, 300, 2);
  for (const std::int32_t dpi : {96, 120, 144, 192}) {
    const Scale scale(dpi);
    const auto drawn = ItemsOf(canvas, scale);
    const auto parts = PartsOf(canvas, scale);
    ASSERT_EQ(drawn.size(), 3U);
    ASSERT_EQ(parts.size(), 11U);
    EXPECT_EQ(parts[0].bounds, drawn[0].bounds) << dpi;
    EXPECT_EQ(parts[1].bounds, drawn[1].bounds) << dpi;
    EXPECT_EQ(parts[10].bounds, drawn[2].bounds) << dpi;
    const auto handles = HandlesOf(drawn[1].bounds, drawn[1].handleSize);
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(parts[2 + i].bounds, handles[i]) << dpi << " " << i;
  }
}

TEST_F(AccessibleParts, AreFoundByThePixelsThatTheyCover) {
  Add(1, 100, 50, 40, 30);
  Add(2, 120, 60, 40, 30);
  const auto parts = PartsOf(canvas);
  const auto nameAt = [&](std::int32_t x, std::int32_t y) {
    const AccessiblePart* const part = PartAt(parts, x, y);
    return part == nullptr ? std::string() : part->name;
  };
  EXPECT_EQ(nameAt(0, 0), "Page 1 of 1");
  EXPECT_EQ(nameAt(100, 50), "Picture layer 1");
  EXPECT_EQ(nameAt(119, 79), "Picture layer 1");
  EXPECT_EQ(nameAt(120, 60), "Picture layer 2");
  EXPECT_EQ(nameAt(159, 89), "Picture layer 2");
  EXPECT_EQ(nameAt(160, 89), "Page 1 of 1");
  EXPECT_EQ(nameAt(300, 100), "");
  EXPECT_EQ(nameAt(-1, 100), "");
  EXPECT_EQ(PartAt({}, 0, 0), nullptr);
}

TEST(AccessibleItems, OfALabelIsItsCaptionWithoutRowsOfBlanks) {
  Label label("label");
  label.SetAccessibleName("Number of pages");
  EXPECT_EQ(AccessibleOf(label).name, "Number of pages");
  label.SetCaption("Page" + std::string(20, ' ') + "of 5 ");
  EXPECT_EQ(AccessibleOf(label).name, "Page of 5");
  EXPECT_EQ(AccessibleOf(label).role, AccessibleRole::Text);
  label.SetCaption(" \r\n ");
  EXPECT_EQ(AccessibleOf(label).name, "Number of pages");
}

TEST(AccessibleItems, OfAColourFieldIsItsToolTipAndItsColour) {
  Label field("field");
  field.SetToolTip("Foreground Color");
  field.SetRoleOfDesign(AccessibleRole::Button);
  field.SetBackColor(MakeColour(1, 20, 255));
  EXPECT_EQ(AccessibleOf(field),
            (AccessibleItem{AccessibleRole::Button, "Foreground Color", "red 1, green 20, blue 255"}));
}

TEST(AccessibleItems, OfOtherControlsAreTheirKindAndName) {
  RaisedPicture hide("hide");
  hide.SetToolTip("Hide Tools");
  EXPECT_EQ(AccessibleOf(hide), (AccessibleItem{AccessibleRole::Graphic, "Hide Tools", ""}));
  hide.SetIsButton(true);
  EXPECT_EQ(AccessibleOf(hide).role, AccessibleRole::Button);
  const RaisedArea area("area");
  EXPECT_EQ(AccessibleOf(area).role, AccessibleRole::Group);
  const PictureBox box("box");
  EXPECT_EQ(AccessibleOf(box).role, AccessibleRole::Pane);
  DialogForm dialog("dialog");
  dialog.SetCaption("Stamp");
  EXPECT_EQ(AccessibleOf(dialog), (AccessibleItem{AccessibleRole::Pane, "Stamp", ""}));
  Slider slider("slider");
  slider.SetToolTip("Line Thickness");
  slider.SetAccessibleName("Thickness");
  EXPECT_EQ(AccessibleOf(slider), (AccessibleItem{AccessibleRole::Standard, "Thickness", ""}));
}

}  // namespace
}  // namespace kw
