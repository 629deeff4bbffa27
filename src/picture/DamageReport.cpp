#include "picture/DamageReport.h"

#include <algorithm>

#include "picture/Depth.h"

namespace kw {
namespace {

// A byte of pixels of the page's lightest colour.
std::uint8_t PaperByte(const Bitmap& page) {
  const auto palette = page.Palette();
  if (palette.empty()) return page.BitsPerPixel() > 8 ? 255 : 0;
  const auto lightest =
      std::ranges::max_element(palette, {}, [](const Rgb& colour) { return Luma(colour); }) - palette.begin();
  const unsigned repeated = page.BitsPerPixel() == 1 ? 0xFF : page.BitsPerPixel() == 4 ? 0x11 : 1;
  return static_cast<std::uint8_t>(static_cast<unsigned>(lightest) * repeated);
}

}  // namespace

std::int32_t DamageReport::MissingRows(const Bitmap& page) const {
  std::vector<bool> rows(static_cast<std::size_t>(page.Height()));
  for (const PageArea& area : missing) {
    std::fill(rows.begin() + area.top, rows.begin() + area.bottom, true);
  }
  return static_cast<std::int32_t>(std::ranges::count(rows, true));
}

bool DamageReport::IsNothingLeft(const Bitmap& page) const { return !IsWhole() && MissingRows(page) == page.Height(); }

std::string DamageReport::Finish(Bitmap& page, const std::string& reason) const {
  if (IsWhole()) return {};
  const std::uint8_t paper = PaperByte(page);
  const auto bits = static_cast<std::size_t>(page.BitsPerPixel());
  for (const PageArea& area : missing) {
    for (std::int32_t y = area.top; y < area.bottom; ++y) {
      const auto row = page.MutableRow(y);
      const std::size_t end = (static_cast<std::size_t>(area.right) * bits + 7) / 8;
      std::fill(row.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(area.left) * bits / 8),
                row.begin() + static_cast<std::ptrdiff_t>(std::min(end, row.size())), paper);
    }
  }
  return std::to_string(MissingRows(page)) + " of " + std::to_string(page.Height()) +
         " rows of the page are not whole. " + reason;
}

}  // namespace kw
