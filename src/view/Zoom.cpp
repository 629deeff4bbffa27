#include "view/Zoom.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "components/base/Arithmetic.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

// Width of the borders at the page's edges, in pixels.
constexpr float BorderWidth = 2;

// The shortest general form of a number, at most 15 significant digits.
std::string TextOf(double number) {
  char text[32];
  static_cast<void>(std::snprintf(text, sizeof text, "%.15g", number));
  return text;
}

std::string TextOfFactor(double factor) { return TextOf(RoundToEven<std::int32_t>(factor * 100)) + " %"; }

// The number that a list text begins with, as a ratio.
double FactorOf(const std::string& text) { return std::strtod(text.c_str(), nullptr) / 100; }

}  // namespace

Zoom::Zoom(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, Layers& layerArray)
    : desktop(platform), form(editorForm), trap(errorTrap), layers(layerArray) {
  form.cmbZoomFactor.Click.Connect([this] { cmbZoomFactor_Click(); });
}

void Zoom::FillZoomList() {
  for (int i = 1; i <= 10; ++i) form.cmbZoomFactor.Add(TextOf(i * 0.1 * 100) + " %", i);
  for (int i = 1; i <= 6; ++i) form.cmbZoomFactor.Add(TextOf(i * 0.5 * 100 + 100) + " %", i + 10);
}

void Zoom::LetZoomFactor(double value) {
  Procedure run(trap, "Let ZoomFactor");
  run([&] { m_ZoomFactor = value; });
  run([&] {
    const std::string wanted = TextOfFactor(m_ZoomFactor);
    for (std::int32_t i = 1; i <= form.cmbZoomFactor.ItemCount(); ++i) {
      if (form.cmbZoomFactor.ItemText(i) != wanted) continue;
      form.cmbZoomFactor.Select(i);
      break;
    }
  });
  run([&] { UpdateAndZoom(); });
}

void Zoom::ZoomIn() {
  Procedure run(trap, "ZoomIn");
  run([&] {
    const ImageCombo& list = form.cmbZoomFactor;
    if (list.SelectedItem() == list.ItemCount()) {
      desktop.ShowMessageBox("Can not Zoom in more..", "Zoom Error");
      return;
    }
    for (std::int32_t i = 1; i <= list.ItemCount(); ++i) {
      const double factor = FactorOf(list.ItemText(i));
      if (factor * 100 > RoundToEven<std::int32_t>(m_ZoomFactor * 100)) return LetZoomFactor(factor);
    }
  });
}

void Zoom::ZoomOut() {
  Procedure run(trap, "ZoomOut");
  run([&] {
    const ImageCombo& list = form.cmbZoomFactor;
    if (list.SelectedItem() == 1) {
      desktop.ShowMessageBox("Can not Zoom out more..", "Error");
      return;
    }
    for (std::int32_t i = list.ItemCount(); i >= 1; --i) {
      const double factor = FactorOf(list.ItemText(i));
      if (factor * 100 < RoundToEven<std::int32_t>(m_ZoomFactor * 100)) return LetZoomFactor(factor);
    }
  });
}

void Zoom::cmbZoomFactor_Click() {
  Procedure run(trap, "cmbZoomFactor_Click");
  run([&] {
    if (layers.HasPage()) LetZoomFactor(FactorOf(form.cmbZoomFactor.Text()));
  });
}

void Zoom::UpdateAndZoom() {
  Procedure run(trap, "UpdateAndZoom");
  run([&] { form.editor.SetPointer(MousePointer::Hourglass); });
  float width = 0;
  float height = 0;
  run([&] {
    const TransparentPicture& page = form.TransLayers(Layers::PageLayer);
    const TransparentPicture& back = form.TransBackImage;
    const bool isBackShown = back.Visible() && back.HasPicture();
    width = std::max(page.Width(), isBackShown ? back.Width() : 0.0F);
    height = std::max(page.Height(), isBackShown ? back.Height() : 0.0F);
  });
  run([&] { form.BorderBottom.Move(0, height, width, BorderWidth); });
  run([&] { form.BorderRight.Move(width, 0, BorderWidth, height); });
  run([&] { form.BorderCorner.Move(width, height, BorderWidth, BorderWidth); });
  run([&] {
    const PictureBox& canvas = form.picCanvas;
    form.picCanvas.Move(canvas.Left(), canvas.Top(), width + BorderWidth, height + BorderWidth);
  });
  for (std::int32_t i = Layers::PageLayer + 1; i <= form.TransLayers.UBound(); ++i) {
    run([&] {
      TransparentPicture& layer = form.TransLayers(i);
      const bool reachesOut = layer.Left() + layer.Width() > form.BorderCorner.Left() ||
                              layer.Top() + layer.Height() > form.BorderCorner.Top();
      if (reachesOut) layer.SetPicture(layer.SourcePicture());
    });
  }
  run([&] { form.editor.SetPointer(MousePointer::Default); });
}

}  // namespace kw
