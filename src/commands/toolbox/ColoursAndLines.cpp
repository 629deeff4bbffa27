#include "commands/toolbox/ColoursAndLines.h"

#include <algorithm>
#include <string>

#include "components/base/Arithmetic.h"
#include "trap/Procedure.h"

namespace kw {

ColoursAndLines::ColoursAndLines(const EditorContext& context) : EditorContext(context) {
  form.sldLineHeight.Change.Connect([this] { sldLineHeight_Change(); });
  form.sldLineHeight.LostFocus.Connect([this] { sldLineHeight_LostFocus(); });
  form.lblLineSize1.MouseDown.Connect(
      [this](std::int16_t button, std::int16_t, float x, float) { lblLineSize1_MouseDown(button, x); });
  form.lblLineSize2.MouseDown.Connect([this](std::int16_t button, std::int16_t, float x, float) {
    lblLineSize2_MouseDown(button, x + form.lblLineSize2.Left() - form.lblLineSize1.Left());
  });
  ConnectDrag(form.lblLineSize1);
  ConnectDrag(form.lblLineSize2);
}

void ColoursAndLines::ConnectDrag(Label& caption) {
  caption.MouseMove.Connect([this, &caption](std::int16_t buttons, std::int16_t, float x, float) {
    if (buttons == Mouse::LeftButton) DragThickness(caption.Left() + x);
  });
  caption.MouseUp.Connect([this](std::int16_t button, std::int16_t, float, float) {
    if (button == Mouse::LeftButton) captionDrag.reset();
  });
  caption.MouseLost.Connect([this] { captionDrag.reset(); });
}

void ColoursAndLines::LetEditorForeColor(Colour value) {
  Procedure run(trap, "Let EditorForeColor");
  run([&] { foreColor = value; });
  run([&] { form.SampleForeGroundColor.SetBackColor(value); });
  run([&] { layers.CurrentLayer().SetForeColor(value); });
  run([&] { form.lblSampleColor.SetForeColor(value); });
}

void ColoursAndLines::LetEditorBackColor(Colour value) {
  Procedure run(trap, "Let EditorBackColor");
  run([&] { backColor = value; });
  run([&] { form.SampleBackGroundColor.SetBackColor(value); });
  run([&] { layers.CurrentLayer().SetBackColor(value); });
  run([&] { layers.CurrentLayer().SetFillColor(value); });
  run([&] { form.lblSampleColor.SetBackColor(value); });
}

void ColoursAndLines::sldLineHeight_Change() {
  Procedure run(trap, "sldLineHeight_Change");
  const Slider& slider = form.sldLineHeight;
  run([&] {
    form.SampleLine.SetHeight(ToInteger16(std::int64_t{slider.Value()} * static_cast<std::int64_t>(TwipsPerPixel)));
  });
  run([&] { form.SampleLine.SetTop(slider.Top() - form.SampleLine.Height() - TwipsPerPixel); });
  const std::string caption = "Thickness " + std::to_string(slider.Value());
  run([&] { form.lblLineSize1.SetCaption(caption); });
  run([&] { form.lblLineSize2.SetCaption(caption); });
  run([&] {
    // The captioned thumb: where the slider's own thumb stands, two steps in.
    const auto steps = static_cast<float>(slider.Value() - slider.Min() + 2);
    const auto all = static_cast<float>(slider.Max() - slider.Min() + 2);
    const float room = slider.Width() - form.lblLineSize2.Width();
    form.lblLineSize2.SetLeft(slider.Left() + room * steps / all);
  });
}

void ColoursAndLines::sldLineHeight_LostFocus() { const Procedure run(trap, "sldLineHeight_LostFocus"); }

void ColoursAndLines::lblLineSize1_MouseDown(std::int16_t button, float x) {
  const Procedure run(trap, "lblLineSize1_MouseDown");
  if (button == Mouse::LeftButton) captionDrag = {form.lblLineSize1.Left() + x, form.sldLineHeight.Value()};
}

void ColoursAndLines::lblLineSize2_MouseDown(std::int16_t button, float x) {
  Procedure run(trap, "lblLineSize2_MouseDown");
  run([&] { lblLineSize1_MouseDown(button, x); });
}

void ColoursAndLines::DragThickness(float place) {
  Slider& slider = form.sldLineHeight;
  if (!captionDrag || slider.Width() <= 0) return;
  Procedure run(trap);
  run([&] {
    const double share = std::clamp(double{place - captionDrag->start} / double{slider.Width()}, -1.0, 1.0);
    const std::int32_t span = slider.Max() - slider.Min();
    slider.SetValue(captionDrag->value + RoundToEven<std::int32_t>(share * span));
  });
}

Colour ColoursAndLines::RandomColour(const std::function<double()>& random) {
  Colour colour = 0;
  for (int i = 0; i < 3; ++i) {
    const auto number = static_cast<Colour>(RoundToEven<std::int32_t>(random() * 1000000) % 255);
    colour = (colour << (number < 0x10 ? 4U : 8U)) | number;
  }
  return colour;
}

}  // namespace kw
