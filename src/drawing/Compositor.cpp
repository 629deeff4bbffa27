#include "drawing/Compositor.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <span>
#include <unordered_map>
#include <utility>

#include "drawing/Blend.h"
#include "drawing/DirtyRegion.h"
#include "drawing/DrawPicture.h"

namespace kw {
namespace {

constexpr Colour White = MakeColour(255, 255, 255);
constexpr Colour HandleColour = MakeColour(0, 0, 0);
constexpr std::int32_t BandPixels = 64 * 1024;
constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

// Finds for each new item the equal old item, or None. The matched old items are in rising order and as many as
// possible: a longest increasing subsequence.
std::vector<std::size_t> MatchUnchanged(const std::vector<DisplayItem>& before, const std::vector<DisplayItem>& after) {
  std::vector<std::size_t> matches(after.size(), None);
  std::size_t same = 0;
  while (same < before.size() && same < after.size() && before[same] == after[same]) {
    matches[same] = same;
    ++same;
  }
  std::unordered_map<std::uint64_t, std::size_t> indexes;
  for (std::size_t i = same; i < before.size(); ++i) indexes[before[i].key] = i;
  // ends[n] is the new item that ends the best increasing sequence of length n + 1.
  std::vector<std::size_t> candidates(after.size(), None);
  std::vector<std::size_t> previous(after.size(), None);
  std::vector<std::size_t> ends;
  for (std::size_t i = same; i < after.size(); ++i) {
    const auto found = indexes.find(after[i].key);
    if (found == indexes.end() || !(before[found->second] == after[i])) continue;
    candidates[i] = found->second;
    const auto longer =
        std::ranges::lower_bound(ends, candidates[i], {}, [&](std::size_t at) { return candidates[at]; });
    if (longer != ends.begin()) previous[i] = *(longer - 1);
    if (longer == ends.end()) {
      ends.push_back(i);
    } else {
      *longer = i;
    }
  }
  for (std::size_t at = ends.empty() ? None : ends.back(); at != None; at = previous[at]) matches[at] = candidates[at];
  return matches;
}

// Scratch memory for painting, shared by all items.
struct Workspace {
  TextRenderer* texts = nullptr;
  Rasteriser rasteriser;
  CoverageMask mask;
};

// Tests eight pixels at once, because most of a text's mask is empty.
bool IsEmptyFrom(std::span<const std::uint8_t> coverage, std::size_t at) {
  std::uint64_t eight = 1;
  if (at + sizeof eight <= coverage.size()) std::memcpy(&eight, &coverage[at], sizeof eight);
  return eight == 0;
}

PixelRect ContentsOf(const DisplayItem& item) { return Inset(item.bounds, item.rim); }

void PaintText(const FrameBuffer& target, const DisplayItem& item, const PixelRect& part, Workspace& space) {
  const TextRun& run = *item.text;
  if (run.text.empty() || item.options.transparent == run.colour) return;
  CoverageMask& mask = space.mask;
  mask.area = part;
  mask.coverage.assign(static_cast<std::size_t>(part.Width()) * static_cast<std::size_t>(part.Height()), 0);
  space.texts->Render(run, ContentsOf(item), mask);
  const std::uint32_t pixel = item.options.isLightened ? Lightened(PixelOf(run.colour)) : PixelOf(run.colour);
  for (std::int32_t y = part.top; y < part.bottom; ++y) {
    const auto row = target.Row(y, part.left, part.right);
    const auto coverage = mask.Row(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i % 8 == 0 && IsEmptyFrom(coverage, i)) {
        i += 7;
      } else if (coverage[i] != 0) {
        row[i] = Mix(row[i], pixel, coverage[i]);
      }
    }
  }
}

bool Contains(const PixelRect& outer, const PixelRect& inner) { return Common(outer, inner) == inner; }

// Whether the item is opaque in all of this part.
bool Hides(const DisplayItem& item, const PixelRect& part) {
  const bool isPictureOpaque = !item.picture.IsEmpty() && item.picture.BitsPerPixel() < 32 && !item.options.transparent;
  return item.background ? Contains(item.bounds, part) : isPictureOpaque && Contains(ContentsOf(item), part);
}

void PaintItem(const FrameBuffer& target, const DisplayItem& item, const PixelRect& part, Workspace& space) {
  const PixelRect inside = Common(item.bounds, part);
  if (inside.IsEmpty()) return;
  FrameBuffer window = target;
  window.pixels = target.Row(inside.top, inside.left, inside.right).data();
  window.area = inside;
  if (item.background) FillArea(window, inside, *item.background);
  const PixelRect contents = ContentsOf(item);
  if (const PixelRect seen = Common(contents, inside); !seen.IsEmpty()) {
    DrawPicture(window, item.picture, contents, item.options);
    if (item.shape) {
      const Point origin = {static_cast<double>(contents.left), static_cast<double>(contents.top)};
      DrawShape(window, *item.shape, origin, seen, item.options, space.rasteriser);
    }
    if (item.text && space.texts != nullptr) PaintText(window, item, seen, space);
  }
  if (item.frame != DisplayItem::Frame::None) {
    FrameArea(window, item.bounds, item.frameColour, item.frame == DisplayItem::Frame::Dotted, item.frameWidth);
  }
  if (!item.hasHandles) return;
  for (const PixelRect& handle : HandlesOf(item.bounds, item.handleSize)) {
    FillArea(window, handle, White);
    FrameArea(window, handle, HandleColour, false, item.frameWidth);
  }
}

// Adds the parts of an item's bounds that it paints. A bare frame paints little, however large it is.
void AddSeen(const DisplayItem& item, DirtyRegion& dirty) {
  const PixelRect& bounds = item.bounds;
  const std::int32_t line = item.frame == DisplayItem::Frame::None ? 0 : item.frameWidth;
  const bool isBare = !item.background && item.picture.IsEmpty() && !item.shape && !item.text;
  if (!isBare || bounds.Width() <= 2 * line || bounds.Height() <= 2 * line) {
    dirty.Add(bounds);
    return;
  }
  dirty.Add({bounds.left, bounds.top, bounds.right, bounds.top + line});
  dirty.Add({bounds.left, bounds.bottom - line, bounds.right, bounds.bottom});
  dirty.Add({bounds.left, bounds.top + line, bounds.left + line, bounds.bottom - line});
  dirty.Add({bounds.right - line, bounds.top + line, bounds.right, bounds.bottom - line});
  if (!item.hasHandles) return;
  for (const PixelRect& handle : HandlesOf(bounds, item.handleSize)) dirty.Add(Common(handle, bounds));
}

}  // namespace

