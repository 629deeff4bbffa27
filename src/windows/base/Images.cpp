#include "windows/base/Images.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

#include "resources/KwIcons.h"
#include "windows/base/DrawnPixels.h"
#include "windows/base/Gdi.h"

namespace kw::windows {
namespace {

// The largest of the sizes, which rise, that is not larger than the first one scaled.
int Fitting(std::span<const int> sizes, const Scale& scale) {
  const int wanted = scale.ToDevice(sizes.front());
  int fitting = sizes.front();
  for (const int one : sizes) {
    if (one <= wanted) fitting = one;
  }
  return fitting;
}

std::uint32_t BrightnessOf(std::uint32_t pixel) {
  const std::uint32_t blue = pixel & 0xFFU;
  const std::uint32_t green = (pixel >> 8U) & 0xFFU;
  const std::uint32_t red = (pixel >> 16U) & 0xFFU;
  return (red * 77U + green * 151U + blue * 28U) >> 8U;
}

// Whether the button face is so dark that icons on it must be bright.
bool IsFaceDark() {
  constexpr std::uint32_t Middle = 128;
  return BrightnessOf(PixelOf(GetSysColor(COLOR_3DFACE))) < Middle;
}

// For a dark button face: inverts the brightness of dark ink. An icon with a paper of its own stays as it is.
void BrightenInk(DrawnPixels& icon) {
  constexpr std::uint32_t Opaque = 200;
  constexpr std::uint32_t PaperBrightness = 200;
  constexpr int PaperShare = 5;  // an icon has paper if it is one of so many pixels
  constexpr std::uint32_t LeastAlpha = 1U << 24U;
  const auto paper = std::ranges::count_if(
      icon, [](std::uint32_t pixel) { return (pixel >> 24U) >= Opaque && BrightnessOf(pixel) >= PaperBrightness; });
  if (paper * PaperShare > std::ssize(icon)) return;
  for (std::uint32_t& pixel : icon) {
    const std::uint32_t brightness = BrightnessOf(pixel);
    if (pixel < LeastAlpha || 2 * brightness >= 255) continue;
    const std::uint32_t added = 255 - 2 * brightness;
    std::uint32_t brighter = pixel & 0xFF000000U;
    for (const unsigned channel : {0U, 8U, 16U}) {
      brighter |= std::min(((pixel >> channel) & 0xFFU) + added, 255U) << channel;
    }
    pixel = brighter;
  }
}

// A pale grey of the same brightness.
std::uint32_t Disable(std::uint32_t pixel) {
  const std::uint32_t grey = BrightnessOf(pixel);
  const std::uint32_t alpha = (pixel >> 24U) * 2U / 5U;
  return (alpha << 24U) | (grey << 16U) | (grey << 8U) | grey;
}

BITMAPINFO TopDown(int width, int height) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

// The pixel as the system blends it.
std::uint32_t Premultiplied(std::uint32_t pixel) {
  const std::uint32_t alpha = pixel >> 24U;
  std::uint32_t result = alpha << 24U;
  for (const unsigned channel : {0U, 8U, 16U}) {
    result |= (((pixel >> channel) & 0xFFU) * alpha + 127) / 255 << channel;
  }
  return result;
}

HCURSOR MakeCursor(const DrawnPixels& pixels, int side, const CursorDrawing& drawing) {
  // What is transparent stays as it is on the screen, also where pointers have no alpha; rows end at 16 bits.
  const auto width = static_cast<std::size_t>(side);
  const std::size_t rowSize = (width + 15) / 16 * 2;
  std::vector<std::uint8_t> mask(rowSize * width);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    if ((pixels[i] >> 24U) != 0) continue;
    mask[i / width * rowSize + i % width / 8] |= static_cast<std::uint8_t>(0x80U >> (i % width % 8));
  }
  void* bits = nullptr;
  const BITMAPINFO info = TopDown(side, side);
  ICONINFO parts = {};
  parts.xHotspot = static_cast<DWORD>(drawing.x * side / CursorSizes[0]);
  parts.yHotspot = static_cast<DWORD>(drawing.y * side / CursorSizes[0]);
  parts.hbmMask = CreateBitmap(side, side, 1, 1, mask.data());
  parts.hbmColor = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (parts.hbmColor != nullptr) std::ranges::copy(pixels, static_cast<std::uint32_t*>(bits));
  const bool isWhole = parts.hbmColor != nullptr && parts.hbmMask != nullptr;
  auto* const cursor = isWhole ? static_cast<HCURSOR>(CreateIconIndirect(&parts)) : nullptr;
  if (parts.hbmColor != nullptr) DeleteObject(parts.hbmColor);
  if (parts.hbmMask != nullptr) DeleteObject(parts.hbmMask);
  return cursor;
}

// The image of a key that has no icon.
DrawnPixels Placeholder(int side) {
  const auto width = static_cast<std::size_t>(side);
  DrawnPixels pixels(width * width);
  constexpr std::uint32_t Outline = 0xFF9AA5B0U;
  const std::size_t margin = width * 3 / 16;
  for (std::size_t i = margin; i < width - margin; ++i) {
    for (const std::size_t edge : {margin, width - margin - 1}) {
      pixels[edge * width + i] = Outline;
      pixels[i * width + edge] = Outline;
    }
  }
  return pixels;
}

const wchar_t* SystemCursorOf(MousePointer pointer) {
  switch (pointer) {
    case MousePointer::Arrow:
      return IDC_ARROW;
    case MousePointer::Cross:
      return IDC_CROSS;
    case MousePointer::SizeAll:
      return IDC_SIZEALL;
    case MousePointer::SizeNESW:
      return IDC_SIZENESW;
    case MousePointer::SizeNS:
      return IDC_SIZENS;
    case MousePointer::SizeNWSE:
      return IDC_SIZENWSE;
    case MousePointer::SizeWE:
      return IDC_SIZEWE;
    case MousePointer::Hourglass:
      return IDC_WAIT;
    case MousePointer::NoDrop:
      return IDC_NO;
    case MousePointer::Default:
    case MousePointer::Custom:
      return nullptr;
  }
  return nullptr;
}

}  // namespace

