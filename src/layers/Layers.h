#pragma once

#include <cstdint>
#include <vector>

#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// The layer array TransLayers: 0 the template, 1 the page, 2 and up the floating layers, and their stacking order.
class Layers {
public:
  static constexpr std::int16_t PageLayer = 1;

  Layers(EditorForm& editorForm, Trap& errorTrap);

  // An empty page layer means that no page is open.
  bool HasPage() const { return form.TransLayers(PageLayer).HasPicture(); }
  // The layer picked last, the one that commands act on. Raises ControlArrayElementDoesNotExist where it is not loaded.
  TransparentPicture& CurrentLayer() const { return form.TransLayers(m_CurrentLayer); }
  std::int16_t CurrentLayerIndex() const { return m_CurrentLayer; }
  void SetCurrentLayer(std::int16_t index) { m_CurrentLayer = index; }

  // Layer indices from the bottom up; the first is the page.
  const std::vector<std::int16_t>& LayerZOrder() const { return m_LayerZOrder; }
  void ResetZOrder() { m_LayerZOrder = {PageLayer}; }

  // Unloads the floating layers and the pen's markers. The page becomes the current layer when the present one goes.
  void UnloadLayerItems();
  // Enables what needs a page, or disables it, and shows the page's size.
  void TransLayers_Change();

private:
  EditorForm& form;
  Trap& trap;
  std::int16_t m_CurrentLayer = PageLayer;
  std::vector<std::int16_t> m_LayerZOrder{PageLayer};
};

}  // namespace kw
