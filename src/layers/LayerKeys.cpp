#include "layers/LayerKeys.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace kw {
namespace {

constexpr std::int16_t PickKey = 117;  // F6
constexpr float LeastSide = 8;         // as with the mouse: enough for the handles to be told apart

struct Step {
  float across = 0;
  float down = 0;
};

// One pixel in the direction of an arrow key; empty for another key.
std::optional<Step> StepOf(std::int16_t keyCode) {
  switch (keyCode) {
    case 37:
      return Step{-1, 0};
    case 38:
      return Step{0, -1};
    case 39:
      return Step{1, 0};
    case 40:
      return Step{0, 1};
    default:
      return std::nullopt;
  }
}

// A layer must not be lost: one pixel of it stays on the canvas. One that is beside it may come back.
float Moved(float low, float side, float step, float canvas) {
  const float moved = low + step;
  const bool isLost = step < 0 ? moved + side < 1 : moved > canvas - 1;
  return isLost ? low : moved;
}

// The side that grows ends at the canvas's edge, as with the mouse.
float Sized(float low, float side, float step, float canvas) {
  const float sized = side + step;
  const bool isOut = step < 0 ? sized < LeastSide : low + sized > canvas;
  return isOut ? side : sized;
}

}  // namespace

bool LayerKeys::HasUseOf(std::int16_t keyCode, std::int16_t shift) const {
  if ((shift & ~Mouse::ShiftKey) != 0 || !layers.HasPage()) return false;
  if (!form.tbrEditingTools.ButtonOf("NoTools").pressed) return false;
  if (layers.Drag().m_IsMouseDown || layers.PickedDrag().IsUnderWay()) return false;
  if (keyCode == PickKey) return Neighbour(false) != 0;
  return StepOf(keyCode).has_value() && layers.PickedLayer() != 0;
}

void LayerKeys::Strike(std::int16_t keyCode, std::int16_t shift) {
  if (!HasUseOf(keyCode, shift)) return;
  const bool isShifted = shift != 0;
  if (keyCode == PickKey) return layers.PickByUser(Neighbour(isShifted));
  const Step step = *StepOf(keyCode);
  TransparentPicture& layer = form.TransLayers(layers.PickedLayer());
  if (isShifted)
    Size(layer, step.across, step.down);
  else
    Move(layer, step.across, step.down);
}

std::int16_t LayerKeys::Neighbour(bool isBackward) const {
  std::vector<std::int16_t> floating;
  for (const auto& [index, layer] : form.TransLayers) {
    if (index > Layers::PageLayer && layer->Visible()) floating.push_back(static_cast<std::int16_t>(index));
  }
  if (isBackward) std::ranges::reverse(floating);
  if (floating.empty()) return 0;
  const auto picked = std::ranges::find(floating, layers.PickedLayer());
  return picked == floating.end() || picked + 1 == floating.end() ? floating.front() : *(picked + 1);
}

void LayerKeys::Move(TransparentPicture& layer, float across, float down) const {
  const PictureBox& canvas = form.picCanvas;
  layer.Move(Moved(layer.Left(), layer.Width(), across, canvas.Width()),
             Moved(layer.Top(), layer.Height(), down, canvas.Height()));
}

void LayerKeys::Size(TransparentPicture& layer, float across, float down) const {
  const PictureBox& canvas = form.picCanvas;
  layer.Move(layer.Left(), layer.Top(), Sized(layer.Left(), layer.Width(), across, canvas.Width()),
             Sized(layer.Top(), layer.Height(), down, canvas.Height()));
}

}  // namespace kw
