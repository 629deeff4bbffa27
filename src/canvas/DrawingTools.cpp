#include "canvas/DrawingTools.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "canvas/PenStroke.h"
#include "components/Arithmetic.h"
#include "layers/PointInRect.h"

namespace kw {

DrawingTools::DrawingTools(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, Layers& layerArray)
    : desktop(platform), form(editorForm), trap(errorTrap), layers(layerArray) {
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
}

void DrawingTools::picCanvas_MouseDown(std::int16_t button, std::int16_t shift, float x, float y) {
  static_cast<void>(shift);
  if (button != Mouse::LeftButton && button != Mouse::RightButton) return;
  Procedure run(trap);
  const auto layer = run.Ask<std::int16_t>([&] { return LayerAt(x, y); }, 0);
  if (layer != 0) {
    run([&] { GiveToLayer(layer); });
    run([&] {
      if (button == Mouse::RightButton) form.mnuImgSelectedArea.PopUp();
    });
    return;
  }
  if (button == Mouse::RightButton) return;
  run([&] { layers.PassPress(0); });
  if (run.Ask<bool>([&] { return IsPressed("Stamp"); }, false)) {
    run([&] { StampRequested.Raise(x, y); });
    return;
  }
  run([&] { BeginDrag(x, y); });
  run([&] {
    if (IsPressed("Pen"))
      LayFirstMarker();
    else
      form.tmrMoveLayer.SetEnabled(true);
  });
}

void DrawingTools::picCanvas_MouseMove(std::int16_t button, std::int16_t shift, float x, float y) {
  static_cast<void>(shift);
  Procedure run(trap);
  run([&] { desktop.DoEvents(); });
  const DragState& drag = layers.Drag();
  run([&] {
    if (IsPressed("Pen") && drag.m_IsMouseDown && button == Mouse::LeftButton) LayMarker(x, y);
  });
  run([&] {
    if (IsPressed("NoTools") && !drag.m_IsMouseDown) ShowHover(x, y);
  });
  run([&] {
    if (button == Mouse::LeftButton && drag.m_IsMouseDown && !IsPressed("Pen")) DrawRubberBand(x, y);
  });
}

void DrawingTools::picCanvas_MouseUp(std::int16_t button, std::int16_t shift, float x, float y) {
  static_cast<void>(button);
  static_cast<void>(shift);
  static_cast<void>(x);
  static_cast<void>(y);
  Procedure run(trap);
  const bool wasDown = layers.Drag().m_IsMouseDown;
  run([&] { layers.Drag().m_IsMouseDown = false; });
  run([&] { form.tmrMoveLayer.SetEnabled(false); });
  if (!run.Ask<bool>([&] { return IsPressed("Pen"); }, false))
    EndDrag(run);
  else if (wasDown)
    EndStroke(run);
}

std::int16_t DrawingTools::LayerAt(float x, float y) const {
  const std::vector<std::int16_t>& order = layers.ZOrder().Order();
  const auto found = std::find_if(order.rbegin(), order.rend(), [&](std::int16_t index) {
    if (index == Layers::PageLayer) return false;  // a press on the page is a press on the canvas
    const TransparentPicture& layer = form.TransLayers(index);
    return IsPointIn(layer, x, y) && layer.Visible();
  });
  return found == order.rend() ? std::int16_t{0} : *found;
}

void DrawingTools::GiveToLayer(std::int16_t layer) {
  layers.Drag().m_IsMouseDown = false;
  layers.ZOrder().BringToFront(layer);
  layers.PassPress(layer);
}

void DrawingTools::BeginDrag(float x, float y) {
  DragState& drag = layers.Drag();
  drag.m_StartX = drag.m_CurrentX = double{x};
  drag.m_StartY = drag.m_CurrentY = double{y};
  drag.m_IsMouseDown = true;
}

// A marker is as large as the line and lies with its middle at the pointer.
void DrawingTools::LayFirstMarker() {
  LightWeightMarker& marker = form.point1(0);
  const auto size = static_cast<float>(form.sldLineHeight.Value());
  const DragState& drag = layers.Drag();
  marker.SetColor(form.SampleForeGroundColor.BackColor());
  marker.Move(static_cast<float>(drag.m_StartX) - size / 2, static_cast<float>(drag.m_StartY) - size / 2, size, size);
  marker.ZOrder();
  marker.SetVisible(true);
}

void DrawingTools::LayMarker(float x, float y) {
  const LightWeightMarker& last = form.point1(form.point1.UBound());
  const float half = last.Width() / 2;
  const float left = std::nearbyint(x) - half;
  const float top = std::nearbyint(y) - half;
  if (left == last.Left() && top == last.Top()) return;  // one marker a place
  LightWeightMarker& marker = form.point1.Load(static_cast<std::int32_t>(form.point1.UBound()) + 1);
  marker.Move(left, top, last.Width(), last.Height());
  marker.ZOrder();
  marker.SetVisible(true);
}

void DrawingTools::ShowHover(float x, float y) {
  const std::int16_t under = LayerAt(x, y);
  for (const std::int16_t index : layers.ZOrder().Order()) {
    if (index != Layers::PageLayer) form.TransLayers(index).SetIsToShowBorderMarks(index == under);
  }
}

void DrawingTools::DrawRubberBand(float x, float y) {
  DragState& drag = layers.Drag();
  const PictureBox& canvas = form.picCanvas;
  drag.m_CurrentX = std::clamp(double{x}, 0.0, double{canvas.Width()});
  drag.m_CurrentY = std::clamp(double{y}, 0.0, double{canvas.Height()});
  const double left = std::min(drag.m_StartX, drag.m_CurrentX);
  const double top = std::min(drag.m_StartY, drag.m_CurrentY);
  form.fr.Move(static_cast<float>(left), static_cast<float>(top),
               static_cast<float>(std::abs(drag.m_CurrentX - drag.m_StartX)),
               static_cast<float>(std::abs(drag.m_CurrentY - drag.m_StartY)));
  form.fr.ZOrder();
  form.fr.SetVisible(true);
}

void DrawingTools::EndDrag(Procedure& run) {
  if (!form.fr.Visible()) return;
  run([&] { form.fr.SetVisible(false); });
  const Control* const active = form.editor.ActiveControl();
  if (active == nullptr || active->Name() != form.picCanvas.Name()) return;
  const DragState& drag = layers.Drag();
  constexpr float leastDrag = 5;  // screen pixels; the canvas measures in these
  const bool isLargeEnough = std::abs(static_cast<float>(drag.m_StartX - drag.m_CurrentX)) > leastDrag &&
                             std::abs(static_cast<float>(drag.m_StartY - drag.m_CurrentY)) > leastDrag;
  if (isLargeEnough) MakeLayer(run);
}

void DrawingTools::MakeLayer(Procedure& run) {
  struct Tool {
    const char* key;
    FigureKind kind;
  };
  constexpr Tool tools[] = {{"NoTools", FigureKind::Picture},
                            {"Text", FigureKind::Text},
                            {"Circle", FigureKind::Ellipse},
                            {"Line", FigureKind::Line},
                            {"Rectangle", FigureKind::Rectangle}};
  const auto* const tool =
      std::find_if(std::begin(tools), std::end(tools), [&](const Tool& one) { return IsPressed(one.key); });
  if (tool == std::end(tools)) return;
  if (!run([&] { layers.NewLayer(); })) return;
  const std::int16_t index = form.TransLayers.UBound();
  TransparentPicture& layer = form.TransLayers(index);
  const TransparentPicture& fr = form.fr;
  run([&] { layer.SetIsToShowResize(false); });
  run([&] { layer.Move(fr.Left(), fr.Top(), fr.Width(), fr.Height()); });
  run([&] { layer.SetVisible(true); });
  run([&] { layer.SetLineColor(form.SampleForeGroundColor.BackColor()); });
  run([&] { layer.SetLineWidth(ToInteger16(form.sldLineHeight.Value())); });
  const Colour back = form.SampleBackGroundColor.BackColor();
  run([&] { layer.SetBackColor(back); });
  run([&] { layer.SetForeColor(form.SampleForeGroundColor.BackColor()); });
  run([&] {
    const bool isHollow = form.tbrFillPattern.ButtonOf("NoFillInside").pressed;
    layer.SetTransparentColor(isHollow ? back : RoundToEven<Colour>(static_cast<double>(back) / 2 + 10));
  });
  run([&] { layer.SetStyle(0); });
  const DragState& drag = layers.Drag();
  run([&] {
    layer.SetFigure(
        {.kind = tool->kind, .isRising = (drag.m_CurrentX - drag.m_StartX) * (drag.m_CurrentY - drag.m_StartY) < 0});
  });
  run([&] { layer.SetTextEntry(tool->kind == FigureKind::Text); });
  if (tool->kind != FigureKind::Picture) return;
  run([&] { layers.SetCurrentLayer(index); });
  while (layers.BringForward()) continue;
}

void DrawingTools::EndStroke(Procedure& run) {
  run([&] { desktop.DoEvents(); });
  const auto size = static_cast<float>(form.sldLineHeight.Value());
  std::vector<Point> centres;
  run([&] {
    for (const auto& [index, marker] : form.point1) {
      centres.push_back({double{marker->Left() + marker->Width() / 2}, double{marker->Top() + marker->Height() / 2}});
    }
  });
  run([&] {
    float left = form.point1(0).Left();
    float top = form.point1(0).Top();
    float right = left + size;
    float bottom = top + size;
    for (const auto& [index, marker] : form.point1) {
      left = std::min(left, marker->Left());
      top = std::min(top, marker->Top());
      right = std::max(right, marker->Left() + marker->Width());
      bottom = std::max(bottom, marker->Top() + marker->Height());
    }
    constexpr float rim = 1;  // for the edge's soft pixels
    left = std::floor(left) - rim;
    top = std::floor(top) - rim;
    const auto width = static_cast<std::int32_t>(std::ceil(right + rim - left));
    const auto height = static_cast<std::int32_t>(std::ceil(bottom + rim - top));
    for (Point& centre : centres) {
      centre.x -= double{left};
      centre.y -= double{top};
    }
    const Colour colour = form.point1(0).Color();
    form.picTempBuffer.SetPicture(PictureOfStroke(centres, double{size}, colour, width, height));
    TransparentPicture& layer = layers.NewLayer();
    layer.Move(left, top, static_cast<float>(width), static_cast<float>(height));
    layer.SetPicture(form.picTempBuffer.Picture());
    layer.SetVisible(true);
  });
  run([&] {
    while (form.point1.UBound() > 0) form.point1.Unload(form.point1.UBound());
  });
  run([&] { form.point1(0).SetVisible(false); });
}

}  // namespace kw
