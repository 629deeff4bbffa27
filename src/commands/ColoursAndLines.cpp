#include "commands/ColoursAndLines.h"

#include <string>

#include "components/Arithmetic.h"
#include "trap/Procedure.h"

namespace kw {

ColoursAndLines::ColoursAndLines(EditorForm& editorForm, Trap& errorTrap, Layers& layerArray)
    : form(editorForm), trap(errorTrap), layers(layerArray) {
  form.sldLineHeight.Change.Connect([this] { sldLineHeight_Change(); });
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

}  // namespace kw
