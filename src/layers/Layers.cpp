#include "layers/Layers.h"

#include <algorithm>
#include <utility>

#include "components/base/Arithmetic.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

template <class T>
void UnloadAbove(ControlArray<T>& array, std::int16_t last) {
  while (array.UBound() > last) array.Unload(array.UBound());
}

void MoveBy(Control& control, float distance) { control.Move(control.Left() + distance, control.Top() + distance); }

}  // namespace

Layers::Layers(Desktop& platform, EditorForm& editorForm, Trap& errorTrap)
    : desktop(platform), form(editorForm), trap(errorTrap), stacking(editorForm), pickedDrag(editorForm) {
  form.TransLayers.ConnectItems([this](TransparentPicture& layer) {
    const std::int16_t index = layer.Index().value_or(0);
    layer.Change.Connect([this] { TransLayers_Change(); });
    layer.Typed.Connect([this, &layer] { GrowToText(layer); });
    layer.Activate.Connect([this, index] { TransLayers_Activate(index); });
    layer.Deactivate.Connect([this, index] { TransLayers_Deactivate(index); });
    layer.Pick.Connect([this, index] { PickByUser(index); });
    ConnectMouse(layer);
  });
  ConnectMouse(form.TransBackImage);
  form.tmrMoveLayer.Tick.Connect([this] { tmrMoveLayer_Timer(); });
  form.Label1.Click.Connect([this] { Label1_Click(); });
}

void Layers::ConnectMouse(TransparentPicture& layer) {
  const bool isBack = &layer == &form.TransBackImage;
  const auto connect = [&](auto& event, const char* procedure, const CanvasHandler& handler) {
    event.Connect([this, &layer, &handler, procedure](std::int16_t button, std::int16_t shift, float x, float y) {
      Forward(procedure, handler, layer, button, shift, x, y);
    });
  };
  connect(layer.MouseDown, isBack ? "TransBackImage_MouseDown" : "TransLayers_MouseDown", CanvasMouseDown);
  connect(layer.MouseMove, isBack ? "TransBackImage_MouseMove" : "TransLayers_MouseMove", CanvasMouseMove);
  connect(layer.MouseUp, isBack ? "TransBackImage_MouseUp" : "TransLayers_MouseUp", CanvasMouseUp);
}

void Layers::Forward(const char* procedure, const CanvasHandler& handler, const Control& layer, std::int16_t button,
                     std::int16_t shift, float x, float y) {
  Procedure run(trap, procedure);
  run([&] { handler.Raise(button, shift, x + layer.Left(), y + layer.Top()); });
}

std::shared_ptr<TransparentPicture> Layers::NewLayer() {
  Procedure run(trap, "NewLayer");
  const auto index = static_cast<std::int32_t>(form.TransLayers.UBound()) + 1;
  const auto load = [&] {
    stacking.MakeRoom();
    form.TransLayers.Load(index);
  };
  if (!run(load)) return nullptr;
  run([&] { form.TransLayers(index).SetLineWidth(ToInteger16(form.sldLineHeight.Value())); });
  // While an error was reported, the host may have opened another file.
  if (!form.TransLayers.IsLoaded(index)) return nullptr;
  run([&] { stacking.Append(ToInteger16(index)); });
  return form.TransLayers.Share(index);
}

void Layers::UnloadLayerItems() {
  Procedure run(trap, "UnloadLayerItems");
  run([&] { AbandonDrag(); });
  run([&] { UnloadAbove(form.TransLayers, PageLayer); });
  run([&] { stacking.Reset(); });
  run([&] {
    if (!form.TransLayers.IsLoaded(m_CurrentLayer)) m_CurrentLayer = PageLayer;
    if (!form.TransLayers.IsLoaded(activeLayer)) activeLayer = 0;
  });
}

bool Layers::BringForward() {
  Procedure run(trap, "BringForward");
  return run.Ask<bool>([&] { return stacking.BringForward(m_CurrentLayer); }, false);
}

bool Layers::SendBackward() {
  Procedure run(trap, "SendBackward");
  return run.Ask<bool>([&] { return stacking.SendBackward(m_CurrentLayer); }, false);
}

