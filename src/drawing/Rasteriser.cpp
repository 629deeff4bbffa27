#include "drawing/Rasteriser.h"

#include <cmath>
#include <limits>
#include <utility>

namespace kw {
namespace {

constexpr double FarthestCell = 1e9;
// Rows are processed in bands of this many cells, so that a band stays in the cache.
constexpr std::size_t BandCells = 32768;
// Added before truncation to round a non-negative number: the library's rounding is too slow for every cell.
constexpr double CellHalf = 0.5;

// NaN counts as the leftmost or topmost position.
double LimitedCell(double value) { return std::min(std::max(-FarthestCell, value), FarthestCell); }

std::int32_t Floor(double value) {
  const auto whole = static_cast<std::int32_t>(value);
  return whole > value ? whole - 1 : whole;
}

}  // namespace

void Rasteriser::Begin(const PixelRect& clipTo) {
  clip = clipTo;
  edges.clear();
  lowestX = lowestY = std::numeric_limits<double>::max();
  highestX = highestY = std::numeric_limits<double>::lowest();
}

void Rasteriser::AddEdge(Point a, Point b) {
  Edge edge = {LimitedCell(a.x), LimitedCell(a.y), LimitedCell(b.x), LimitedCell(b.y), false};
  if (edge.y0 == edge.y1) return;
  if (edge.y0 > edge.y1) {
    std::swap(edge.x0, edge.x1);
    std::swap(edge.y0, edge.y1);
    edge.isUpward = true;
  }
  if (edge.y0 >= clip.bottom || edge.y1 <= clip.top) return;
  highestX = std::max({highestX, edge.x0, edge.x1});
  if (edge.x0 >= clip.right && edge.x1 >= clip.right) return;
  lowestX = std::min({lowestX, edge.x0, edge.x1});
  lowestY = std::min(lowestY, edge.y0);
  highestY = std::max(highestY, edge.y1);
  edges.push_back(edge);
}

bool Rasteriser::OpenWindow() {
  if (edges.empty() || clip.IsEmpty()) return false;
  window.left = std::max(clip.left, Floor(std::min<double>(lowestX, clip.right)));
  window.top = std::max(clip.top, Floor(lowestY));
  window.right = static_cast<std::int32_t>(std::min<double>(clip.right, std::floor(highestX) + 1));
  window.bottom = static_cast<std::int32_t>(std::min<double>(clip.bottom, std::ceil(highestY)));
  if (window.IsEmpty()) return false;
  // One extra cell takes the coverage beyond the last column.
  rowCells = static_cast<std::size_t>(window.right - window.left) + 1;
  rowWords = (rowCells + 63) / 64;
  const std::size_t rows = std::max<std::size_t>(1, BandCells / rowCells);
  bandRows = static_cast<std::int32_t>(std::min(rows, static_cast<std::size_t>(window.bottom - window.top)));
  const auto band = static_cast<std::size_t>(bandRows);
  if (cells.size() < band * rowCells) cells.resize(band * rowCells);
  if (touched.size() < band * rowWords) touched.resize(band * rowWords);
  return true;
}

void Rasteriser::AccumulateBand(std::int32_t top, std::int32_t bottom) {
  bandTop = top;
  for (const Edge& edge : edges) {
    if (edge.y1 > top && edge.y0 < bottom) Accumulate(edge, top, bottom);
  }
}

// `cover` is the edge's height in the cell; `share` is the mean part of the cell to the left of the edge.
inline void Rasteriser::AddToCell(std::size_t row, std::int32_t x, std::int32_t cover, double share) {
  if (cover == 0) return;
  const auto outside = static_cast<std::int32_t>(cover * share + CellHalf);
  const auto column = static_cast<std::size_t>(x - window.left);
  Add(row, column, direction * (cover - outside));
  if (outside != 0) Add(row, column + 1, direction * outside);
}

// Compute every value from the edge's own ends, never from the row before, so that it does not depend on the clip.
void Rasteriser::Accumulate(const Edge& edge, std::int32_t top, std::int32_t bottom) {
  const double slope = (edge.x1 - edge.x0) / (edge.y1 - edge.y0);
  const double rise = (edge.y1 - edge.y0) / (edge.x1 - edge.x0);  // infinite if no row has more than one cell
  const std::int32_t firstRow = edge.y0 <= top ? top : Floor(edge.y0);
  const auto lastRow = edge.y1 >= bottom ? bottom : static_cast<std::int32_t>(std::ceil(edge.y1));
  direction = edge.isUpward ? -1 : 1;
  const auto xAt = [&](double y) { return edge.x0 + (y - edge.y0) * slope; };
  double y = std::max<double>(edge.y0, firstRow);
  double x = edge.y0 >= firstRow ? edge.x0 : xAt(y);
  for (std::int32_t row = firstRow; row < lastRow; ++row) {
    const double nextY = std::min<double>(edge.y1, row + 1);
    const double nextX = edge.y1 <= row + 1 ? edge.x1 : xAt(nextY);
    const auto quantised = [row](double value) { return static_cast<std::int32_t>((value - row) * One + CellHalf); };
    const std::int32_t from = quantised(y);
    const std::int32_t to = quantised(nextY);
    const std::int32_t cell = Floor(x);
    if (cell == Floor(nextX) && cell >= window.left && cell < window.right) {
      AddToCell(static_cast<std::size_t>(row - top), cell, to - from, (x + nextX) / 2 - cell);
    } else {
      AccumulateRow({x, y}, {nextX, nextY}, rise, from, to, row);
    }
    x = nextX;
    y = nextY;
  }
}

// Adds the part of an edge inside one row, from a down to b; qa and qb are their heights from the row's top in steps of
// 1 / One. The cells' covers are differences of such steps, so they add up exactly, whatever is clipped.
void Rasteriser::AccumulateRow(Point a, Point b, double rise, std::int32_t qa, std::int32_t qb, std::int32_t y) {
  if (qa == qb) return;
  const auto row = static_cast<std::size_t>(y - bandTop);
  double left = a.x;
  double right = b.x;
  if (left > right) std::swap(left, right);
  if (left >= window.right) return;
  if (right < window.left) {
    Add(row, 0, direction * (qb - qa));
    return;
  }
  const std::int32_t firstCell = Floor(left);
  const std::int32_t lastCell = Floor(right);
  const bool isRightward = a.x < b.x;
  const auto heightAt = [&](double x) {
    const double steps = (a.y + (x - a.x) * rise - y) * One;
    return static_cast<std::int32_t>(std::clamp<double>(steps, qa, qb) + CellHalf);
  };
  std::int32_t cell = firstCell;
  double from = left;
  std::int32_t height = isRightward ? qa : qb;
  if (firstCell < window.left) {
    const std::int32_t atEdge = heightAt(window.left);
    Add(row, 0, direction * std::abs(atEdge - height));
    cell = window.left;
    from = window.left;
    height = atEdge;
  }
  for (; cell <= lastCell && cell < window.right; ++cell) {
    const double to = cell == lastCell ? right : cell + 1;
    const std::int32_t next = cell == lastCell ? (isRightward ? qb : qa) : heightAt(to);
    AddToCell(row, cell, std::abs(next - height), (from + to) / 2 - cell);
    from = to;
    height = next;
  }
}

}  // namespace kw