std::vector<PixelRect> Compositor::Exchange(std::vector<DisplayItem>& newItems) {
  const auto matches = MatchUnchanged(items, newItems);
  DirtyRegion dirty;
  std::vector<bool> isKept(items.size());
  for (std::size_t i = 0; i < newItems.size(); ++i) {
    if (matches[i] == None) {
      AddSeen(newItems[i], dirty);
    } else {
      isKept[matches[i]] = true;
    }
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (!isKept[i]) AddSeen(items[i], dirty);
  }
  items.swap(newItems);
  return dirty.Parts();
}

void Compositor::Paint(const FrameBuffer& target, const PixelRect& wanted, TextRenderer* texts) const {
  const PixelRect part = Common(wanted, target.area);
  if (part.IsEmpty()) return;
  // Start with the topmost item that hides everything below it.
  std::size_t first = items.size();
  while (first > 0 && !Hides(items[first - 1], part)) --first;
  const bool isBackgroundSeen = first == 0;
  if (!isBackgroundSeen) --first;
  const auto visible = std::span(items).subspan(first);
  // The bottom items are mostly large pictures: paint them band by band, so that a band stays in the cache.
  const auto plainEnd = std::ranges::find_if(visible, [](const DisplayItem& item) { return item.shape || item.text; });
  const std::size_t plain = static_cast<std::size_t>(plainEnd - visible.begin());
  Workspace space;
  space.texts = texts;
  const std::int32_t rows = std::max(1, BandPixels / part.Width());
  for (std::int32_t top = part.top; top < part.bottom; top += rows) {
    const PixelRect band = {part.left, top, part.right, std::min(top + rows, part.bottom)};
    if (isBackgroundSeen) FillArea(target, band, background);
    for (const DisplayItem& item : visible.first(plain)) PaintItem(target, item, band, space);
  }
  for (const DisplayItem& item : visible.subspan(plain)) PaintItem(target, item, part, space);
}

}  // namespace kw
