#include "windows/base/Gdi.h"

#include <algorithm>

#include "windows/base/Owned.h"

namespace kw::windows {

bool BackBuffer::Reserve(int newWidth, int newHeight) {
  if (newWidth <= width && newHeight <= height) return true;
  newWidth = std::max(newWidth, width);
  newHeight = std::max(newHeight, height);
  Free();
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = newWidth;
  info.bmiHeader.biHeight = -newHeight;  // negative: the top row first
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  context = bitmap == nullptr ? nullptr : CreateCompatibleDC(nullptr);
  if (context == nullptr) {
    Free();
    return false;
  }
  before = SelectObject(context, bitmap);
  pixels = static_cast<std::uint32_t*>(bits);
  width = newWidth;
  height = newHeight;
  return true;
}

void BackBuffer::Free() {
  if (context != nullptr) {
    SelectObject(context, before);
    DeleteDC(context);
  }
  if (bitmap != nullptr) DeleteObject(bitmap);
  context = nullptr;
  bitmap = nullptr;
  pixels = nullptr;
  width = height = 0;
}

FrameBuffer BackBuffer::Pixels(const RECT& area) const {
  return {pixels, static_cast<std::size_t>(width), ToPixelRect(area)};
}

namespace {

// The rectangles of the window's update region; if they are many, their bounding box.
std::vector<RECT> UpdatePartsOf(HWND window) {
  constexpr DWORD Many = 16;
  std::vector<RECT> parts;
  const OwnedGdiObject owned(CreateRectRgn(0, 0, 0, 0));
  auto* const region = static_cast<HRGN>(owned.get());
  if (GetUpdateRgn(window, region, FALSE) > NULLREGION) {
    std::vector<std::byte> memory(GetRegionData(region, 0, nullptr));
    auto* const data = reinterpret_cast<RGNDATA*>(memory.data());
    GetRegionData(region, static_cast<DWORD>(memory.size()), data);
    const auto* const first = reinterpret_cast<const RECT*>(data->Buffer);
    if (data->rdh.nCount <= Many) {
      parts.assign(first, first + data->rdh.nCount);
    } else {
      parts.push_back(data->rdh.rcBound);
    }
  }
  return parts;
}

}  // namespace

BufferedPaint::BufferedPaint(HWND painted, BackBuffer& frame)
    : window(painted), isAnswer(true), buffer(frame), parts(UpdatePartsOf(painted)) {
  BeginPaint(window, &paint);
  Begin();
}

BufferedPaint::BufferedPaint(HWND painted, BackBuffer& frame, const std::vector<PixelRect>& changed)
    : window(painted), isAnswer(false), buffer(frame) {
  RECT client = {};
  GetClientRect(window, &client);
  for (const PixelRect& one : changed) {
    const RECT part = ToRect(Common(one, ToPixelRect(client)));
    if (IsRectEmpty(&part) != FALSE) continue;
    parts.push_back(part);
    UnionRect(&paint.rcPaint, &paint.rcPaint, &part);
  }
  if (IsNeeded()) paint.hdc = GetDC(window);
  Begin();
}

void BufferedPaint::Begin() {
  const RECT& dirty = paint.rcPaint;
  if (IsRectEmpty(&dirty) != FALSE || !buffer.Reserve(WidthOf(dirty), HeightOf(dirty))) parts.clear();
  if (IsNeeded()) SetViewportOrgEx(buffer.Context(), -dirty.left, -dirty.top, nullptr);
}

BufferedPaint::~BufferedPaint() {
  if (IsNeeded()) {
    const RECT& dirty = paint.rcPaint;
    GdiFlush();
    SetViewportOrgEx(buffer.Context(), 0, 0, nullptr);
    for (const RECT& part : parts) {
      BitBlt(paint.hdc, part.left, part.top, WidthOf(part), HeightOf(part), buffer.Context(), part.left - dirty.left,
             part.top - dirty.top, SRCCOPY);
    }
  }
  if (isAnswer)
    EndPaint(window, &paint);
  else if (paint.hdc != nullptr)
    ReleaseDC(window, paint.hdc);
}

void FillWith(HDC context, const RECT& rectangle, COLORREF colour) {
  const COLORREF before = SetBkColor(context, colour);
  ExtTextOutW(context, 0, 0, ETO_OPAQUE, &rectangle, nullptr, 0, nullptr);
  SetBkColor(context, before);
}

HFONT CreateCaptionFont(const Scale& scale) {
  constexpr int Height = 11;  // pixels: 8.25 points at 96 to the inch, the pixels of the form
  // Rounded down: a caption that fits at 96 to the inch fits at every scale.
  return CreateFontW(-Height * scale.Dpi() / Scale::ModelDpi, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                     OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                     L"MS Shell Dlg 2");
}

}  // namespace kw::windows
