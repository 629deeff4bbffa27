#include "picture/effects/RowWindow.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

constexpr std::size_t RoundUp(std::size_t bytes) {
  return (bytes + Bitmap::RowAlignment - 1) / Bitmap::RowAlignment * Bitmap::RowAlignment;
}

std::size_t KeptBytes(const FilteredRows& rows, const RowFilter& filter) {
  return filter.keptBytes != 0 ? filter.keptBytes : rows.rowBytes;
}

// The old rows that a band still needs.
class Window {
public:
  Window(const FilteredRows& filteredRows, const RowFilter& rowFilter, RowBand ownRows)
      : filter(rowFilter),
        rows(filteredRows),
        band(ownRows),
        kept(2 * rowFilter.radius + 1),
        front(RoundUp(rowFilter.margin)),
        slot(front + RoundUp(KeptBytes(filteredRows, rowFilter) + rowFilter.margin) + Bitmap::RowAlignment),
        memory(std::make_unique_for_overwrite<std::uint8_t[]>(static_cast<std::size_t>(kept + rowFilter.radius) * slot +
                                                              rowFilter.scratchBytes + Bitmap::RowAlignment)),
        order(static_cast<std::size_t>(kept)) {}

  // Copies the rows around the band's first row, and those below its end: another band overwrites them.
  void Begin() {
    const auto inside = [this](std::int32_t y) { return std::clamp(y, 0, rows.height - 1); };
    for (std::int32_t i = 0; i + 1 < kept; ++i) {
      filter.take(rows.old.Row(inside(band.begin - filter.radius + i)), Slot(i));
    }
    for (std::int32_t i = 0; i < filter.radius; ++i) filter.take(rows.old.Row(inside(band.end + i)), Slot(kept + i));
  }

  void Run() {
    std::int32_t newest = kept - 1;
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      const std::int32_t below = y + filter.radius;
      if (below < band.end) {
        filter.take(rows.old.Row(below), Slot(newest));
      } else {
        std::memcpy(Slot(newest) - front, Slot(kept + below - band.end) - front, slot);
      }
      newest = newest + 1 == kept ? 0 : newest + 1;
      for (std::int32_t i = 0; i < kept; ++i) order[static_cast<std::size_t>(i)] = Slot((newest + i) % kept);
      if (below + 1 < band.end) PrefetchRow(rows.old.Row(below + 1), rows.rowBytes);
      filter.make(order.data(), rows.made.Row(y), Slot(kept + filter.radius) - front);
    }
  }

private:
  // The beginning of a kept row's pixels, aligned like a bitmap's rows.
  std::uint8_t* Slot(std::int32_t index) {
    const std::size_t excess = reinterpret_cast<std::uintptr_t>(memory.get()) % Bitmap::RowAlignment;
    const std::size_t aligned = excess == 0 ? 0 : Bitmap::RowAlignment - excess;
    return memory.get() + aligned + static_cast<std::size_t>(index) * slot + front;
  }

  const RowFilter& filter;
  const FilteredRows& rows;
  RowBand band;
  std::int32_t kept;
  std::size_t front;
  std::size_t slot;
  std::unique_ptr<std::uint8_t[]> memory;
  std::vector<const std::uint8_t*> order;
};

}  // namespace

void FilterRows(const FilteredRows& rows, const RowFilter& filter) {
  // The work is more than the bytes: every filter reads each row several times.
  const std::uint64_t work = std::uint64_t{4} * KeptBytes(rows, filter) * static_cast<std::uint64_t>(rows.height);
  const auto bands = CutIntoRowBands(rows.height, work, 2 * filter.radius + 1);
  std::vector<Window> windows;
  windows.reserve(bands.size());
  for (const RowBand& band : bands) windows.emplace_back(rows, filter, band);
  ParallelFor(
      bands.size(), [&](std::size_t i) { windows[i].Run(); },
      [&] {
        for (Window& window : windows) window.Begin();
      });
}

void FilterRows(Bitmap& picture, const RowFilter& filter) {
  Remade rows(picture);
  FilterRows({rows.Old(), rows.New(), picture.Height(), picture.RowBytes()}, filter);
  rows.Finish();
}

void TakeRepeated(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size, std::size_t margin) {
  std::memcpy(to, from, count);
  for (std::size_t i = 0; i < margin; i += size) {
    std::memcpy(to - margin + i, from, size);
    std::memcpy(to + count + i, from + count - size, size);
  }
}

}  // namespace kw
