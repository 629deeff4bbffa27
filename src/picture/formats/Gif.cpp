#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"
#include "picture/formats/GifPages.h"

namespace kw {
namespace {

// Every page is drawn on a canvas of its own, and a few bytes make a page: all of them together may take so many
// times the file's size, or so many bytes as are drawn in a few seconds.
constexpr std::uint64_t MostTimesDrawn = 2000;
constexpr std::uint64_t AlwaysDrawn = std::uint64_t{512} << 20U;

void RequirePagesInProportion(const GifDecoder& decoder, std::size_t pages, std::uint64_t fileSize) {
  const std::uint64_t page =
      PixelMemory(static_cast<std::int32_t>(decoder.Width()), static_cast<std::int32_t>(decoder.Height()), 24);
  if (pages > 1 && page * pages > std::max(AlwaysDrawn, MostTimesDrawn * fileSize)) {
    RaiseUnreadable("The pages of the GIF file are far larger than its data.");
  }
}

class GifSource : public PictureSource {
public:
  GifSource(Stream& file, const ReadLimits& limits) {
    GifDecoder decoder(file);
    size = {decoder.Width(), decoder.Height()};
    RequirePageFits(decoder.Width(), decoder.Height(), 8, limits);
    std::vector<std::uint64_t> places;
    GifFrame frame;
    bool good = true;
    for (std::uint64_t place = decoder.Place(); good && decoder.Next(frame); place = decoder.Place()) {
      if (places.size() == MostPages) RaiseUnreadable("The GIF file has too many pages.");
      // A frame may be larger than the page that shows a part of it.
      RequirePageFits(frame.width, frame.height, 8, limits);
      places.push_back(place);
      frameBits.push_back(static_cast<std::int16_t>(decoder.Colours()->BitsPerPixel));
      // A frame that is cut off by the file's end is the last one.
      good = decoder.SkipPixels();
    }
    if (places.empty()) RaiseUnreadable("The GIF holds no picture.");
    RequirePagesInProportion(decoder, places.size(), file.Size());
    pages.emplace(std::move(places), limits);
  }

  std::int32_t PageCount() const override { return static_cast<std::int32_t>(frameBits.size()); }

  void RequireSoundCodes(Stream& file) override {
    GifDecoder decoder(file);
    GifFrame frame;
    while (decoder.Next(frame) && decoder.CheckPixels(frame)) {
    }
  }

  PageHeader Header(Stream& /*file*/, std::int32_t page) override {
    return {size, frameBits[static_cast<std::size_t>(page - 1)]};
  }
  PageSize StatedSize(Stream& /*file*/, std::int32_t /*page*/) override { return size; }

  Bitmap Read(Stream& file, std::int32_t page, std::string& warning) override {
    return pages->Read(file, page, warning);
  }

  bool Copy(Stream& file, std::int32_t /*page*/, Stream& to) override {
    if (frameBits.size() != 1) return false;
    CopyBytes(file, 0, file.Size(), to);
    return true;
  }

private:
  // Frames are drawn on a canvas of this size.
  PageSize size;
  std::vector<std::int16_t> frameBits;
  std::optional<GifPages> pages;
};

bool RecogniseGif(std::span<const std::uint8_t> head) {
  constexpr std::array<std::uint8_t, 4> mark{'G', 'I', 'F', '8'};
  return head.size() >= 6 && std::equal(mark.begin(), mark.end(), head.begin()) && (head[4] == '7' || head[4] == '9') &&
         head[5] == 'a';
}

std::unique_ptr<PictureSource> OpenGif(Stream& file, const ReadLimits& limits) {
  return std::make_unique<GifSource>(file, limits);
}

}  // namespace

const PictureFormat GifFormat{"GIF", GifExtensions, RecogniseGif, OpenGif, WriteGif, nullptr};

}  // namespace kw
