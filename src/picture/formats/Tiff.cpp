#include "picture/Orientation.h"
#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"
#include "picture/formats/TiffAppend.h"
#include "picture/formats/TiffBounds.h"
#include "picture/formats/TiffCopy.h"
#include "picture/formats/TiffDirectory.h"
#include "picture/formats/TiffParts.h"

namespace kw {
namespace {

class TiffSource : public PictureSource {
public:
  TiffSource(Stream& file, const ReadLimits& readLimits) : structure(file), limits(readLimits) {
    RequireBoundedPages(structure, file);
  }

  std::int32_t PageCount() const override { return static_cast<std::int32_t>(structure.Directories().size()); }

  PageHeader Header(Stream& file, std::int32_t page) override {
    const auto entries = structure.ReadDirectory(file, DirectoryOf(page));
    const auto number = [&](std::uint16_t tag, std::uint64_t missing) {
      return structure.ReadNumber(file, entries, tag, missing);
    };
    const PageSize size{number(TiffTag::ImageWidth, 0), number(TiffTag::ImageLength, 0)};
    RequirePageFits(size.width, size.height, 1, limits);
    const std::uint64_t bits = number(TiffTag::BitsPerSample, 1);
    const std::uint64_t samples = number(TiffTag::SamplesPerPixel, 1);
    constexpr std::uint64_t most = 1024;
    if (bits == 0 || bits > most || samples == 0 || samples > most / bits) {
      RaiseUnreadable("The TIFF file has pixels of an impossible size.");
    }
    const double perInch = TiffUnitsPerInch(number(TiffTag::ResolutionUnit, RESUNIT_INCH));
    const PageHeader stored{size, static_cast<std::int16_t>(bits * samples),
                            structure.ReadReal(file, entries, TiffTag::XResolution) * perInch,
                            structure.ReadReal(file, entries, TiffTag::YResolution) * perInch};
    return Upright(stored, static_cast<Orientation>(number(TiffTag::Orientation, 1)));
  }

  PageSize StatedSize(Stream& file, std::int32_t page) override {
    const auto entries = structure.ReadDirectory(file, DirectoryOf(page));
    const std::uint64_t width = structure.ReadNumber(file, entries, TiffTag::ImageWidth, 0);
    const std::uint64_t height = structure.ReadNumber(file, entries, TiffTag::ImageLength, 0);
    const auto orientation = static_cast<Orientation>(structure.ReadNumber(file, entries, TiffTag::Orientation, 1));
    return IsOnItsSide(orientation) ? PageSize{height, width} : PageSize{width, height};
  }

  Bitmap Read(Stream& file, std::int32_t page, std::string& warning) override {
    return ReadTiffPage(file, DirectoryOf(page), limits, warning);
  }

  bool Copy(Stream& file, std::int32_t page, Stream& to) override {
    return CopyTiffPage(structure, file, DirectoryOf(page), to);
  }

private:
  std::uint64_t DirectoryOf(std::int32_t page) const {
    return structure.Directories()[static_cast<std::size_t>(page - 1)];
  }

  TiffStructure structure;
  ReadLimits limits;
};

bool RecogniseTiff(std::span<const std::uint8_t> head) {
  if (head.size() < 8) return false;
  const bool little = head[0] == 'I' && head[1] == 'I' && (head[2] == 42 || head[2] == 43) && head[3] == 0;
  const bool big = head[0] == 'M' && head[1] == 'M' && (head[3] == 42 || head[3] == 43) && head[2] == 0;
  return little || big;
}

std::unique_ptr<PictureSource> OpenTiff(Stream& file, const ReadLimits& limits) {
  return std::make_unique<TiffSource>(file, limits);
}

std::unique_ptr<PageAppender> AppendTiff(Stream& document) {
  constexpr std::array<std::uint8_t, 8> header{'I', 'I', 42, 0, 0, 0, 0, 0};
  return std::make_unique<TiffAppender>(document, header, std::nullopt);
}

}  // namespace

const PictureFormat TiffFormat{"TIFF", TiffExtensions, RecogniseTiff, OpenTiff, WriteTiff, AppendTiff};

}  // namespace kw
