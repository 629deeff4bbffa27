#include "view/Scrolling.h"

#include <cmath>

#include "components/base/Arithmetic.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

void SetRange(Procedure& run, ScrollBar& bar, float canvasExtent, float frameExtent) {
  run([&] { bar.SetMin(0); });
  const bool isNeeded = canvasExtent > frameExtent;
  run([&] { bar.SetMax(isNeeded ? RoundToEven<std::int32_t>(canvasExtent - frameExtent + Scrolling::Margin) : 0); });
  run([&] { bar.SetLargeChange(isNeeded ? RoundToEven<std::int16_t>(frameExtent) : std::int16_t{1}); });
  run([&] { bar.SetSmallChange(1); });
  run([&] { bar.SetEnabled(isNeeded); });
}

}  // namespace

Scrolling::Scrolling(EditorForm& editorForm, Trap& errorTrap) : form(editorForm), trap(errorTrap) {
  form.picCanvas.Resize.Connect([this] { picCanvas_Resize(); });
  form.picFrame.Resize.Connect([this] { PicFrame_Resize(); });
  form.vScroll.Change.Connect([this] { vScroll_change(); });
  form.hScroll.Change.Connect([this] { HScroll_change(); });
  form.vScroll.GotFocus.Connect([this] { vScroll_GotFocus(); });
  form.hScroll.GotFocus.Connect([this] { hScroll_GotFocus(); });
}

void Scrolling::SetScrollBalValues() {
  Procedure run(trap, "SetScrollBalValues");
  SetRange(run, form.vScroll, form.picCanvas.Height(), form.picFrame.Height());
  SetRange(run, form.hScroll, form.picCanvas.Width(), form.picFrame.Width());
}

void Scrolling::SetScrollBarPositions() {
  Procedure run(trap, "SetScrollBarPositions");
  const PictureBox& frame = form.picFrame;
  run([&] { form.vScroll.Move(frame.Left() + frame.Width(), frame.Top(), form.vScroll.Width(), frame.Height()); });
  run([&] { form.hScroll.Move(frame.Left(), frame.Top() + frame.Height(), frame.Width(), form.hScroll.Height()); });
}

void Scrolling::picCanvas_Resize() {
  Procedure run(trap, "picCanvas_Resize");
  run([&] { SetScrollBalValues(); });
}

void Scrolling::PicFrame_Resize() {
  Procedure run(trap, "PicFrame_Resize");
  run([&] { SetScrollBarPositions(); });
  run([&] { SetScrollBalValues(); });
}

void Scrolling::vScroll_change() {
  Procedure run(trap, "vScroll_change");
  run([&] { form.picCanvas.SetTop(static_cast<float>(-form.vScroll.Value())); });
}

void Scrolling::HScroll_change() {
  Procedure run(trap, "HScroll_change");
  run([&] { form.picCanvas.SetLeft(static_cast<float>(-form.hScroll.Value())); });
}

void Scrolling::vScroll_GotFocus() {
  Procedure run(trap, "vScroll_GotFocus");
  run([&] {
    if (form.picCanvas.CanTakeFocus())
      form.picCanvas.SetFocus();
    else if (form.picFrame.CanTakeFocus())
      form.picFrame.SetFocus();
  });
}

void Scrolling::hScroll_GotFocus() {
  Procedure run(trap, "hScroll_GotFocus");
  run([&] { vScroll_GotFocus(); });
}

}  // namespace kw
