#include "windows/Images.h"

#include <array>
#include <cstdint>
#include <vector>

#include "resources/KwIcons.h"
#include "windows/ControlView.h"
#include "windows/Gdi.h"

namespace kw::windows {
namespace {

constexpr int Side = Images::Size;
using IconPixels = std::array<std::uint32_t, static_cast<std::size_t>(Side) * Side>;

BITMAPINFO IconFormat() {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = Side;
  info.bmiHeader.biHeight = -Side;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

// Grey of the same brightness, and paler.
std::uint32_t Disable(std::uint32_t pixel) {
  const std::uint32_t blue = pixel & 0xFFU;
  const std::uint32_t green = (pixel >> 8U) & 0xFFU;
  const std::uint32_t red = (pixel >> 16U) & 0xFFU;
  const std::uint32_t grey = (red * 77U + green * 151U + blue * 28U) >> 8U;
  const std::uint32_t alpha = (pixel >> 24U) * 2U / 5U;
  return (alpha << 24U) | (grey << 16U) | (grey << 8U) | grey;
}

HICON IconOf(const IconPixels& pixels) {
  const BITMAPINFO info = IconFormat();
  void* bits = nullptr;
  const HBITMAP colour = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const std::vector<std::uint8_t> opaque(static_cast<std::size_t>(Side) * 2);
  const HBITMAP mask = CreateBitmap(Side, Side, 1, 1, opaque.data());
  HICON icon = nullptr;
  if (colour != nullptr && mask != nullptr) {
    std::copy(pixels.begin(), pixels.end(), static_cast<std::uint32_t*>(bits));
    ICONINFO parts = {TRUE, 0, 0, mask, colour};
    icon = CreateIconIndirect(&parts);
  }
  DeleteObject(colour);
  DeleteObject(mask);
  return icon;
}

IconPixels PixelsOf(HICON icon) {
  IconPixels pixels = {};
  ICONINFO parts = {};
  if (GetIconInfo(icon, &parts) == FALSE) return pixels;
  BITMAPINFO info = IconFormat();
  const HDC screen = GetDC(nullptr);
  GetDIBits(screen, parts.hbmColor, 0, Side, pixels.data(), &info, DIB_RGB_COLORS);
  ReleaseDC(nullptr, screen);
  DeleteObject(parts.hbmColor);
  DeleteObject(parts.hbmMask);
  return pixels;
}

// Stands for a key that has no drawing.
IconPixels Placeholder() {
  IconPixels pixels = {};
  constexpr std::uint32_t Outline = 0xFF9AA5B0U;
  for (int i = 3; i < Side - 3; ++i) {
    for (const int edge : {3, Side - 4}) {
      pixels[static_cast<std::size_t>(edge * Side + i)] = Outline;
      pixels[static_cast<std::size_t>(i * Side + edge)] = Outline;
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

Images::~Images() {
  if (normal != nullptr) ImageList_Destroy(normal);
  if (disabled != nullptr) ImageList_Destroy(disabled);
  for (const auto& [key, cursor] : cursors) {
    if (cursor != nullptr) DestroyCursor(cursor);
  }
}

void Images::Fill() const {
  if (normal != nullptr) return;
  constexpr int Count = static_cast<int>(std::size(IconResources)) + 1;
  normal = ImageList_Create(Side, Side, ILC_COLOR32 | ILC_MASK, Count, 1);
  disabled = ImageList_Create(Side, Side, ILC_COLOR32 | ILC_MASK, Count, 1);
  const auto add = [this](IconPixels pixels) {
    const HICON icon = IconOf(pixels);
    const int index = ImageList_AddIcon(normal, icon);
    for (std::uint32_t& pixel : pixels) pixel = Disable(pixel);
    const HICON pale = IconOf(pixels);
    ImageList_AddIcon(disabled, pale);
    DestroyIcon(icon);
    DestroyIcon(pale);
    return index;
  };
  add(Placeholder());  // index 0
  for (const IconResource& resource : IconResources) {
    const auto icon = static_cast<HICON>(
        LoadImageW(Module(), MAKEINTRESOURCEW(resource.id), IMAGE_ICON, Side, Side, LR_DEFAULTCOLOR));
    if (icon == nullptr) continue;
    indexes[resource.key] = add(PixelsOf(icon));
    DestroyIcon(icon);
  }
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
    cursor = static_cast<HCURSOR>(LoadImageW(Module(), MAKEINTRESOURCEW(resource.id), IMAGE_CURSOR, 0, 0, 0));
  }
  return cursors[icon] = cursor;
}

}  // namespace kw::windows
