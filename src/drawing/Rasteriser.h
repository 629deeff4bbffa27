#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "drawing/PixelRect.h"

namespace kw {

// A point of the drawing surface in pixels; whole numbers are pixel corners, not centres.
struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

// Turns outlines into coverage: for every pixel the exact area inside (non-zero winding rule) in steps of 2^-15,
// without sampling. A pixel's coverage depends on the outlines only and not on the clip, so a part that is drawn again
// fits its surroundings to the last bit.
//
// Outlines are closed chains of edges. If two parts of an outline cross inside one pixel, their areas in it are added
// up. The counters hold up to 65,000 edges of the same direction above one pixel.
//
// Coordinates may have any value; they are clamped to a thousand million pixels. Time and memory depend on the number
// of edges and on the part of the clip that they enclose.
class Rasteriser {
public:
  // Removes all edges; later ones are clipped to these pixels.
  void Begin(const PixelRect& clipTo);
  const PixelRect& Clip() const { return clip; }

  // Adds an edge from a to b. All edges of an outline must have the inside on the same side; which side does not
  // matter.
  void AddEdge(Point a, Point b);

  // Calls sink(y, left, right, coverage) for each run of pixels of equal coverage (1 to 255), row by row, left to
  // right, and removes the edges.
  template <class Sink>
  void Sweep(Sink&& sink);

private:
  static constexpr int OneBits = 15;
  static constexpr std::int32_t One = 1 << OneBits;

  struct Edge {
    double x0, y0, x1, y1;  // y0 < y1
    bool isUpward;          // direction before the ends were sorted
  };

  // Finds the part of the clip that the edges can cover, and the number of rows in a band. False if there is none.
  bool OpenWindow();
  void AccumulateBand(std::int32_t top, std::int32_t bottom);
  void Accumulate(const Edge& edge, std::int32_t top, std::int32_t bottom);
  void AccumulateRow(Point a, Point b, double rise, std::int32_t qa, std::int32_t qb, std::int32_t y);
  void AddToCell(std::size_t row, std::int32_t x, std::int32_t cover, double share);
  void Add(std::size_t row, std::size_t column, std::int32_t amount) {
    cells[row * rowCells + column] += static_cast<std::uint32_t>(amount);
    touched[row * rowWords + column / 64] |= std::uint64_t{1} << (column % 64);
  }
  static int CoverageOf(std::uint32_t sum) {
    const std::uint32_t magnitude = static_cast<std::int32_t>(sum) < 0 ? 0U - sum : sum;
    return static_cast<int>((std::min(magnitude, std::uint32_t{One}) * 255U + One / 2) >> OneBits);
  }

  PixelRect clip;
  std::vector<Edge> edges;
  double lowestX = 0, highestX = 0, lowestY = 0, highestY = 0;  // bounding box of the edges

  PixelRect window;
  std::int32_t bandRows = 0;
  std::int32_t bandTop = 0;
  std::size_t rowCells = 0;
  std::size_t rowWords = 0;
  // Differences of coverage from cell to cell, in steps of 1 / One, modulo 2^32, so that no sum overflows.
  std::vector<std::uint32_t> cells;
  std::vector<std::uint64_t> touched;  // one bit for each cell; untouched cells are zero
  std::int32_t direction = 1;          // direction of the edge that is being accumulated
};

template <class Sink>
void Rasteriser::Sweep(Sink&& sink) {
  if (OpenWindow()) {
    const std::int32_t width = window.right - window.left;
    for (std::int32_t top = window.top; top < window.bottom; top += bandRows) {
      const std::int32_t bottom = std::min(top + bandRows, window.bottom);
      AccumulateBand(top, bottom);
      for (std::int32_t y = top; y < bottom; ++y) {
        const auto row = static_cast<std::size_t>(y - top);
        std::uint32_t sum = 0;
        int coverage = 0;
        std::int32_t from = 0;
        for (std::size_t word = 0; word < rowWords; ++word) {
          std::uint64_t bits = touched[row * rowWords + word];
          touched[row * rowWords + word] = 0;
          for (; bits != 0; bits &= bits - 1) {
            const std::size_t column = word * 64 + static_cast<std::size_t>(std::countr_zero(bits));
            std::uint32_t& cell = cells[row * rowCells + column];
            sum += cell;
            cell = 0;
            const int next = CoverageOf(sum);
            if (next == coverage) continue;
            const std::int32_t x = std::min(static_cast<std::int32_t>(column), width);
            if (coverage != 0 && x > from) sink(y, window.left + from, window.left + x, coverage);
            from = x;
            coverage = next;
          }
        }
        if (coverage != 0 && width > from) sink(y, window.left + from, window.right, coverage);
      }
    }
  }
  edges.clear();
}

}  // namespace kw
