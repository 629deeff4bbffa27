#include "layers/Stacking.h"

#include <algorithm>

#include "components/base/RunTimeError.h"
#include "scene/HitTest.h"

namespace kw {
namespace {

bool HasCornerIn(const Control& inner, const Control& outer) {
  const float right = inner.Left() + inner.Width();
  const float bottom = inner.Top() + inner.Height();
  return IsPointIn(outer, inner.Left(), inner.Top()) || IsPointIn(outer, right, inner.Top()) ||
         IsPointIn(outer, inner.Left(), bottom) || IsPointIn(outer, right, bottom);
}

}  // namespace

// From 1; one past the end if the layer is not in the order.
std::size_t Stacking::PositionOf(std::int16_t layer) const {
  const auto found = std::find(m_LayerZOrder.begin(), m_LayerZOrder.end(), layer);
  return static_cast<std::size_t>(found - m_LayerZOrder.begin()) + 1;
}

bool Stacking::Overlaps(std::int16_t a, std::int16_t b) const {
  const Control& one = form.TransLayers(a);
  const Control& other = form.TransLayers(b);
  return HasCornerIn(one, other) || HasCornerIn(other, one);
}

bool Stacking::BringForward(std::int16_t layer) {
  const std::size_t position = PositionOf(layer);
  const std::size_t last = m_LayerZOrder.size();
  if (position >= last || position < 2) return false;
  for (std::size_t p = position + 1; p <= last; ++p) {
    if (!Overlaps(m_LayerZOrder[p - 1], layer)) continue;
    const auto first = m_LayerZOrder.begin() + static_cast<std::ptrdiff_t>(position) - 1;
    std::rotate(first, first + 1, m_LayerZOrder.begin() + static_cast<std::ptrdiff_t>(p));
    Restack();
    return true;
  }
  return false;
}

bool Stacking::SendBackward(std::int16_t layer) {
  const std::size_t position = PositionOf(layer);
  if (position < 2) return false;
  for (std::size_t p = position - 1; p >= 2; --p) {
    if (!Overlaps(m_LayerZOrder[p - 1], layer)) continue;
    if (position > m_LayerZOrder.size()) Raise(ErrorNumber::SubscriptOutOfRange);  // it has no place to leave
    const auto target = m_LayerZOrder.begin() + static_cast<std::ptrdiff_t>(p) - 1;
    const auto place = m_LayerZOrder.begin() + static_cast<std::ptrdiff_t>(position) - 1;
    std::rotate(target, place, place + 1);
    Restack();
    return true;
  }
  return false;
}

void Stacking::BringToFront(std::int16_t layer) {
  const std::size_t position = PositionOf(layer);
  if (position < 2 || position >= m_LayerZOrder.size()) return;  // the last one is in front already
  const auto place = m_LayerZOrder.begin() + static_cast<std::ptrdiff_t>(position) - 1;
  std::rotate(place, place + 1, m_LayerZOrder.end());
  form.TransLayers(layer).ZOrder();
}

// The controls follow the array: each is brought to the front in its turn.
void Stacking::Restack() {
  for (const std::int16_t layer : m_LayerZOrder) form.TransLayers(layer).ZOrder();
}

}  // namespace kw
