#include "windows/base/TextDrawing.h"

#include <algorithm>
#include <cmath>

#include "windows/base/Text.h"

namespace kw::windows {
namespace {

constexpr float PointsPerInch = 72;
constexpr float PixelsPerInch = 96;
constexpr UINT Layout = DT_NOPREFIX | DT_WORDBREAK | DT_EDITCONTROL;

}  // namespace

HFONT CreateLayerFont(const Font& font) {
  LOGFONTW wanted = {};
  wanted.lfHeight = -std::lround(font.size * PixelsPerInch / PointsPerInch);
  wanted.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  wanted.lfItalic = font.italic ? TRUE : FALSE;
  wanted.lfUnderline = font.underline ? TRUE : FALSE;
  wanted.lfStrikeOut = font.strikeThrough ? TRUE : FALSE;
  wanted.lfCharSet = DEFAULT_CHARSET;
  // Coverage is one number for each pixel; ClearType would need three.
  wanted.lfQuality = ANTIALIASED_QUALITY;
  ToWide(font.name).copy(wanted.lfFaceName, LF_FACESIZE - 1);
  return CreateFontIndirectW(&wanted);
}

TextExtent MeasureText(const std::string& text, const Font& font, std::int32_t widest, const Scale& scale) {
  constexpr LONG Unbounded = 1 << 20;
  const HDC context = CreateCompatibleDC(nullptr);
  const HFONT handle = CreateLayerFont(scale.ToDevice(font));
  const HGDIOBJ before = SelectObject(context, handle);
  // A final line end opens one more line, but the system counts it only if it has a character.
  std::wstring wide = ToWide(text);
  if (wide.empty() || wide.back() == L'\n') wide += L' ';
  RECT room = {0, 0, widest > 0 ? static_cast<LONG>(widest * scale.Factor()) : Unbounded, 0};
  DrawTextW(context, wide.c_str(), static_cast<int>(wide.size()), &room, Layout | DT_CALCRECT);
  SelectObject(context, before);
  DeleteObject(handle);
  DeleteDC(context);
  const auto inModel = [&scale](LONG length) { return static_cast<std::int32_t>(std::ceil(scale.ToModel(length))); };
  return {.width = text.empty() ? 0 : inModel(room.right), .height = inModel(room.bottom)};
}

GdiTextRenderer::~GdiTextRenderer() {
  if (handle != nullptr) DeleteObject(handle);
}

HFONT GdiTextRenderer::FontFor(const Font& wanted) {
  if (handle == nullptr || !(wanted == font)) {
    if (handle != nullptr) DeleteObject(handle);
    handle = CreateLayerFont(wanted);
    font = wanted;
  }
  return handle;
}

void GdiTextRenderer::Render(const TextRun& run, const PixelRect& bounds, CoverageMask& mask) {
  const RECT area = ToRect(mask.area);
  const HFONT asked = FontFor(run.font);
  if (asked == nullptr || !buffer.Reserve(WidthOf(area), HeightOf(area))) return Fail();
  const HDC context = buffer.Context();
  SetViewportOrgEx(context, -area.left, -area.top, nullptr);
  FillWith(context, area, RGB(0, 0, 0));
  const HGDIOBJ before = SelectObject(context, asked);
  SetBkMode(context, TRANSPARENT);
  SetTextColor(context, RGB(255, 255, 255));
  const std::wstring text = ToWide(run.text);
  RECT within = ToRect(bounds);
  DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &within, Layout);
  SelectObject(context, before);
  SetViewportOrgEx(context, 0, 0, nullptr);
  GdiFlush();
  const FrameBuffer drawn = buffer.Pixels(area);
  constexpr std::uint32_t Green = 8;  // bit position in a pixel
  for (std::int32_t y = mask.area.top; y < mask.area.bottom; ++y) {
    std::ranges::transform(drawn.Row(y, mask.area.left, mask.area.right), mask.Row(y).begin(),
                           [](std::uint32_t pixel) { return static_cast<std::uint8_t>(pixel >> Green); });
  }
}

}  // namespace kw::windows