void Layers::RaiseAboveOthers(std::int16_t index) {
  class Borrowed {
  public:
    explicit Borrowed(Layers& room, std::int16_t raised)
        : layers(room), former(std::exchange(room.m_CurrentLayer, raised)) {}
    Borrowed(const Borrowed&) = delete;
    Borrowed& operator=(const Borrowed&) = delete;
    // The former one may have gone while an error was reported.
    ~Borrowed() { layers.m_CurrentLayer = layers.form.TransLayers.IsLoaded(former) ? former : PageLayer; }

  private:
    Layers& layers;
    std::int16_t former;
  };
  const Borrowed role(*this, index);
  while (BringForward()) continue;
}

void Layers::PassPress(std::int16_t index) {
  const std::int16_t before = activeLayer;
  activeLayer = index;
  if (before != index && before != 0) form.TransLayers(before).GiveUpActivation();
  if (index != 0) form.TransLayers(index).TakePress();
}

void Layers::PickByUser(std::int16_t index) {
  Procedure run(trap);
  const bool isPointer = run.Ask<bool>([&] { return form.tbrEditingTools.ButtonOf("NoTools").pressed; }, false);
  const bool isFree = !drag.m_IsMouseDown && !pickedDrag.IsUnderWay();
  const bool isFloating = index > PageLayer && form.TransLayers.IsLoaded(index) && form.TransLayers(index).Visible();
  if (isPointer && isFree && isFloating) run([&] { PassPress(index); });
}

std::int16_t Layers::PickedLayer() const {
  const bool isPicked = activeLayer > PageLayer && form.TransLayers.IsLoaded(activeLayer) &&
                        form.TransLayers(activeLayer).Visible() && form.TransLayers(activeLayer).SelectionFrame() != 0;
  return isPicked ? activeLayer : std::int16_t{0};
}

void Layers::PassPress(std::int16_t index, float x, float y) {
  // A press with another tool makes a layer the active one, too, but picks nothing.
  const bool wasPicked = activeLayer == index && form.TransLayers(index).SelectionFrame() != 0;
  PassPress(index);
  if (!form.TransLayers.IsLoaded(index)) return;
  const TransparentPicture& layer = form.TransLayers(index);
  if (layer.SelectionFrame() == 0 || !form.tbrEditingTools.ButtonOf("NoTools").pressed) return;
  isSecondPress = wasPicked;
  pickedDrag.Begin(index, x, y);
}

void Layers::EndPickedDrag() {
  if (!pickedDrag.IsUnderWay()) return;
  const bool hasMoved = pickedDrag.End();
  if (!hasMoved && isSecondPress && form.TransLayers.IsLoaded(activeLayer)) {
    form.TransLayers(activeLayer).SetTyping(true);
  }
}

void Layers::ShowCanvasPointer(std::int16_t exceptOver) {
  for (const auto& [index, layer] : form.TransLayers) {
    if (index != exceptOver) layer->SetPointer(MousePointer::Default);
  }
}

void Layers::AbandonDrag() {
  drag.m_IsMouseDown = false;
  pickedDrag.Cancel();
  form.tmrMoveLayer.SetEnabled(false);
  form.fr.SetVisible(false);
  UnloadAbove(form.point1, 0);
  form.point1(0).SetVisible(false);
}

void Layers::GrowToText(TransparentPicture& layer) {
  Procedure run(trap);
  run([&] {
    const auto width = std::max<std::int32_t>(1, RoundToEven<std::int32_t>(layer.Width()));
    const TextExtent room = desktop.MeasureText(layer.Caption(), layer.TextFont(), width);
    const auto height = static_cast<float>(room.height);
    if (height > layer.Height()) layer.SetHeight(height);
  });
}

void Layers::TransLayers_Change() {
  Procedure run(trap, "TransLayers_Change");
  const bool isOpen = HasPage();
  run([&] { form.tbrBasicTools(0).SetEnabled(isOpen); });
  run([&] { form.tbrBasicTools(1).SetEnabled(isOpen); });
  run([&] { form.frZoomFactorContainer.SetEnabled(isOpen); });
  run([&] { form.picFrame.SetEnabled(isOpen); });
  run([&] { form.kwraTools.SetEnabled(isOpen); });
  run([&] {
    if (!isOpen) {
      form.lblImageSize.SetCaption("");
      return;
    }
    const TransparentPicture& page = form.TransLayers(PageLayer);
    const auto width = RoundToEven<std::int32_t>(page.Width());
    const auto height = RoundToEven<std::int32_t>(page.Height());
    form.lblImageSize.SetCaption("Size: " + std::to_string(width) + " x " + std::to_string(height));
  });
}

