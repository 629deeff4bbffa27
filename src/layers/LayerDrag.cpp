#include "layers/LayerDrag.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "scene/CanvasItems.h"

namespace kw {
namespace {

constexpr float NoticeableMove = 3;
constexpr float FrameWidth = 1;
constexpr float LeastSize = 8;  // enough for the handles to be told apart

// The edges that a handle moves, in each direction; the order is that of HandlesOf.
struct Grip {
  int across;  // -1 left edge, 1 right edge, 0 neither
  int down;    // -1 top edge, 1 bottom edge, 0 neither
  MousePointer pointer;
};

constexpr std::array<Grip, 8> Grips = {{{-1, -1, MousePointer::SizeNWSE},
                                        {0, -1, MousePointer::SizeNS},
                                        {1, -1, MousePointer::SizeNESW},
                                        {1, 0, MousePointer::SizeWE},
                                        {1, 1, MousePointer::SizeNWSE},
                                        {0, 1, MousePointer::SizeNS},
                                        {-1, 1, MousePointer::SizeNESW},
                                        {-1, 0, MousePointer::SizeWE}}};

std::optional<std::size_t> HandleAt(const TransparentPicture& layer, float x, float y) {
  if (!layer.IsToShowResize()) return std::nullopt;
  constexpr std::int32_t Reach = 2;  // a handle is small
  const auto handles = HandlesOf(PixelsOfLayer(layer));
  // The corners are tried first: on a small layer they lie over the others.
  for (const std::size_t i : {4U, 0U, 2U, 6U, 3U, 5U, 1U, 7U}) {
    const PixelRect area = Inset(handles[i], -Reach);
    const bool isInside = x >= static_cast<float>(area.left) && x < static_cast<float>(area.right) &&
                          y >= static_cast<float>(area.top) && y < static_cast<float>(area.bottom);
    if (isInside) return i;
  }
  return std::nullopt;
}

// Moves one edge of a span by the distance that the pointer moved, but keeps the least size.
void MoveEdge(int side, float way, float& low, float& high) {
  if (side < 0) low = std::min(low + way, high - LeastSize);
  if (side > 0) high = std::max(high + way, low + LeastSize);
}

}  // namespace

void LayerDrag::Begin(std::int16_t layer, float x, float y) {
  const TransparentPicture& picked = form.TransLayers(layer);
  const PixelRect place = PixelsOfLayer(picked);
  handle = HandleAt(picked, x, y);
  start = {static_cast<float>(place.left), static_cast<float>(place.top), static_cast<float>(place.right),
           static_cast<float>(place.bottom)};
  pressX = x;
  pressY = y;
  hasMoved = false;
  index = layer;
}

LayerDrag::Edges LayerDrag::Moved(float x, float y) const {
  return {start.left + x - pressX, start.top + y - pressY, start.right + x - pressX, start.bottom + y - pressY};
}

LayerDrag::Edges LayerDrag::Sized(float x, float y, bool isInProportion) const {
  const Grip& grip = Grips.at(*handle);
  Edges edges = start;
  MoveEdge(grip.across, x - pressX, edges.left, edges.right);
  MoveEdge(grip.down, y - pressY, edges.top, edges.bottom);
  if (!isInProportion || grip.across == 0 || grip.down == 0) return edges;
  // The larger of the two sides that the pointer asks for.
  const float width = start.right - start.left;
  const float height = start.bottom - start.top;
  const float scale = std::max((edges.right - edges.left) / width, (edges.bottom - edges.top) / height);
  const float newWidth = std::round(width * scale);
  const float newHeight = std::round(height * scale);
  (grip.across < 0 ? edges.left : edges.right) = grip.across < 0 ? edges.right - newWidth : edges.left + newWidth;
  (grip.down < 0 ? edges.top : edges.bottom) = grip.down < 0 ? edges.bottom - newHeight : edges.top + newHeight;
  return edges;
}

void LayerDrag::MoveTo(float x, float y, bool isInProportion) {
  if (!form.TransLayers.IsLoaded(index)) Cancel();
  if (!IsUnderWay()) return;
  // The pointer is kept on the canvas, so that no layer can be lost.
  x = std::round(std::clamp(x, 0.0F, form.picCanvas.Width()));
  y = std::round(std::clamp(y, 0.0F, form.picCanvas.Height()));
  hasMoved = hasMoved || std::abs(x - pressX) >= NoticeableMove || std::abs(y - pressY) >= NoticeableMove;
  if (!hasMoved) return;
  const Edges edges = handle ? Sized(x, y, isInProportion) : Moved(x, y);
  form.fr.Move(edges.left, edges.top, edges.right - edges.left, edges.bottom - edges.top);
  form.fr.ZOrder();
  form.fr.SetVisible(true);
}

bool LayerDrag::End() {
  const std::int16_t landing = index;
  const bool isToLand = IsUnderWay() && hasMoved && form.TransLayers.IsLoaded(landing);
  Cancel();
  if (!isToLand) return false;
  TransparentPicture& layer = form.TransLayers(landing);
  const float rim = layer.SelectionFrame() != 0 ? 2 * FrameWidth : 0;
  const TransparentPicture& fr = form.fr;
  layer.Move(fr.Left(), fr.Top(), std::max(1.0F, fr.Width() - rim), std::max(1.0F, fr.Height() - rim));
  return true;
}

void LayerDrag::Cancel() {
  if (!IsUnderWay()) return;
  index = 0;
  form.fr.SetVisible(false);
}

MousePointer LayerDrag::PointerAt(const TransparentPicture& layer, float x, float y) {
  if (layer.SelectionFrame() == 0) return MousePointer::Default;
  const auto grip = HandleAt(layer, x, y);
  return grip ? Grips.at(*grip).pointer : MousePointer::SizeAll;
}

}  // namespace kw
