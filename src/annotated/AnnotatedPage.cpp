#include "annotated/AnnotatedPage.h"

#include <algorithm>

#include "annotated/SeenLayers.h"
#include "components/base/RunTimeError.h"
#include "drawing/Compositor.h"
#include "layers/Layers.h"
#include "picture/TiffPageWriter.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

// What drawing a pixel takes at most: four bytes in the frame buffer, three in the band, and for a text its drawing and
// its mask.
constexpr std::uint64_t BytesPerPixel = 4 + 3 + 4 + 1;

void PackRow(std::span<const std::uint32_t> from, std::span<std::uint8_t> to) {
  std::size_t at = 0;
  for (const std::uint32_t pixel : from) {
    to[at] = static_cast<std::uint8_t>(pixel);
    to[at + 1] = static_cast<std::uint8_t>(pixel >> 8U);
    to[at + 2] = static_cast<std::uint8_t>(pixel >> 16U);
    at += 3;
  }
}

}  // namespace

AnnotatedPage::AnnotatedPage(const EditorForm& form) : paper(form.picCanvas.BackColor()) {
  const TransparentPicture& page = form.TransLayers(Layers::PageLayer);
  if (!page.HasPicture()) return;
  for (const TransparentPicture* layer : SeenLayers(form)) items.push_back(ContentsItemOf(*layer));
  const PixelRect area = SeenArea(form);
  width = area.right;
  height = area.bottom;
  horizontalResolution = page.Picture().HorizontalResolution();
  verticalResolution = page.Picture().VerticalResolution();
}

bool AnnotatedPage::Draw(TextRenderer& texts, const BandTaker& take, std::size_t mostBytes) const {
  Compositor compositor(paper);
  compositor.Show(items);
  const std::uint64_t rowBytes = static_cast<std::uint64_t>(width) * BytesPerPixel;
  const auto rows = static_cast<std::int32_t>(std::clamp<std::uint64_t>(mostBytes / rowBytes, 1, INT32_MAX));
  for (std::int32_t top = 0; top < height;) {
    const std::int32_t count = std::min(rows, height - top);
    if (!take(top, DrawBand(compositor, top, count, texts))) return false;
    top += count;
  }
  return true;
}

Bitmap AnnotatedPage::DrawBand(const Compositor& compositor, std::int32_t top, std::int32_t rows,
                               TextRenderer& texts) const {
  const PixelRect area = {0, top, width, top + rows};
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(rows));
  const FrameBuffer frame = {pixels.data(), static_cast<std::size_t>(width), area};
  compositor.Paint(frame, area, &texts);
  if (texts.HasFailed()) Raise(ErrorNumber::OutOfMemory);
  Bitmap band = Bitmap::Unfilled(width, rows, 24);
  band.SetResolution(horizontalResolution, verticalResolution);
  for (std::int32_t y = 0; y < rows; ++y) PackRow(frame.Row(top + y, 0, width), band.MutableRow(y));
  return band;
}

void AnnotatedPage::WriteTiff(TextRenderer& texts, Stream& to) const {
  TiffPageWriter writer(to, height);
  Draw(texts, [&writer](std::int32_t /*top*/, const Bitmap& band) {
    writer.Add(band);
    return true;
  });
  writer.Finish();
}

}  // namespace kw
