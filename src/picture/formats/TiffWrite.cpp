#include "picture/formats/TiffParts.h"

#include <algorithm>
#include <array>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "picture/TiffPageWriter.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"
#include "picture/formats/TiffHandle.h"

namespace kw {
namespace {

// Uncompressed bytes of a strip.
constexpr std::size_t StripBytes = std::size_t{256} * 1024;

// How the palette of a picture up to 8 bits is stored.
std::uint16_t PhotometricOf(const Bitmap& picture) {
  const auto palette = picture.Palette();
  const std::size_t count = std::size_t{1} << picture.BitsPerPixel();
  if (palette.size() != count) return PHOTOMETRIC_PALETTE;
  bool rising = true;
  bool falling = true;
  for (std::size_t i = 0; i < count; ++i) {
    const auto level = static_cast<std::uint8_t>(i * 255 / (count - 1));
    const auto inverse = static_cast<std::uint8_t>(255 - level);
    rising = rising && palette[i] == Rgb{level, level, level};
    falling = falling && palette[i] == Rgb{inverse, inverse, inverse};
  }
  return rising ? PHOTOMETRIC_MINISBLACK : falling ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_PALETTE;
}

void SetPalette(const TiffHandle& tiff, const Bitmap& picture) {
  std::array<std::vector<std::uint16_t>, 3> channels;
  for (auto& channel : channels) channel.resize(std::size_t{1} << picture.BitsPerPixel());
  const auto palette = picture.Palette();
  constexpr std::uint16_t widen = 257;
  for (std::size_t i = 0; i < palette.size(); ++i) {
    channels[0][i] = static_cast<std::uint16_t>(palette[i].red * widen);
    channels[1][i] = static_cast<std::uint16_t>(palette[i].green * widen);
    channels[2][i] = static_cast<std::uint16_t>(palette[i].blue * widen);
  }
  tiff.Set(TIFFTAG_COLORMAP, channels[0].data(), channels[1].data(), channels[2].data());
}

// `picture` may be the first band of a page of that height.
void Describe(const TiffHandle& tiff, const Bitmap& picture, std::int32_t pageHeight) {
  const int depth = picture.BitsPerPixel();
  const bool indexed = depth <= 8;
  const int photometric = indexed ? PhotometricOf(picture) : PHOTOMETRIC_RGB;
  const bool fax = depth == 1 && photometric != PHOTOMETRIC_PALETTE;
  tiff.Set(TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(picture.Width()));
  tiff.Set(TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(pageHeight));
  tiff.Set(TIFFTAG_BITSPERSAMPLE, indexed ? depth : 8);
  tiff.Set(TIFFTAG_SAMPLESPERPIXEL, indexed ? 1 : depth / 8);
  tiff.Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  tiff.Set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  tiff.Set(TIFFTAG_PHOTOMETRIC, photometric);
  tiff.Set(TIFFTAG_COMPRESSION, fax ? COMPRESSION_CCITTFAX4 : COMPRESSION_LZW);
  if (!fax && depth >= 8 && photometric != PHOTOMETRIC_PALETTE) tiff.Set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  if (photometric == PHOTOMETRIC_PALETTE) SetPalette(tiff, picture);
  if (depth == 32) {
    std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
    tiff.Set(TIFFTAG_EXTRASAMPLES, 1, &alpha);
  }
  const auto height = static_cast<std::size_t>(pageHeight);
  const std::size_t rows = fax ? height : std::clamp<std::size_t>(StripBytes / picture.RowBytes(), 1, height);
  tiff.Set(TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rows));
  if (picture.HorizontalResolution() > 0 && picture.VerticalResolution() > 0) {
    tiff.Set(TIFFTAG_XRESOLUTION, picture.HorizontalResolution());
    tiff.Set(TIFFTAG_YRESOLUTION, picture.VerticalResolution());
    tiff.Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
  }
}

// Codes `count` rows of the picture from `begin` on as the rows of the page from `target` on.
void WriteRows(const TiffHandle& tiff, const Bitmap& picture, std::int32_t begin, std::int32_t count,
               std::int32_t target) {
  // The library changes the rows that it gets.
  std::vector<std::uint8_t> row(picture.RowBytes());
  const std::size_t pixelBytes = picture.BitsPerPixel() > 8 ? static_cast<std::size_t>(picture.BitsPerPixel() / 8) : 0;
  for (std::int32_t y = 0; y < count; ++y) {
    const auto from = picture.Row(begin + y);
    if (pixelBytes == 0)
      std::ranges::copy(from, row.begin());
    else
      kernels::ExchangeRedAndBlue(from.data(), row.data(), static_cast<std::size_t>(picture.Width()), pixelBytes);
    tiff.Require(TIFFWriteScanline(tiff.Get(), row.data(), static_cast<std::uint32_t>(target + y), 0) == 1);
  }
}

// Codes the rows as the one strip of a file.
std::vector<std::uint8_t> CodedStrip(const Bitmap& picture, std::int32_t begin, std::int32_t count) {
  MemoryFile file;
  const TiffHandle tiff(file, TiffHandle::Use::Write);
  Describe(tiff, picture, count);
  WriteRows(tiff, picture, begin, count, 0);
  tiff.Require(TIFFFlushData(tiff.Get()) == 1);
  const auto offset = static_cast<std::size_t>(TIFFGetStrileOffset(tiff.Get(), 0));
  const auto size = static_cast<std::size_t>(TIFFGetStrileByteCount(tiff.Get(), 0));
  const auto coded = file.Bytes().subspan(offset, size);
  return {coded.begin(), coded.end()};
}

// Several threads code the strips of a page, which do not depend on each other; this one also writes them in their
// order, as soon as those before them are written.
class StripCoders {
public:
  StripCoders(const TiffHandle& page, const Bitmap& source)
      : tiff(page),
        picture(source),
        step(static_cast<std::int32_t>(tiff.Field(TIFFTAG_ROWSPERSTRIP, std::uint32_t{1}))),
        total((picture.Height() + step - 1) / step) {}

