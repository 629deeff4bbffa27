#include "canvas/tools/PagePixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "drawing/DrawPicture.h"
#include "drawing/RowReader.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

struct PagePoint {
  std::int32_t x;
  std::int32_t y;
};

// The page's own pixel under a point of the canvas.
std::optional<PagePoint> PixelUnder(const TransparentPicture& page, float x, float y) {
  const PixelRect place = PixelsOf(page);
  const double column = std::floor(double{x}) - place.left;
  const double row = std::floor(double{y}) - place.top;
  const bool isOnPage = page.HasPicture() && column >= 0 && row >= 0 && column < place.Width() && row < place.Height();
  if (!isOnPage) return std::nullopt;
  const Bitmap& picture = page.Picture();
  return PagePoint{static_cast<std::int32_t>((column + 0.5) * picture.Width() / place.Width()),
                   static_cast<std::int32_t>((row + 0.5) * picture.Height() / place.Height())};
}

bool IsSimilar(std::uint32_t a, std::uint32_t b, int tolerance) {
  constexpr std::array<unsigned, 3> Shifts = {0, 8, 16};
  return std::ranges::all_of(Shifts, [=](unsigned shift) {
    const int difference = static_cast<int>(a >> shift & 0xFFU) - static_cast<int>(b >> shift & 0xFFU);
    return std::abs(difference) <= tolerance;
  });
}

// Fills spans of one row after the other, and remembers where the rows above and below may go on.
class RegionFinder {
public:
  RegionFinder(const Bitmap& page, PagePoint seed, int tolerance)
      : width(page.Width()), height(page.Height()), cells(Size(page)) {
    const RowReader reader(page, {});
    std::vector<std::uint32_t> row(static_cast<std::size_t>(width));
    reader.Read(0, seed.y, row);
    const std::uint32_t wanted = row[static_cast<std::size_t>(seed.x)];
    for (std::int32_t y = 0; y < height; ++y) {
      reader.Read(0, y, row);
      Cell* const cell = RowOf(y);
      for (std::size_t x = 0; x < row.size(); ++x) {
        if (IsSimilar(row[x], wanted, tolerance)) cell[x] = Cell::Similar;
      }
    }
    Find(seed);
  }

  bool IsInside(std::int32_t x, std::int32_t y) const { return RowOf(y)[x] == Cell::Inside; }
  const PixelRect& Bounds() const { return bounds; }

private:
  enum class Cell : std::uint8_t { Other, Similar, Inside };

  static std::size_t Size(const Bitmap& page) {
    return static_cast<std::size_t>(page.Width()) * static_cast<std::size_t>(page.Height());
  }
  Cell* RowOf(std::int32_t y) { return &cells[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)]; }
  const Cell* RowOf(std::int32_t y) const {
    return &cells[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)];
  }

  void Find(PagePoint seed) {
    bounds = {seed.x, seed.y, seed.x + 1, seed.y + 1};
    std::vector<PagePoint> starts = {seed};
    while (!starts.empty()) {
      const PagePoint start = starts.back();
      starts.pop_back();
      Cell* const row = RowOf(start.y);
      if (row[start.x] != Cell::Similar) continue;
      std::int32_t left = start.x;
      std::int32_t right = start.x + 1;
      while (left > 0 && row[left - 1] == Cell::Similar) --left;
      while (right < width && row[right] == Cell::Similar) ++right;
      std::fill(row + left, row + right, Cell::Inside);
      bounds = {std::min(bounds.left, left), std::min(bounds.top, start.y), std::max(bounds.right, right),
                std::max(bounds.bottom, start.y + 1)};
      if (start.y > 0) AddStarts(start.y - 1, left, right, starts);
      if (start.y + 1 < height) AddStarts(start.y + 1, left, right, starts);
    }
  }

  // One start for each run of similar pixels.
  void AddStarts(std::int32_t y, std::int32_t left, std::int32_t right, std::vector<PagePoint>& starts) const {
    const Cell* const row = RowOf(y);
    for (std::int32_t x = left; x < right; ++x) {
      if (row[x] == Cell::Similar && (x == left || row[x - 1] != Cell::Similar)) starts.push_back({x, y});
    }
  }

  std::int32_t width;
  std::int32_t height;
  std::vector<Cell> cells;
  PixelRect bounds;
};

void PutPixel(std::span<std::uint8_t> row, std::size_t at, std::uint32_t pixel, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i) row[at + i] = static_cast<std::uint8_t>(pixel >> (8 * i));
}

}  // namespace

std::optional<Colour> ColourOfPageAt(const TransparentPicture& page, float x, float y) {
  const auto point = PixelUnder(page, x, y);
  if (!point) return std::nullopt;
  const Rgb colour = page.Picture().PixelAt(point->x, point->y);
  return MakeColour(colour.red, colour.green, colour.blue);
}

Bitmap CopyOfPage(const TransparentPicture& page, const PixelRect& area) {
  constexpr std::size_t PixelBytes = 3;
  Bitmap copy(area.Width(), area.Height(), 24);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(area.Width()));
  for (std::int32_t y = area.top; y < area.bottom; ++y) {
    const FrameBuffer line = {pixels.data(), pixels.size(), {area.left, y, area.right, y + 1}};
    FillArea(line, line.area, MakeColour(255, 255, 255));
    DrawPicture(line, page.Picture(), PixelsOf(page), {});
    const auto row = copy.MutableRow(y - area.top);
    for (std::size_t x = 0; x < pixels.size(); ++x) PutPixel(row, x * PixelBytes, pixels[x], PixelBytes);
  }
  return copy;
}

std::optional<PageRegion> RegionOfPageAt(const TransparentPicture& page, float x, float y, Colour colour,
                                         int tolerance) {
  const auto seed = PixelUnder(page, x, y);
  if (!seed) return std::nullopt;
  constexpr std::size_t PixelBytes = 4;
  const RegionFinder region(page.Picture(), *seed, tolerance);
  const PixelRect& bounds = region.Bounds();
  PageRegion found;
  found.picture = Bitmap(bounds.Width(), bounds.Height(), 32);
  const std::uint32_t pixel = PixelOf(colour);
  for (std::int32_t row = 0; row < bounds.Height(); ++row) {
    const auto to = found.picture.MutableRow(row);
    for (std::int32_t column = 0; column < bounds.Width(); ++column) {
      const bool isInside = region.IsInside(bounds.left + column, bounds.top + row);
      PutPixel(to, static_cast<std::size_t>(column) * PixelBytes, isInside ? pixel | Opaque : pixel, PixelBytes);
    }
  }
  const PixelRect place = PixelsOf(page);
  const float across = static_cast<float>(place.Width()) / static_cast<float>(page.Picture().Width());
  const float down = static_cast<float>(place.Height()) / static_cast<float>(page.Picture().Height());
  found.left = static_cast<float>(place.left) + static_cast<float>(bounds.left) * across;
  found.top = static_cast<float>(place.top) + static_cast<float>(bounds.top) * down;
  found.width = static_cast<float>(bounds.Width()) * across;
  found.height = static_cast<float>(bounds.Height()) * down;
  return found;
}

}  // namespace kw
