#include "windows/base/Images.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

#include "resources/KwIcons.h"
#include "windows/base/Gdi.h"
#include "windows/base/Module.h"

namespace kw::windows {
namespace {

// The space that a tool bar adds to the image size for a button, half of it before the image, whatever size is
// requested.
constexpr SIZE ToolBarPadding = {8, 6};

constexpr int CursorSizes[] = {32, 48, 64};

using IconPixels = std::vector<std::uint32_t>;  // a square; top row first, straight alpha

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
void BrightenInk(IconPixels& icon) {
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

// Reads the pixels of an icon resource from its data: creating a system icon for each would be slow.
std::optional<IconPixels> ReadIcon(int id, int side) {
  const auto load = [](int number, const wchar_t* type) -> std::span<const std::byte> {
    const HRSRC found = FindResourceW(Module(), MAKEINTRESOURCEW(number), type);
    const HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(Module(), found);
    if (loaded == nullptr) return {};
    return {static_cast<const std::byte*>(LockResource(loaded)), SizeofResource(Module(), found)};
  };
  const auto directory = load(id, RT_GROUP_ICON);
  if (directory.empty()) return std::nullopt;
  // The function only reads, although its parameter is not const.
  auto* const entries = reinterpret_cast<BYTE*>(const_cast<std::byte*>(directory.data()));
  const auto icon = load(LookupIconIdFromDirectoryEx(entries, TRUE, side, side, LR_DEFAULTCOLOR), RT_ICON);
  BITMAPINFOHEADER header = {};
  const auto width = static_cast<std::size_t>(side);
  IconPixels pixels(width * width);
  const std::size_t rowSize = width * sizeof pixels.front();
  if (icon.size() < sizeof header + width * rowSize) return std::nullopt;
  std::memcpy(&header, icon.data(), sizeof header);
  if (header.biSize != sizeof header || header.biWidth != side || header.biBitCount != 32) return std::nullopt;
  for (std::size_t y = 0; y < width; ++y) {  // the bottom row is stored first
    std::memcpy(&pixels[y * width], &icon[sizeof header + (width - 1 - y) * rowSize], rowSize);
  }
  return pixels;
}

// Makes an image list of these icons, each centred in its cell.
HIMAGELIST MakeList(const std::vector<IconPixels>& icons, int side, SIZE cell) {
  const int count = static_cast<int>(icons.size());
  const HIMAGELIST list = ImageList_Create(cell.cx, cell.cy, ILC_COLOR32, count, 1);
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = cell.cx * count;
  info.bmiHeader.biHeight = -cell.cy;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  const HBITMAP strip = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (strip == nullptr) return list;
  auto* const pixels = static_cast<std::uint32_t*>(bits);
  const auto width = static_cast<std::size_t>(side);
  const auto cellWidth = static_cast<std::size_t>(cell.cx);
  const std::size_t left = (cellWidth - width) / 2;
  const std::size_t top = (static_cast<std::size_t>(cell.cy) - width) / 2;
  for (std::size_t i = 0; i < icons.size(); ++i) {
    for (std::size_t y = 0; y < width; ++y) {
      std::copy_n(&icons[i][y * width], width, pixels + ((y + top) * icons.size() + i) * cellWidth + left);
    }
  }
  ImageList_Add(list, strip, nullptr);
  DeleteObject(strip);
  return list;
}

// The image of a key that has no icon.
IconPixels Placeholder(int side) {
  const auto width = static_cast<std::size_t>(side);
  IconPixels pixels(width * width);
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

Images::Images(const Scale& scale)
    : size(Fitting(IconSizes, scale)),
      cellSize{scale.LengthOnDevice(ButtonSize) - ToolBarPadding.cx,
               scale.LengthOnDevice(ButtonSize) - ToolBarPadding.cy},
      cursorSize(Fitting(CursorSizes, scale)) {}

Images::~Images() {
  if (normal != nullptr) ImageList_Destroy(normal);
  if (disabled != nullptr) ImageList_Destroy(disabled);
  for (const auto& [key, cursor] : cursors) {
    if (cursor != nullptr) DestroyCursor(cursor);
  }
}

void Images::Fill() const {
  if (normal != nullptr) return;
  std::vector<IconPixels> icons = {Placeholder(size)};  // index 0
  for (const IconResource& resource : IconResources) {
    const auto icon = ReadIcon(resource.id, size);
    if (!icon) continue;
    indexes[resource.key] = static_cast<int>(icons.size());
    icons.push_back(*icon);
  }
  if (IsFaceDark()) std::ranges::for_each(icons, &BrightenInk);
  normal = MakeList(icons, size, cellSize);
  for (IconPixels& icon : icons) {
    for (std::uint32_t& pixel : icon) pixel = Disable(pixel);
  }
  disabled = MakeList(icons, size, cellSize);
}

HIMAGELIST Images::Normal() const {
  Fill();
  return normal;
}

HIMAGELIST Images::Disabled() const {
  Fill();
  return disabled;
}

int Images::IndexOf(const std::string& key) const {
  Fill();
  const auto found = indexes.find(key);
  return found == indexes.end() ? 0 : found->second;
}

void Images::Draw(HDC context, const RECT& bounds, const std::string& key, bool isEnabled) const {
  ImageList_Draw(isEnabled ? Normal() : Disabled(), IndexOf(key), context,
                 (bounds.left + bounds.right - cellSize.cx) / 2, (bounds.top + bounds.bottom - cellSize.cy) / 2,
                 ILD_TRANSPARENT);
}

HCURSOR Images::CursorOf(MousePointer pointer, const std::string& icon) const {
  if (pointer != MousePointer::Custom) {
    const wchar_t* const name = SystemCursorOf(pointer);
    return name == nullptr ? nullptr : LoadCursorW(nullptr, name);
  }
  const auto known = cursors.find(icon);
  if (known != cursors.end()) return known->second;
  HCURSOR cursor = nullptr;
  for (const IconResource& resource : CursorResources) {
    if (resource.key != icon) continue;
    cursor = static_cast<HCURSOR>(
        LoadImageW(Module(), MAKEINTRESOURCEW(resource.id), IMAGE_CURSOR, cursorSize, cursorSize, 0));
  }
  return cursors[icon] = cursor;
}

}  // namespace kw::windows