void Layers::TransLayers_Activate(std::int16_t index) {
  Procedure run(trap, "TransLayers_Activate");
  if (index == PageLayer) return;
  if (!run.Ask<bool>([&] { return form.tbrEditingTools.ButtonOf("NoTools").pressed; }, false)) return;
  run([&] { m_CurrentLayer = index; });
  if (run.Ask<bool>([&] { return form.TransLayers(index).SelectionFrame() == 1; }, true)) return;
  run([&] { form.TransLayers(index).SetIsToShowBorderMarks(false); });
  run([&] { form.TransLayers(index).SetSelectionFrame(1); });
  run([&] { MoveBy(form.TransLayers(index), -1); });  // what it shows stays in place within the frame
  run([&] { form.TransLayers(index).SetIsToShowResize(true); });
}

void Layers::TransLayers_Deactivate(std::int16_t index) {
  Procedure run(trap, "TransLayers_Deactivate");
  if (index == PageLayer) return;
  if (run.Ask<bool>([&] { return form.TransLayers(index).SelectionFrame() == 0; }, true)) return;
  run([&] { form.TransLayers(index).SetSelectionFrame(0); });
  run([&] { MoveBy(form.TransLayers(index), 1); });
  run([&] { form.TransLayers(index).SetIsToShowResize(false); });
}

void Layers::tmrMoveLayer_Timer() {
  Procedure run(trap, "tmrMoveLayer_Timer");
  if (!drag.m_IsMouseDown) return;
  run([&] {
    const Control* const active = form.editor.ActiveControl();
    TransparentPicture& fr = form.fr;
    if (active == nullptr || active->Name() != form.picCanvas.Name()) {
      // The distance is used up, so the frame follows the pointer one to one.
      fr.Move(fr.Left() + static_cast<float>(drag.m_CurrentX - drag.followedX),
              fr.Top() + static_cast<float>(drag.m_CurrentY - drag.followedY));
      drag.followedX = drag.m_CurrentX;
      drag.followedY = drag.m_CurrentY;
      return;
    }
    const double left = std::min(drag.m_StartX, drag.m_CurrentX);
    const double top = std::min(drag.m_StartY, drag.m_CurrentY);
    fr.Move(static_cast<float>(left), static_cast<float>(top),
            static_cast<float>(std::max(drag.m_StartX, drag.m_CurrentX) - left),
            static_cast<float>(std::max(drag.m_StartY, drag.m_CurrentY) - top));
  });
  run([&] { form.fr.SetVisible(true); });
}

// Five circles of random place and colour.
void Layers::Label1_Click() {
  Procedure run(trap, "Label1_Click");
  run([&] {
    const LocalTime now = desktop.Time();
    generator.seed(static_cast<std::uint32_t>((now.hour * 60 + now.minute) * 60 + now.second));
  });
  for (int i = 1; i <= 5; ++i) {
    run([&] { form.tbrEditingTools.SetButtonPressed("Circle", true); });
    AddLabelLayer(run);
  }
}

std::int32_t Layers::RandomBelow(double limit) {
  return static_cast<std::int32_t>(std::uniform_real_distribution<double>(0, 1)(generator) * limit);
}

void Layers::AddLabelLayer(Procedure& run) {
  run([&] { BeforeLabelLayer.Raise(); });
  const std::shared_ptr<const TransparentPicture> made = NewLayer();
  if (made == nullptr) return;
  const std::int16_t index = made->Index().value_or(PageLayer);
  const auto layer = [this, index]() -> TransparentPicture& { return form.TransLayers(index); };
  run([&] { layer().SetCaption("\r\n  Layer # " + std::to_string(index) + "  \r\n"); });
  const auto colour = static_cast<Colour>(RandomBelow(1000000));
  run([&] { layer().SetForeColor(colour); });
  run([&] { layer().SetLineColor(colour); });
  run([&] {
    constexpr float diameter = 60;
    const PictureBox& canvas = form.picCanvas;
    const auto left = static_cast<float>(RandomBelow(canvas.Width()));
    const auto top = static_cast<float>(RandomBelow(canvas.Height()));
    const auto size = diameter + static_cast<float>(form.sldLineHeight.Value());
    layer().Move(left, top, size, size);
  });
  run([&] { layer().SetVisible(true); });
  run([&] { layer().SetFigure({.kind = FigureKind::Ellipse}); });
}

}  // namespace kw
