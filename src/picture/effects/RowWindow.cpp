#include "picture/effects/RowWindow.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

constexpr std::size_t RoundUp(std::size_t bytes) {
  return (bytes + Bitmap::RowAlignment - 1) / Bitmap::RowAlignment * Bitmap::RowAlignment;
}

// The old rows that a band still needs.
class Window {
public:
  // Copies the rows around the band's first row, and those below its end: another band overwrites them.
  Window(const RowFilter& rowFilter, const Pixels& picturePixels, RowBand rows, std::int32_t height,
         std::size_t rowBytes)
      : filter(rowFilter),
        pixels(picturePixels),
        band(rows),
        rowSize(rowBytes),
        kept(2 * rowFilter.radius + 1),
        front(RoundUp(rowFilter.margin)),
        slot(front + RoundUp(rowBytes + rowFilter.margin) + Bitmap::RowAlignment),
        memory(static_cast<std::size_t>(kept + rowFilter.radius) * slot + rowFilter.scratchBytes +
               Bitmap::RowAlignment),
        order(static_cast<std::size_t>(kept)) {
    const auto inside = [height](std::int32_t y) { return std::clamp(y, 0, height - 1); };
    for (std::int32_t i = 0; i + 1 < kept; ++i) {
      filter.take(pixels.Row(inside(band.begin - filter.radius + i)), Slot(i));
    }
    for (std::int32_t i = 0; i < filter.radius; ++i) filter.take(pixels.Row(inside(band.end + i)), Slot(kept + i));
  }

  void Run() {
    std::int32_t newest = kept - 1;
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      const std::int32_t below = y + filter.radius;
      if (below < band.end) {
        filter.take(pixels.Row(below), Slot(newest));
      } else {
        std::memcpy(Slot(newest) - front, Slot(kept + below - band.end) - front, slot);
      }
      newest = newest + 1 == kept ? 0 : newest + 1;
      for (std::int32_t i = 0; i < kept; ++i) order[static_cast<std::size_t>(i)] = Slot((newest + i) % kept);
      if (below + 1 < band.end) PrefetchRow(pixels.Row(below + 1), rowSize);
      filter.make(order.data(), pixels.Row(y), Slot(kept + filter.radius) - front);
    }
  }

private:
  // The beginning of a kept row's pixels, aligned like a bitmap's rows.
  std::uint8_t* Slot(std::int32_t index) {
    const std::size_t excess = reinterpret_cast<std::uintptr_t>(memory.data()) % Bitmap::RowAlignment;
    const std::size_t aligned = excess == 0 ? 0 : Bitmap::RowAlignment - excess;
    return memory.data() + aligned + static_cast<std::size_t>(index) * slot + front;
  }

  const RowFilter& filter;
  const Pixels& pixels;
  RowBand band;
  std::size_t rowSize;
  std::int32_t kept;
  std::size_t front;
  std::size_t slot;
  std::vector<std::uint8_t> memory;
  std::vector<const std::uint8_t*> order;
};

}  // namespace

void FilterRows(Bitmap& picture, const RowFilter& filter) {
  const Pixels pixels(picture);
  // The work is more than the bytes: every filter reads each row several times.
  const auto bands = CutIntoRowBands(picture.Height(), 4 * BytesOf(picture), 2 * filter.radius + 1);
  std::vector<Window> windows;
  windows.reserve(bands.size());
  for (const RowBand& band : bands) windows.emplace_back(filter, pixels, band, picture.Height(), picture.RowBytes());
  ParallelFor(bands.size(), [&](std::size_t i) { windows[i].Run(); });
}

void TakeRepeated(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size, std::size_t margin) {
  std::memcpy(to, from, count);
  for (std::size_t i = 0; i < margin; i += size) {
    std::memcpy(to - margin + i, from, size);
    std::memcpy(to + count + i, from + count - size, size);
  }
}

}  // namespace kw
