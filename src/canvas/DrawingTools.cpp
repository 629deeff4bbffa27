#include "canvas/DrawingTools.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "components/base/Units.h"
#include "scene/HitTest.h"

namespace kw {
DrawingTools::DrawingTools(const EditorContext& context, ToolKit& tools) : EditorContext(context), kit(tools) {
  const auto connect = [this](auto& event, auto handler) {
    event.Connect([this, handler](std::int16_t button, std::int16_t shift, float x, float y) {
      (this->*handler)(button, shift, x, y);
    });
  };
  connect(form.picCanvas.MouseDown, &DrawingTools::picCanvas_MouseDown);
  connect(form.picCanvas.MouseMove, &DrawingTools::picCanvas_MouseMove);
  connect(form.picCanvas.MouseUp, &DrawingTools::picCanvas_MouseUp);
  connect(layers.CanvasMouseDown, &DrawingTools::picCanvas_MouseDown);
  connect(layers.CanvasMouseMove, &DrawingTools::picCanvas_MouseMove);
  connect(layers.CanvasMouseUp, &DrawingTools::picCanvas_MouseUp);
  form.picCanvas.MouseLost.Connect([this] {
    Procedure run(trap);
    run([&] { layers.AbandonDrag(); });
  });
}

void DrawingTools::picCanvas_MouseDown(std::int16_t button, std::int16_t shift, float x, float y) {
  Procedure run(trap);
  CatchUp(run);
  if (isStrokeEnding) FinishStroke(run);
  // Another button in the middle of a drag ends it without a result.
  run([&] { layers.AbandonDrag(); });
  if (button != Mouse::LeftButton && button != Mouse::RightButton) return;
  const auto layer = run.Ask<std::int16_t>([&] { return LayerAt(x, y); }, 0);
  if (layer != 0) {
    run([&] { layers.ZOrder().BringToFront(layer); });
    if (button == Mouse::RightButton) {
      run([&] { layers.PassPress(layer); });
      run([&] { form.mnuImgSelectedArea.PopUp(); });
    } else {
      run([&] { layers.PassPress(layer, x, y); });
    }
    return;
  }
  if (button == Mouse::RightButton) return;
  run([&] { layers.PassPress(0); });
  const Tool* const tool = CurrentTool(run);
  if (tool != nullptr && tool->gesture == Gesture::Press) return tool->act(kit, run, {shift, x, y});
  run([&] { BeginDrag(x, y); });
  if (tool != nullptr && tool->gesture == Gesture::Point) {
    tool->act(kit, run, {shift, x, y});
    run([&] { layers.AbandonDrag(); });  // nothing is dragged out of a point
  } else if (tool != nullptr && tool->gesture == Gesture::Stroke) {
    tool->act(kit, run, {shift, x, y});
  } else {
    run([&] { form.tmrMoveLayer.SetEnabled(true); });
  }
}

const Tool* DrawingTools::CurrentTool(Procedure& run) const {
  return run.Ask<const Tool*>([&] { return kit.CurrentTool(); }, nullptr);
}

void DrawingTools::picCanvas_MouseMove(std::int16_t button, std::int16_t shift, float x, float y) {
  Procedure run(trap);
  moves.push_back({button, shift, x, y});
  DoEvents(run);
  CatchUp(run);
}

void DrawingTools::DoEvents(Procedure& run) {
  if (isInEvents) return;
  struct UnderWay {
    explicit UnderWay(bool& mark) : flag(mark) { mark = true; }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;
    ~UnderWay() { flag = false; }
    bool& flag;
  };
  const UnderWay underWay(isInEvents);
  run([&] { desktop.DoEvents(); });
}

void DrawingTools::CatchUp(Procedure& run) {
  while (!moves.empty()) {
    const Move next = moves.front();
    moves.pop_front();
    MoveTo(run, next);
  }
}

void DrawingTools::MoveTo(Procedure& run, const Move& move) {
  const DragState& drag = layers.Drag();
  if (layers.PickedDrag().IsUnderWay()) {
    run([&] { layers.PickedDrag().MoveTo(move.x, move.y, (move.shift & Mouse::ShiftKey) != 0); });
    return;
  }
  const bool isDragging = drag.m_IsMouseDown && move.button == Mouse::LeftButton;
  const Tool* const tool = CurrentTool(run);
  const bool isStroke = tool != nullptr && tool->gesture == Gesture::Stroke;
  if (isDragging && isStroke) {
    if (run.Ask<bool>([&] { return kit.stroke.IsUnderWay(); }, false))
      run([&] { kit.stroke.Continue(move.x, move.y); });
    else
      tool->act(kit, run, {move.shift, move.x, move.y});  // the drag began with another tool
  }
  run([&] {
    if (!drag.m_IsMouseDown) ShowHover(tool == &tools::NoTools, move.x, move.y);
  });
  run([&] {
    if (isDragging && !isStroke) DrawRubberBand(move.x, move.y);
  });
}

void DrawingTools::picCanvas_MouseUp(std::int16_t button, std::int16_t shift, float x, float y) {
  static_cast<void>(button);
  static_cast<void>(shift);
  static_cast<void>(x);
  static_cast<void>(y);
  Procedure run(trap);
  CatchUp(run);
  run([&] { layers.Drag().m_IsMouseDown = false; });
  run([&] { form.tmrMoveLayer.SetEnabled(false); });
  run([&] { layers.EndPickedDrag(); });
  const Tool* const tool = CurrentTool(run);
  if (tool != nullptr && tool->gesture == Gesture::Stroke) {
    // The tool may have been another one when the drag began.
    run([&] { form.fr.SetVisible(false); });
    isStrokeEnding = kit.stroke.IsUnderWay();
    if (!isStrokeEnding) return;
    DoEvents(run);
    if (isStrokeEnding) FinishStroke(run);  // unless the next press has done that
    return;
  }
  EndDrag(run, tool);
  run([&] { kit.stroke.Drop(); });
}

void DrawingTools::FinishStroke(Procedure& run) {
  isStrokeEnding = false;
  run([&] {
    if (kit.stroke.IsUnderWay()) kit.stroke.MakeLayer();
  });
  run([&] { kit.stroke.Drop(); });
}

std::int16_t DrawingTools::LayerAt(float x, float y) const {
  const std::vector<std::int16_t>& order = layers.ZOrder().Order();
  const auto found = std::find_if(order.rbegin(), order.rend(), [&](std::int16_t index) {
    if (index == Layers::PageLayer) return false;  // a press on the page is a press on the canvas
    const TransparentPicture& layer = form.TransLayers(index);
    return layer.Visible() && IsPointInLayer(layer, x, y);
  });
  return found == order.rend() ? std::int16_t{0} : *found;
}

void DrawingTools::BeginDrag(float x, float y) {
  DragState& drag = layers.Drag();
  const PictureBox& canvas = form.picCanvas;
  drag.m_StartX = drag.m_CurrentX = drag.followedX = std::clamp(double{x}, 0.0, double{canvas.Width()});
  drag.m_StartY = drag.m_CurrentY = drag.followedY = std::clamp(double{y}, 0.0, double{canvas.Height()});
  drag.m_IsMouseDown = true;
}

void DrawingTools::ShowHover(bool isPointer, float x, float y) {
  const std::int16_t under = isPointer ? LayerAt(x, y) : std::int16_t{0};
  for (const std::int16_t index : layers.ZOrder().Order()) {
    if (index != Layers::PageLayer) form.TransLayers(index).SetIsToShowBorderMarks(index == under);
  }
  layers.ShowCanvasPointer(under);
  if (under == 0) return;
  TransparentPicture& layer = form.TransLayers(under);
  layers.ZOrder().BringToFront(under);
  layer.SetPointer(LayerDrag::PointerAt(layer, x, y));
}

void DrawingTools::DrawRubberBand(float x, float y) {
  DragState& drag = layers.Drag();
  const PictureBox& canvas = form.picCanvas;
  drag.m_CurrentX = drag.followedX = std::clamp(double{x}, 0.0, double{canvas.Width()});
  drag.m_CurrentY = drag.followedY = std::clamp(double{y}, 0.0, double{canvas.Height()});
  const double left = std::min(drag.m_StartX, drag.m_CurrentX);
  const double top = std::min(drag.m_StartY, drag.m_CurrentY);
  form.fr.Move(static_cast<float>(left), static_cast<float>(top),
               static_cast<float>(std::abs(drag.m_CurrentX - drag.m_StartX)),
               static_cast<float>(std::abs(drag.m_CurrentY - drag.m_StartY)));
  form.fr.ZOrder();
  form.fr.SetVisible(true);
}

void DrawingTools::EndDrag(Procedure& run, const Tool* tool) {
  if (!form.fr.Visible()) return;
  run([&] { form.fr.SetVisible(false); });
  const Control* const active = form.editor.ActiveControl();
  if (active == nullptr || active->Name() != form.picCanvas.Name()) return;
  const DragState& drag = layers.Drag();
  // Five pixels of the screen, in both directions by the horizontal figure.
  const float leastDrag = 5 * desktop.TwipsPerPixelX() / TwipsPerPixel;
  const bool isLargeEnough = std::abs(static_cast<float>(drag.m_StartX - drag.m_CurrentX)) > leastDrag &&
                             std::abs(static_cast<float>(drag.m_StartY - drag.m_CurrentY)) > leastDrag;
  if (isLargeEnough && tool != nullptr && tool->gesture == Gesture::Frame) tool->act(kit, run, {});
}

}  // namespace kw
