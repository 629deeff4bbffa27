#include "commands/toolbox/ColourPicker.h"

#include "components/base/Arithmetic.h"
#include "scene/ColourMap.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

// Where a position before the palette's near edge, or past its far one, is taken to be: so many pixels inside.
constexpr float NearInset = 2;
constexpr float FarInset = 5;

float Clamp(float position, float extent, float twipsPerPixel) {
  if (position < 0) position = NearInset * twipsPerPixel;
  if (position > extent) position = extent - FarInset * twipsPerPixel;
  return position;
}

}  // namespace

ColourPicker::ColourPicker(const EditorContext& context, ColoursAndLines& colours)
    : EditorContext(context), coloursAndLines(colours) {
  form.SampleForeGroundColor.Click.Connect([this] { SampleForeGroundColor_Click(); });
  form.SampleBackGroundColor.Click.Connect([this] { SampleBackGroundColor_Click(); });
  form.SampleForeGroundColor.DblClick.Connect([this] { SampleForeGroundColor_DblClick(); });
  form.SampleBackGroundColor.DblClick.Connect([this] { SampleBackGroundColor_DblClick(); });
  form.kwrpColors.GotFocus.Connect([this] { picColors_GotFocus(); });
  form.kwrpColors.LostFocus.Connect([this] { picColors_LostFocus(); });
  form.kwrpColors.MouseMove.Connect(
      [this](std::int16_t button, std::int16_t, float x, float y) { picColors_MouseMove(button, x, y); });
  form.kwrpColors.MouseUp.Connect(
      [this](std::int16_t button, std::int16_t, float x, float y) { kwrpColors_MouseUp(button, x, y); });
}

std::string ColourPicker::ReadOut(Colour colour) {
  const auto value = static_cast<std::int32_t>(colour);
  const auto first = RoundToEven<std::int32_t>(value / 65535.0);
  const auto second = RoundToEven<std::int32_t>(value / 255.0) % 255;
  return "R: " + std::to_string(first) + " G: " + std::to_string(second) + " B: " + std::to_string(value % 255);
}

void ColourPicker::OpenPalette(const char* procedure, bool isFore) {
  Procedure run(trap, procedure);
  run([&] { m_IsPickingForeColor = isFore; });
  run([&] { form.kwrpColors.SetVisible(true); });
  run([&] { form.kwrpColors.SetFocus(); });
}

void ColourPicker::SampleForeGroundColor_Click() { OpenPalette("SampleForeGroundColor_Click", true); }
void ColourPicker::SampleBackGroundColor_Click() { OpenPalette("SampleBackGroundColor_Click", false); }

void ColourPicker::SampleForeGroundColor_DblClick() {
  Procedure run(trap, "SampleForeGroundColor_DblClick");
  Colour colour = coloursAndLines.EditorForeColor();
  run([&] { desktop.ShowColor(colour); });  // cancelled, it leaves the colour as it is
  run([&] { coloursAndLines.LetEditorForeColor(colour); });
  run([&] { form.lblSampleColor.SetForeColor(colour); });
  run([&] { form.lblSampleColor.SetCaption(ReadOut(colour)); });
}

void ColourPicker::SampleBackGroundColor_DblClick() {
  Procedure run(trap, "SampleBackGroundColor_DblClick");
  Colour colour = coloursAndLines.EditorBackColor();
  run([&] { desktop.ShowColor(colour); });
  run([&] { coloursAndLines.LetEditorBackColor(colour); });
  run([&] { form.lblSampleColor.SetBackColor(colour); });
  run([&] { form.lblSampleColor.SetCaption(ReadOut(colour)); });
}

void ColourPicker::picColors_GotFocus() {
  Procedure run(trap, "picColors_GotFocus");
  run([&] {
    form.lblSampleColor.SetCaption(
        ReadOut(m_IsPickingForeColor ? coloursAndLines.EditorForeColor() : coloursAndLines.EditorBackColor()));
  });
}

void ColourPicker::picColors_LostFocus() {
  Procedure run(trap, "picColors_LostFocus");
  run([&] { form.kwrpColors.SetVisible(false); });
}

void ColourPicker::picColors_MouseMove(std::int16_t button, float x, float y) {
  Procedure run(trap, "picColors_MouseMove");
  run([&] {
    const Colour colour = ColourAt(x, y);
    if (button != Mouse::LeftButton)
      form.lblSampleColor.SetCaption(ReadOut(colour));
    else if (m_IsPickingForeColor)
      form.lblSampleColor.SetForeColor(colour);
    else
      form.lblSampleColor.SetBackColor(colour);
  });
}

void ColourPicker::kwrpColors_MouseUp(std::int16_t button, float x, float y) {
  Procedure run(trap, "kwrpColors_MouseUp");
  const auto colour = run.Ask<Colour>([&] { return ColourAt(x, y); }, 0);
  if (button == Mouse::LeftButton || button == Mouse::RightButton) run([&] { LetPickedColour(colour); });
  if (button == Mouse::RightButton) {
    run([&] {
      if (m_IsPickingForeColor)
        SampleForeGroundColor_DblClick();
      else
        SampleBackGroundColor_DblClick();
    });
  }
  run([&] { form.kwrpColors.SetVisible(false); });
}

Colour ColourPicker::ColourAt(float x, float y) const {
  const RaisedPicture& palette = form.kwrpColors;
  const float column = Clamp(x, palette.Width(), desktop.TwipsPerPixelX());
  const float row = Clamp(y, palette.Height(), desktop.TwipsPerPixelY());
  return ColourOfMap(double{column} / double{palette.Width()}, double{row} / double{palette.Height()});
}

void ColourPicker::LetPickedColour(Colour colour) {
  if (m_IsPickingForeColor)
    coloursAndLines.LetEditorForeColor(colour);
  else
    coloursAndLines.LetEditorBackColor(colour);
}

}  // namespace kw
