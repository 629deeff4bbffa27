#include "view/Borders.h"

#include "components/base/RunTimeError.h"
#include "trap/Procedure.h"

namespace kw {

Borders::Borders(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, Zoom& zoomFactor)
    : desktop(platform), form(editorForm), trap(errorTrap), zoom(zoomFactor) {
  Connect(form.BorderBottom, "BorderBottom_MouseDown", "BorderBottom_MouseUp", false, true);
  Connect(form.BorderRight, "BorderRight_MouseDown", "BorderRight_MouseUp", true, false);
  Connect(form.BorderCorner, "BorderCorner_MouseDown", "BorderCorner_MouseUp", true, true);
}

void Borders::Connect(LightWeightMarker& border, const char* mouseDown, const char* mouseUp, bool isWidth,
                      bool isHeight) {
  border.MouseDown.Connect(
      [this, mouseDown](std::int16_t, std::int16_t, float, float) { const Procedure run(trap, mouseDown); });
  border.MouseUp.Connect([this, mouseUp, isWidth, isHeight](std::int16_t button, std::int16_t, float x, float y) {
    Resize(mouseUp, button, x, y, isWidth, isHeight);
  });
}

void Borders::Resize(const char* procedure, std::int16_t button, float x, float y, bool isWidth, bool isHeight) {
  Procedure run(trap, procedure);
  if (button != Mouse::LeftButton) return;
  run([&] { desktop.ShowMessageBox("change the code below"); });
  const auto inPageUnits = [&](float distance, float twipsPerPixel) {
    if (zoom.ZoomFactor() == 0) Raise(ErrorNumber::DivisionByZero);
    return static_cast<float>(double{distance} / double{twipsPerPixel} / zoom.ZoomFactor());
  };
  const auto resize = [&](TransparentPicture& picture) {
    run([&] {
      const float height = picture.Height() + inPageUnits(y, desktop.TwipsPerPixelY());
      if (isHeight && height > 0) picture.SetHeight(height);
    });
    run([&] {
      const float width = picture.Width() + inPageUnits(x, desktop.TwipsPerPixelX());
      if (isWidth && width > 0) picture.SetWidth(width);
    });
  };
  resize(form.TransBackImage);
  resize(form.TransLayers(Layers::PageLayer));
  run([&] { zoom.UpdateAndZoom(); });
}

}  // namespace kw
