#include <algorithm>
#include <array>
#include <memory>

#include "components/base/RunTimeError.h"
#include "picture/Orientation.h"
#include "picture/formats/Formats.h"
#include "picture/formats/JpegDecoder.h"
#include "picture/formats/JpegIntervals.h"
#include "picture/formats/JpegWrite.h"
#include "picture/formats/TiffDirectory.h"

namespace kw {
namespace {

PageHeader StoredHeaderOf(const jpeg_decompress_struct& codec) {
  const double perInch = codec.density_unit == 1 ? 1 : codec.density_unit == 2 ? CentimetresPerInch : 0;
  return {{codec.image_width, codec.image_height},
          static_cast<std::int16_t>(codec.num_components * codec.data_precision),
          codec.X_density * perInch,
          codec.Y_density * perInch};
}

// The orientation in the Exif data, which are a mark of six bytes and a TIFF file without pixels.
Orientation OrientationOf(const jpeg_decompress_struct& codec) {
  constexpr std::array<std::uint8_t, 6> mark{'E', 'x', 'i', 'f', 0, 0};
  for (const auto* marker = codec.marker_list; marker != nullptr; marker = marker->next) {
    const std::span<const std::uint8_t> data(marker->data, marker->data_length);
    if (marker->marker != ExifMarker || data.size() < mark.size() ||
        !std::equal(mark.begin(), mark.end(), data.begin())) {
      continue;
    }
    try {
      MemoryReader exif(data.subspan(mark.size()));
      // The second directory is that of a small picture, which many programs damage or cut off.
      const TiffStructure structure(exif, TiffStructure::Chain::FirstOnly);
      const auto entries = structure.ReadDirectory(exif, structure.Directories().front());
      return static_cast<Orientation>(structure.ReadNumber(exif, entries, TiffTag::Orientation, 1));
    } catch (const RunTimeError&) {
      // Damaged Exif data say nothing about the picture.
    }
  }
  return 1;
}

class JpegSource : public PictureSource {
public:
  JpegSource(Stream& file, const ReadLimits& readLimits) : limits(readLimits) {
    const auto decoder = std::make_unique<JpegDecoder>(file);
    const auto& codec = decoder->ReadHeader();
    const PageHeader stored = StoredHeaderOf(codec);
    const std::uint64_t coefficients = decoder->CoefficientMemory();
    const ReadLimits left{limits.pageMemory - std::min(limits.pageMemory, coefficients)};
    RequirePageFits(stored.size.width, stored.size.height, decoder->Depth(), left);
    header = Upright(stored, OrientationOf(codec));
  }

  PageHeader Header(Stream& /*file*/, std::int32_t /*page*/) override { return header; }

  Bitmap Read(Stream& file, std::int32_t /*page*/, std::string& warning) override {
    const auto decoder = std::make_unique<JpegDecoder>(file);
    const auto& codec = decoder->ReadHeader();
    const PageHeader stored = StoredHeaderOf(codec);
    Bitmap page = NewUnfilledPage(stored.size.width, stored.size.height, decoder->Depth(), limits);
    page.SetResolution(stored.horizontalResolution, stored.verticalResolution);
    if (!ReadIntervalsByThreads(file, codec, page)) warning = decoder->ReadRows(page);
    return Upright(page, OrientationOf(codec), limits);
  }

  bool Copy(Stream& file, std::int32_t /*page*/, Stream& to) override {
    CopyBytes(file, 0, file.Size(), to);
    return true;
  }

private:
  PageHeader header;
  ReadLimits limits;
};

bool RecogniseJpeg(std::span<const std::uint8_t> head) {
  return head.size() >= 4 && head[0] == 0xFF && head[1] == 0xD8 && head[2] == 0xFF;
}

std::unique_ptr<PictureSource> OpenJpeg(Stream& file, const ReadLimits& limits) {
  return std::make_unique<JpegSource>(file, limits);
}

}  // namespace

const PictureFormat JpegFormat{"JPEG", JpegExtensions, RecogniseJpeg, OpenJpeg, WriteJpeg, nullptr};

}  // namespace kw