  void Run() {
    // What the others have coded may wait for a strip of this thread.
    constexpr std::int32_t atOnce = 128;
    while (written < total) {
      first = written;
      coded.clear();
      coded.resize(static_cast<std::size_t>(std::min(atOnce, total - first)));
      ParallelFor(coded.size(), [&](std::size_t i) { Code(i); });
      if (failure) std::rethrow_exception(failure);
      WriteCoded();
      tiff.Require(written == first + static_cast<std::int32_t>(coded.size()));
    }
  }

private:
  void Code(std::size_t i) {
    try {
      const std::int32_t begin = (first + static_cast<std::int32_t>(i)) * step;
      auto strip = CodedStrip(picture, begin, std::min(step, picture.Height() - begin));
      {
        const std::scoped_lock handingOver(lock);
        coded[i] = std::move(strip);
      }
      if (std::this_thread::get_id() == writer) WriteCoded();
    } catch (...) {
      const std::scoped_lock noting(lock);
      failure = std::current_exception();
    }
  }

  // What is written stays until all is: the memory that a thread gives back would be taken from the system again for
  // its next strip.
  void WriteCoded() {
    for (const std::int32_t end = first + static_cast<std::int32_t>(coded.size()); written < end; ++written) {
      std::vector<std::uint8_t>& strip = coded[static_cast<std::size_t>(written - first)];
      {
        const std::scoped_lock lookingAt(lock);
        if (failure || strip.empty()) return;
      }
      const auto size = static_cast<tmsize_t>(strip.size());
      tiff.Require(TIFFWriteRawStrip(tiff.Get(), static_cast<std::uint32_t>(written), strip.data(), size) == size);
    }
  }

  const TiffHandle& tiff;
  const Bitmap& picture;
  std::int32_t step;
  std::int32_t total;
  std::thread::id writer = std::this_thread::get_id();
  std::int32_t first = 0;
  std::int32_t written = 0;
  std::mutex lock;
  // From `first` on; empty ones are not coded yet.
  std::vector<std::vector<std::uint8_t>> coded;
  std::exception_ptr failure;
};

}  // namespace

TiffPageWriter::TiffPageWriter(Stream& to, std::int32_t pageHeight)
    : tiff(std::make_unique<TiffHandle>(to, TiffHandle::Use::Write)), height(pageHeight) {}

TiffPageWriter::~TiffPageWriter() = default;

void TiffPageWriter::Add(const Bitmap& band) {
  if (next == 0) Describe(*tiff, band, height);
  WriteRows(*tiff, band, 0, band.Height(), next);
  next += band.Height();
}

void TiffPageWriter::Finish() { tiff->Require(TIFFWriteDirectory(tiff->Get()) == 1); }

void WriteTiff(const Bitmap& picture, Stream& to, const WriteOptions& /*options*/) {
  const TiffHandle tiff(to, TiffHandle::Use::Write);
  Describe(tiff, picture, picture.Height());
  if (TIFFNumberOfStrips(tiff.Get()) == 1)
    WriteRows(tiff, picture, 0, picture.Height(), 0);
  else
    StripCoders(tiff, picture).Run();
  tiff.Require(TIFFWriteDirectory(tiff.Get()) == 1);
}

}  // namespace kw
