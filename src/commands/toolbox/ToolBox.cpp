#include "commands/toolbox/ToolBox.h"

#include "trap/Procedure.h"

namespace kw {
namespace {

// Pixels between the viewport's edge and a box that was dragged past it. The far edges are tested against less.
constexpr float EdgeMargin = 6;
constexpr float FarEdgeTest = 5;

}  // namespace

ToolBox::ToolBox(const EditorContext& context) : EditorContext(context) {
  form.kwraTools.MouseDown.Connect(
      [this](std::int16_t button, std::int16_t, float x, float y) { kwraTools_MouseDown(button, x, y); });
  form.kwraTools.MouseMove.Connect(
      [this](std::int16_t button, std::int16_t, float x, float y) { kwraTools_MouseMove(button, x, y); });
  form.kwraTools.MouseUp.Connect(
      [this](std::int16_t button, std::int16_t, float, float) { kwraTools_MouseUp(button); });
  form.kwraTools.MouseLost.Connect([this] { EndDrag(); });
  form.kwrpHideToolBox.MouseDown.Connect(
      [this](std::int16_t, std::int16_t, float x, float y) { kwrpHideToolBox_MouseDown(x, y); });
}

void ToolBox::kwraTools_MouseDown(std::int16_t button, float x, float y) {
  Procedure run(trap, "kwraTools_MouseDown");
  if (button != Mouse::LeftButton) return;
  run([&] {
    layers.Drag().m_StartX = double{x};
    layers.Drag().m_StartY = double{y};
  });
  run([&] { m_IsToolboxDragging = true; });
  run([&] { form.kwraTools.SetPointer(MousePointer::SizeAll); });
}

void ToolBox::kwraTools_MouseMove(std::int16_t button, float x, float y) {
  Procedure run(trap, "kwraTools_MouseMove");
  if (button != Mouse::LeftButton || !m_IsToolboxDragging) return;
  run([&] { Follow(x, y); });
}

// At an edge the box stops and no longer follows the pointer until the button is pressed again.
void ToolBox::Follow(float x, float y) {
  const PictureBox& frame = form.picFrame;
  const RaisedArea& box = form.kwraTools;
  const float right = frame.Left() + frame.Width() - box.Width();
  const float bottom = frame.Top() + frame.Height() - box.Height();
  float top = box.Top() + y - static_cast<float>(layers.Drag().m_StartY);
  float left = box.Left() + x - static_cast<float>(layers.Drag().m_StartX);
  const auto stopAt = [this](float& place, float edge) {
    place = edge;
    m_IsToolboxDragging = false;
  };
  if (top < frame.Top() + EdgeMargin) stopAt(top, frame.Top() + EdgeMargin);
  if (left < frame.Left() + EdgeMargin) stopAt(left, frame.Left() + EdgeMargin);
  if (top > bottom - FarEdgeTest) stopAt(top, bottom - EdgeMargin);
  if (left > right - FarEdgeTest) stopAt(left, right - EdgeMargin);
  form.kwraTools.Move(left, top);
}

void ToolBox::kwraTools_MouseUp(std::int16_t button) {
  const Procedure run(trap, "kwraTools_MouseUp");
  if (button == Mouse::LeftButton) EndDrag();
}

void ToolBox::EndDrag() {
  Procedure run(trap);
  run([&] { m_IsToolboxDragging = false; });
  run([&] { form.kwraTools.SetPointer(MousePointer::Default); });
}

void ToolBox::kwrpHideToolBox_MouseDown(float x, float y) {
  Procedure run(trap, "kwrpHideToolBox_MouseDown");
  const RaisedPicture& button = form.kwrpHideToolBox;
  if (x < 0 || x > button.Width() || y < 0 || y > button.Height()) return;
  run([&] { state.LetIsToolboxVisible(false); });
}

}  // namespace kw
