#include "layers/Layers.h"

#include "components/Arithmetic.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

template <class T>
void UnloadAbove(ControlArray<T>& array, std::int16_t last) {
  while (array.UBound() > last) array.Unload(array.UBound());
}

}  // namespace

Layers::Layers(EditorForm& editorForm, Trap& errorTrap) : form(editorForm), trap(errorTrap) {
  form.TransLayers.ConnectItems(
      [this](TransparentPicture& layer) { layer.Change.Connect([this] { TransLayers_Change(); }); });
}

void Layers::UnloadLayerItems() {
  Procedure run(trap, "UnloadLayerItems");
  run([&] { UnloadAbove(form.TransLayers, PageLayer); });
  run([&] { UnloadAbove(form.point1, 0); });
  run([&] { ResetZOrder(); });
  run([&] {
    if (!form.TransLayers.IsLoaded(m_CurrentLayer)) m_CurrentLayer = PageLayer;
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

}  // namespace kw
