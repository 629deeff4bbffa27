// Opens, reads, copies and rewrites whatever bytes it is given as a file of the format KW_FUZZED_FORMAT.

#include <algorithm>

#include "components/RunTimeError.h"
#include "fuzz/Promise.h"
#include "picture/Depth.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

const PictureFormat& Fuzzed = KW_FUZZED_FORMAT;

// Small, so that most time goes into the reader and not into the pixels that a few bytes can claim.
constexpr ReadLimits Limits{std::uint64_t{1} << 20U};
constexpr std::int32_t MostPages = 4;

Bitmap FirstPageOf(std::span<const std::uint8_t> bytes) {
  MemoryReader file(bytes);
  std::string warning;
  Bitmap page = Fuzzed.open(file, Limits)->Read(file, 1, warning);
  Promise(warning.empty(), "a written page is whole");
  return page;
}

// A page that was read can be written, and what was written shows the same.
void Rewrite(const Bitmap& page) {
  MemoryFile file;
  Fuzzed.write(page, file, {});
  const Bitmap again = FirstPageOf(file.Bytes());
  Promise(again.Width() == page.Width() && again.Height() == page.Height(), "a written page keeps its size");
  const bool lossless = &Fuzzed != &JpegFormat && (&Fuzzed != &GifFormat || page.BitsPerPixel() <= 8);
  if (!lossless) return;
  // A palette may be filled up; what is seen is the same.
  const int depth = std::max(page.BitsPerPixel(), 24);
  Promise(SamePicture(ToDepth(again, depth), ToDepth(page, depth)), "a written page keeps its pixels");
}

// A page joins the document that it came from.
void AppendTo(std::span<const std::uint8_t> bytes, Stream& page, std::int32_t pages) {
  MemoryFile document;
  document.WriteAll(bytes);
  std::unique_ptr<PageAppender> appender;
  try {
    appender = Fuzzed.append(document);
  } catch (const RunTimeError&) {
    // Another byte order, or offsets of 64 bits.
    return;
  }
  const bool appended = appender->Append(page);
  Promise(Fuzzed.open(document, Limits)->PageCount() == pages + (appended ? 1 : 0), "an appended page is one more");
}

void Try(std::span<const std::uint8_t> bytes) {
  if (!Fuzzed.recognises(bytes.first(std::min(bytes.size(), RecognisedBytes)))) return;
  MemoryReader file(bytes);
  std::unique_ptr<PictureSource> source;
  try {
    source = Fuzzed.open(file, Limits);
  } catch (const RunTimeError&) {
    return;
  }
  Promise(source->PageCount() >= 1, "an opened file has a page");
  for (std::int32_t number = 1; number <= std::min(source->PageCount(), MostPages); ++number) {
    try {
      source->StoredBitsPerPixel(file, number);
      MemoryFile copy;
      if (source->Copy(file, number, copy)) {
        Promise(Fuzzed.open(copy, Limits)->PageCount() == 1, "a copied page is a file of one page");
        if (Fuzzed.append != nullptr) AppendTo(bytes, copy, source->PageCount());
      }
      std::string warning;
      const Bitmap page = source->Read(file, number, warning);
      Promise(!page.IsEmpty(), "a page that was read has pixels");
      if (number == 1) Rewrite(page);
    } catch (const RunTimeError&) {
      // Refused, which every file may be.
    }
  }
}

}  // namespace
}  // namespace kw

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kw::Try({data, size});
  return 0;
}
