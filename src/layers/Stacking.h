#pragma once

#include <cstdint>
#include <vector>

#include "form/EditorForm.h"

namespace kw {

// The stacking order of the layers: their indices from the bottom up. The page, index 1, stays at the bottom.
class Stacking {
public:
  explicit Stacking(EditorForm& editorForm) : form(editorForm) {}

  // The array m_LayerZOrder, whose positions count from 1 in the rules.
  const std::vector<std::int16_t>& Order() const { return m_LayerZOrder; }
  void Reset() { m_LayerZOrder = {1}; }
  // After this the next Append needs no memory.
  void MakeRoom() { m_LayerZOrder.reserve(m_LayerZOrder.size() + 1); }
  void Append(std::int16_t layer) { m_LayerZOrder.push_back(layer); }

  // Moves `layer` above the next layer above it, or below the next one below it, that it overlaps. False if there
  // is none. The page is never moved, nor anything below it. A layer that stands in no order is not brought forward;
  // to send it backward raises SubscriptOutOfRange, if there is a layer that it overlaps.
  bool BringForward(std::int16_t layer);
  bool SendBackward(std::int16_t layer);
  // On top of all.
  void BringToFront(std::int16_t layer);

private:
  std::size_t PositionOf(std::int16_t layer) const;
  bool Overlaps(std::int16_t a, std::int16_t b) const;
  void Restack();

  EditorForm& form;
  std::vector<std::int16_t> m_LayerZOrder{1};
};

}  // namespace kw
