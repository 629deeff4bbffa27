#include "annotated/SeenLayers.h"

#include <algorithm>

#include "layers/Layers.h"
#include "scene/CanvasItems.h"

namespace kw {

std::vector<const TransparentPicture*> SeenLayers(const EditorForm& form) {
  std::vector<const TransparentPicture*> seen;
  for (const Control* child : form.picCanvas.Children()) {
    const auto* const layer = dynamic_cast<const TransparentPicture*>(child);
    if (layer != nullptr && layer->Visible() && layer != &form.fr) seen.push_back(layer);
  }
  return seen;
}

PixelRect SeenArea(const EditorForm& form) {
  const PixelRect page = PixelsOf(form.TransLayers(Layers::PageLayer));
  const TransparentPicture& back = form.TransBackImage;
  if (!back.Visible() || !back.HasPicture()) return {0, 0, page.right, page.bottom};
  const PixelRect behind = PixelsOf(back);
  return {0, 0, std::max(page.right, behind.right), std::max(page.bottom, behind.bottom)};
}

}  // namespace kw