Images::Images(const Scale& scale) : size(Fitting(IconSizes, scale)), cursorSize(Fitting(CursorSizes, scale)) {}

Images::~Images() {
  for (const auto& [key, cursor] : cursors) {
    if (cursor != nullptr) DestroyCursor(cursor);
  }
}

void Images::Fill() const {
  std::vector<DrawnPixels> drawings = {Placeholder(size)};  // index 0
  for (DrawnPixels& drawing : ReadDrawings(FirstIconId + size, std::size(IconKeys), size)) {
    drawings.push_back(std::move(drawing));
  }
  if (IsFaceDark()) std::ranges::for_each(drawings, &BrightenInk);
  const int width = size * static_cast<int>(drawings.size());
  if (!icons.Reserve(width, 2 * size)) return;
  const FrameBuffer pixels = icons.Pixels({0, 0, width, 2 * size});
  for (int y = 0; y < size; ++y) {
    const auto normal = pixels.Row(y, 0, width);
    const auto disabled = pixels.Row(size + y, 0, width);
    for (std::size_t x = 0; x < normal.size(); ++x) {
      const auto side = static_cast<std::size_t>(size);
      const std::uint32_t pixel = drawings[x / side][static_cast<std::size_t>(y) * side + x % side];
      normal[x] = Premultiplied(pixel);
      disabled[x] = Premultiplied(Disable(pixel));
    }
  }
  std::map<std::string, int> loaded = {{"", 0}};
  for (std::size_t i = 1; i < drawings.size(); ++i) loaded[IconKeys[i - 1]] = static_cast<int>(i);
  indexes = std::move(loaded);
}

void Images::Draw(HDC context, const RECT& bounds, const std::string& key, bool isEnabled) const {
  if (indexes.empty()) Fill();
  if (indexes.empty()) return;  // memory ran out
  const auto found = indexes.find(key);
  const int index = found == indexes.end() ? 0 : found->second;
  constexpr BLENDFUNCTION byAlpha = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  GdiAlphaBlend(context, (bounds.left + bounds.right - size) / 2, (bounds.top + bounds.bottom - size) / 2, size, size,
                icons.Context(), index * size, isEnabled ? 0 : size, size, size, byAlpha);
}

HCURSOR Images::CursorOf(MousePointer pointer, const std::string& icon) const {
  if (pointer != MousePointer::Custom) {
    const wchar_t* const name = SystemCursorOf(pointer);
    return name == nullptr ? nullptr : LoadCursorW(nullptr, name);
  }
  const auto known = cursors.find(icon);
  if (known != cursors.end()) return known->second;
  const auto* const drawing = std::ranges::find(CursorDrawings, icon, &CursorDrawing::key);
  if (drawing == std::end(CursorDrawings)) return cursors[icon] = nullptr;
  const auto index = static_cast<std::size_t>(drawing - std::begin(CursorDrawings));
  const auto all = ReadDrawings(FirstCursorId + cursorSize, std::size(CursorDrawings), cursorSize);
  const HCURSOR cursor = all.empty() ? nullptr : MakeCursor(all[index], cursorSize, *drawing);
  return cursors[icon] = cursor;
}

}  // namespace kw::windows
