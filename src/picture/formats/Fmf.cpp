#include <algorithm>
#include <array>

#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"
#include "picture/formats/TiffAppend.h"
#include "picture/formats/TiffParts.h"

namespace kw {
namespace {

// See docs/fmf.md.
constexpr std::array<std::uint8_t, 16> Header{'I', 'I', 42, 0, 0, 0, 0, 0, 'F', 'M', 'F', '-', 0x0D, 0x0A, 0x1A, 0x0A};
constexpr std::size_t SignatureAt = 8;
constexpr std::uint16_t VersionTag = 65100;
constexpr std::uint16_t Version = 1;
constexpr std::uint16_t Revision = 0;

std::unique_ptr<PageAppender> AppendFmf(Stream& document) {
  return std::make_unique<TiffAppender>(document, Header, TiffMark{VersionTag, Version, Revision});
}

void RequireKnownVersion(Stream& file) {
  const TiffStructure structure(file);
  const auto entries = structure.ReadDirectory(file, structure.Directories().front());
  const std::uint64_t version = structure.ReadNumber(file, entries, VersionTag, 0);
  if (version == 0) RaiseUnreadable("The FMF file does not say its version.");
  if (version > Version) {
    RaiseUnreadable("The FMF file is of version " + std::to_string(version) + "; this program knows version " +
                    std::to_string(Version) + ".");
  }
}

// Writes a new document of one page.
void Begin(Stream& page, Stream& to) {
  if (!AppendFmf(to)->Append(page)) RaiseUnreadable("The picture cannot be written as FMF.");
}

// An FMF file is a TIFF file, too: its pages are read as TIFF.
class FmfSource : public PictureSource {
public:
  FmfSource(Stream& file, const ReadLimits& limits) : pages(TiffFormat.open(file, limits)) {}

  std::int32_t PageCount() const override { return pages->PageCount(); }
  PageHeader Header(Stream& file, std::int32_t page) override { return pages->Header(file, page); }
  PageSize StatedSize(Stream& file, std::int32_t page) override { return pages->StatedSize(file, page); }
  Bitmap Read(Stream& file, std::int32_t page, std::string& warning) override {
    return pages->Read(file, page, warning);
  }
  bool Copy(Stream& file, std::int32_t page, Stream& to) override {
    MemoryFile one;
    bool isCopied = false;
    TellingFailures(one, [&] { isCopied = pages->Copy(file, page, one); });
    if (isCopied) Begin(one, to);
    return isCopied;
  }

private:
  std::unique_ptr<PictureSource> pages;
};

bool RecogniseFmf(std::span<const std::uint8_t> head) {
  return head.size() >= Header.size() && std::equal(Header.begin(), Header.begin() + 4, head.begin()) &&
         std::equal(Header.begin() + SignatureAt, Header.end(), head.begin() + SignatureAt);
}

std::unique_ptr<PictureSource> OpenFmf(Stream& file, const ReadLimits& limits) {
  RequireKnownVersion(file);
  return std::make_unique<FmfSource>(file, limits);
}

void WriteFmf(const Bitmap& picture, Stream& to, const WriteOptions& options) {
  MemoryFile page;
  TellingFailures(page, [&] { WriteTiff(picture, page, options); });
  Begin(page, to);
}

}  // namespace

const PictureFormat FmfFormat{"FMF", FmfExtensions, RecogniseFmf, OpenFmf, WriteFmf, AppendFmf};

}  // namespace kw
