#include <algorithm>
#include <array>

#include "components/base/RunTimeError.h"
#include "fuzz/Promise.h"
#include "fuzz/Tries.h"
#include "picture/Depth.h"

namespace kw {
namespace {

// Small, so that most time goes into the reader and not into the pixels that a few bytes can claim. Pixels in LZMA have
// room for the coder's usual dictionary besides.
ReadLimits LimitsFor(std::span<const std::uint8_t> bytes) {
  constexpr std::uint64_t pixels = std::uint64_t{4} << 20U;
  constexpr std::uint64_t dictionary = std::uint64_t{8} << 20U;
  constexpr std::array<std::uint8_t, 6> lzma{0xFD, '7', 'z', 'X', 'Z', 0};
  const bool hasLzma = std::search(bytes.begin(), bytes.end(), lzma.begin(), lzma.end()) != bytes.end();
  return {hasLzma ? pixels + dictionary : pixels};
}

constexpr std::int32_t TriedPages = 12;

Bitmap FirstPageOf(const PictureFormat& format, std::span<const std::uint8_t> bytes) {
  MemoryReader file(bytes);
  std::string warning;
  Bitmap page = format.open(file, LimitsFor(bytes))->Read(file, 1, warning);
  Promise(warning.empty(), "a written page is whole");
  return page;
}

// A page that was read can be written, and what was written shows the same.
void Rewrite(const PictureFormat& format, const Bitmap& page) {
  MemoryFile file;
  format.write(page, file, {});
  const Bitmap again = FirstPageOf(format, file.Bytes());
  Promise(again.Width() == page.Width() && again.Height() == page.Height(), "a written page keeps its size");
  const bool lossless = &format != &JpegFormat && (&format != &GifFormat || page.BitsPerPixel() <= 8);
  if (!lossless) return;
  // A palette may be filled up; what is seen is the same.
  const int depth = std::max(page.BitsPerPixel(), 24);
  Promise(SamePicture(ToDepth(again, depth), ToDepth(page, depth)), "a written page keeps its pixels");
}

// A page joins the document that it came from.
void AppendTo(const PictureFormat& format, std::span<const std::uint8_t> bytes, Stream& page, std::int32_t pages) {
  MemoryFile document;
  document.WriteAll(bytes);
  std::unique_ptr<PageAppender> appender;
  try {
    appender = format.append(document);
  } catch (const RunTimeError&) {
    // Another byte order, or offsets of 64 bits.
    return;
  }
  const bool appended = appender->Append(page);
  Promise(format.open(document, LimitsFor(bytes))->PageCount() == pages + (appended ? 1 : 0),
          "an appended page is one more");
}

}  // namespace

int TryFormat(const PictureFormat& format, std::span<const std::uint8_t> bytes) {
  if (!format.recognises(bytes.first(std::min(bytes.size(), RecognisedBytes)))) return 0;
  MemoryReader file(bytes);
  std::unique_ptr<PictureSource> source;
  try {
    source = format.open(file, LimitsFor(bytes));
    source->RequireSoundCodes(file);
  } catch (const RunTimeError&) {
    return 0;
  }
  int pages = 0;
  Promise(source->PageCount() >= 1, "an opened file has a page");
  for (std::int32_t number = 1; number <= std::min(source->PageCount(), TriedPages); ++number) {
    try {
      source->Header(file, number);
      MemoryFile copy;
      if (source->Copy(file, number, copy)) {
        Promise(format.open(copy, LimitsFor(bytes))->PageCount() == 1, "a copied page is a file of one page");
        if (format.append != nullptr) AppendTo(format, bytes, copy, source->PageCount());
      }
      std::string warning;
      const Bitmap page = source->Read(file, number, warning);
      Promise(!page.IsEmpty(), "a page that was read has pixels");
      ++pages;
      if (number == 1) Rewrite(format, page);
    } catch (const RunTimeError&) {
      // Refused, which every file may be.
    }
  }
  return pages;
}

}  // namespace kw
