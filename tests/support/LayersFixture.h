#pragma once

#include "tests/support/EditorFixture.h"

namespace kw::test {

// A control with an open page of 400 x 300 pixels and a hand on the mouse.
class LayersTest : public EditorTest {
protected:
  LayersTest() { control->OpenFile(MakeImage("page.bmp", 400, 300)); }

  Layers& Room() { return control->LayerRoom(); }
  TransparentPicture& Add(float left, float top, float width = 50, float height = 50) {
    TransparentPicture& layer = *Room().NewLayer();
    layer.Move(left, top, width, height);
    layer.SetVisible(true);
    return layer;
  }
  void Choose(const char* tool) { Form().tbrEditingTools.SetButtonPressed(tool, true); }
  PictureBox& Canvas() { return Form().picCanvas; }
  void Press(float x, float y, std::int16_t button = 1) { Canvas().MouseDown.Raise(button, 0, x, y); }
  void Drag(float x, float y) { Canvas().MouseMove.Raise(1, 0, x, y); }
  void Release(float x, float y) { Canvas().MouseUp.Raise(1, 0, x, y); }
  void DragOut(float x0, float y0, float x1, float y1) {
    Canvas().ReceiveFocus();
    Press(x0, y0);
    Drag(x1, y1);
    Release(x1, y1);
  }
};

}  // namespace kw::test
