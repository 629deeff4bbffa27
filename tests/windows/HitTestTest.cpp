// Which layer a press belongs to: the view that hands the mouse on and the editor that picks must agree.

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "tests/windows/WholeEditor.h"

namespace kw::test {
namespace {

class PressedLayer : public WholeEditor {
protected:
  PressedLayer() : layer(NewLayerOnAPage()) {
    layer->Move(50, 60, 20, 30);
    layer->SetVisible(true);
    // As the editor handles it, but counted.
    layer->MouseDown.Connect([this](std::int16_t button, std::int16_t shift, float x, float y) {
      ++presses;
      Form().picCanvas.MouseDown.Raise(button, shift, x + layer->Left(), y + layer->Top());
    });
    Form().tbrEditingTools.SetButtonPressed("NoTools", true);
    TestForm::Pump();
  }
  TransparentPicture* NewLayerOnAPage() {
    const std::string path = folder.File("page.bmp");
    SavePicture(Bitmap(300, 200, 24), path);
    control->OpenFile(path);
    return control->LayerRoom().NewLayer().get();
  }
  // Who takes a press at that point of the canvas: "view" if the view hands it to the layer, "editor" if the editor
  // picks the layer.
  std::string TakenBy(int x, int y) {
    const HWND canvas = WindowOf(Form().picCanvas);
    ClickAt(canvas, 200, 150);
    EXPECT_EQ(layer->SelectionFrame(), 0);
    presses = 0;
    ClickAt(canvas, x, y);
    std::string takers = presses == 0 ? "" : "view ";
    if (layer->SelectionFrame() != 0) takers += "editor";
    return takers;
  }

  TransparentPicture* layer;
  int presses = 0;
};

TEST_F(PressedLayer, IsTheSameForTheViewAndTheEditorOnAllEdges) {
  for (const int x : {50, 60, 70}) {
    for (const int y : {60, 75, 90}) EXPECT_EQ(TakenBy(x, y), "view editor") << x << ", " << y;
  }
  for (const int x : {49, 71}) EXPECT_EQ(TakenBy(x, 75), "") << x;
  for (const int y : {59, 91}) EXPECT_EQ(TakenBy(60, y), "") << y;
}

TEST_F(PressedLayer, IsThePickedOneUpToTheEdgesOfItsFrame) {
  const HWND canvas = WindowOf(Form().picCanvas);
  const auto pressesAt = [&](int x, int y) {
    ClickAt(canvas, 60, 75);
    EXPECT_NE(layer->SelectionFrame(), 0);
    presses = 0;
    ClickAt(canvas, x, y);
    return presses;
  };
  EXPECT_EQ(pressesAt(49, 59), 1);
  EXPECT_EQ(pressesAt(70, 90), 1);
  EXPECT_EQ(pressesAt(48, 75), 0);
  EXPECT_EQ(pressesAt(71, 75), 0);
  EXPECT_EQ(pressesAt(60, 91), 0);
}

TEST_F(PressedLayer, LeavesTheBordersOfThePageTheirPixels) {
  desktop.Expect("change the code below");
  layer->Move(250, 60, 50, 30);  // its last edge is the border's first pixel
  int grabs = 0;
  Form().BorderRight.MouseDown.Connect([&](std::int16_t, std::int16_t, float, float) { ++grabs; });
  const HWND canvas = WindowOf(Form().picCanvas);
  ClickAt(canvas, 300, 75);
  EXPECT_EQ(presses, 0);
  EXPECT_EQ(grabs, 1);
  ClickAt(canvas, 299, 75);
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(grabs, 1);
}

TEST_F(PressedLayer, OnItsLastEdgeIsClickedThere) {
  int clicks = 0;
  layer->Click.Connect([&] { ++clicks; });
  ClickAt(WindowOf(Form().picCanvas), 70, 90);
  EXPECT_EQ(clicks, 1);
}

}  // namespace
}  // namespace kw::test
