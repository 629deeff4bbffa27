#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <vector>

#include <gif_lib.h>

#include "picture/Recovery.h"
#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"
#include "picture/formats/GifCodes.h"
#include "picture/formats/GifWrite.h"

namespace kw {
namespace {

constexpr Rgb Paper{255, 255, 255};
// Memory for frames that were drawn on the way to another.
constexpr std::size_t KeptBytes = std::size_t{64} * 1024 * 1024;

int ReadFile(GifFileType* codec, GifByteType* to, int count) {
  return static_cast<int>(static_cast<Stream*>(codec->UserData)->Read(to, static_cast<std::size_t>(count)));
}

[[noreturn]] void RaiseDamaged(int error) {
  const char* text = GifErrorString(error);
  RaiseUnreadable(std::string("The GIF data is damaged or cut short: ") + (text != nullptr ? text : "unknown error") +
                  ".");
}

struct Frame {
  std::size_t left = 0;
  std::size_t top = 0;
  std::size_t width = 0;
  std::size_t height = 0;
  bool interlaced = false;
  int transparent = NO_TRANSPARENT_COLOR;
  int disposal = DISPOSAL_UNSPECIFIED;
};

// One pass through a file from its beginning.
class GifDecoder {
public:
  explicit GifDecoder(Stream& stream) : file(stream) {
    int error = 0;
    if (!file.Seek(0)) RaiseUnreadable("The file cannot be read.");
    codec = DGifOpen(&file, ReadFile, &error);
    if (codec == nullptr) RaiseDamaged(error);
  }
  GifDecoder(const GifDecoder&) = delete;
  GifDecoder& operator=(const GifDecoder&) = delete;
  ~GifDecoder() { DGifCloseFile(codec, nullptr); }

  std::size_t Width() const { return static_cast<std::size_t>(codec->SWidth); }
  std::size_t Height() const { return static_cast<std::size_t>(codec->SHeight); }

  // Goes on to the next frame; false behind the last.
  bool Next(Frame& frame) {
    frame = {};
    for (;;) {
      // The end mark is often left out; the file then ends between two records.
      if (file.Position() == file.Size()) return false;
      GifRecordType record = UNDEFINED_RECORD_TYPE;
      Require(DGifGetRecordType(codec, &record));
      if (record == TERMINATE_RECORD_TYPE) return false;
      if (record == EXTENSION_RECORD_TYPE) {
        ReadExtension(frame);
      } else if (record == IMAGE_DESC_RECORD_TYPE) {
        ReadDescription(frame);
        return true;
      }
    }
  }

  // False where the file ends before the pixels do. Raises InvalidPicture for a code out of range.
  bool SkipPixels(const Frame& frame) {
    int codeSize = 0;
    GifByteType* block = nullptr;
    if (DGifGetCode(codec, &codeSize, &block) == GIF_ERROR) return false;
    GifCodes codes(codeSize, std::uint64_t{frame.width} * frame.height);
    while (block != nullptr) {
      if (!codes.Take({block + 1, block[0]})) RaiseUnreadable("The GIF data is damaged: a code is out of range.");
      if (DGifGetCodeNext(codec, &block) == GIF_ERROR) return false;
    }
    return true;
  }

  // Calls take(y, row of palette indices) for each row, in the order of the file, as far as the rows can be decoded.
  // Raises InvalidPicture where not one can be. False where some are missing.
  template <typename Take>
  bool ReadPixels(const Frame& frame, const Take& take) {
    std::vector<GifPixelType> row(frame.width);
    bool good = true;
    bool any = false;
    const auto read = [&](std::size_t first, std::size_t step) {
      for (std::size_t y = first; y < frame.height && good; y += step) {
        good = DGifGetLine(codec, row.data(), static_cast<int>(row.size())) != GIF_ERROR;
        if (!good) break;
        any = true;
        take(y, row);
      }
    };
    if (frame.interlaced) {
      read(0, 8);
      read(4, 8);
      read(2, 4);
      read(1, 2);
    } else {
      read(0, 1);
    }
    if (!any) RaiseDamaged(codec->Error);
    return good;
  }

  // The palette of the current frame.
  const ColorMapObject* Colours() const {
    const ColorMapObject* map = codec->Image.ColorMap != nullptr ? codec->Image.ColorMap : codec->SColorMap;
    if (map == nullptr) RaiseUnreadable("The GIF has no palette.");
    return map;
  }

private:
  void Require(int result) const {
    if (result == GIF_ERROR) RaiseDamaged(codec->Error);
  }

  void ReadExtension(Frame& frame) {
    int function = 0;
    GifByteType* block = nullptr;
    Require(DGifGetExtension(codec, &function, &block));
    if (function == GRAPHICS_EXT_FUNC_CODE && block != nullptr) {
      GraphicsControlBlock control{};
      if (DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
        frame.transparent = control.TransparentColor;
        frame.disposal = control.DisposalMode;
      }
    }
    while (block != nullptr) Require(DGifGetExtensionNext(codec, &block));
  }

  void ReadDescription(Frame& frame) {
    Require(DGifGetImageDesc(codec));
    const GifImageDesc& image = codec->Image;
    frame.left = static_cast<std::size_t>(image.Left);
    frame.top = static_cast<std::size_t>(image.Top);
    frame.width = static_cast<std::size_t>(image.Width);
    frame.height = static_cast<std::size_t>(image.Height);
    frame.interlaced = image.Interlace;
    if (frame.width == 0 || frame.height == 0) RaiseUnreadable("The GIF has a picture without pixels.");
  }

  Stream& file;
  GifFileType* codec = nullptr;
};

int DepthOf(const ColorMapObject* colours) { return colours->ColorCount <= 2 ? 1 : colours->ColorCount <= 16 ? 4 : 8; }

Rgb ColourOf(const ColorMapObject* colours, std::size_t index) {
  if (index >= static_cast<std::size_t>(colours->ColorCount)) return {};
  const GifColorType& entry = colours->Colors[index];
  return {entry.Red, entry.Green, entry.Blue};
}

// The frames drawn one over the other, in 24 bits.
class Canvas {
public:
  explicit Canvas(Bitmap page) : picture(std::move(page)) { Clear({0, 0, Width(), Height()}); }

  // False where rows of the frame are missing; they show what was drawn before.
  bool Draw(GifDecoder& decoder, const Frame& frame) {
    // What the previous frame asked for happens just before the next is drawn.
    if (last.disposal == DISPOSE_BACKGROUND) Clear(last);
    if (last.disposal == DISPOSE_PREVIOUS) picture = before;
    if (frame.disposal == DISPOSE_PREVIOUS) before = picture;
    const ColorMapObject* colours = decoder.Colours();
    const bool good = decoder.ReadPixels(frame, [&](std::size_t y, const std::vector<GifPixelType>& indices) {
      if (frame.top + y >= Height()) return;
      const auto row = picture.MutableRow(static_cast<std::int32_t>(frame.top + y));
      for (std::size_t x = 0; x < indices.size() && frame.left + x < Width(); ++x) {
        if (indices[x] != frame.transparent) Put(row, frame.left + x, ColourOf(colours, indices[x]));
      }
    });
    last = frame;
    return good;
  }

  const Bitmap& Picture() const { return picture; }

private:
  std::size_t Width() const { return static_cast<std::size_t>(picture.Width()); }
  std::size_t Height() const { return static_cast<std::size_t>(picture.Height()); }

  static void Put(std::span<std::uint8_t> row, std::size_t x, Rgb colour) {
    row[x * 3] = colour.blue;
    row[x * 3 + 1] = colour.green;
    row[x * 3 + 2] = colour.red;
  }

  void Clear(const Frame& area) {
    for (std::size_t y = area.top; y < std::min(area.top + area.height, Height()); ++y) {
      const auto row = picture.MutableRow(static_cast<std::int32_t>(y));
      for (std::size_t x = area.left; x < std::min(area.left + area.width, Width()); ++x) Put(row, x, Paper);
    }
  }

  Bitmap picture;
  Bitmap before;
  Frame last;
};

class GifSource : public PictureSource {
public:
  GifSource(Stream& file, const ReadLimits& readLimits) : limits(readLimits) {
    GifDecoder decoder(file);
    RequirePageFits(decoder.Width(), decoder.Height(), 8, limits);
    Frame frame;
    bool good = true;
    while (good && decoder.Next(frame)) {
      frameBits.push_back(static_cast<std::int16_t>(decoder.Colours()->BitsPerPixel));
      // A frame that the file's end cuts off is the last one.
      good = decoder.SkipPixels(frame);
    }
    if (frameBits.empty()) RaiseUnreadable("The GIF holds no picture.");
  }

  std::int32_t PageCount() const override { return static_cast<std::int32_t>(frameBits.size()); }

  std::int16_t StoredBitsPerPixel(Stream& /*file*/, std::int32_t page) override {
    return frameBits[static_cast<std::size_t>(page - 1)];
  }

  // A frame is drawn on a canvas of this size.
  PageSize StatedSize(Stream& file, std::int32_t /*page*/) override {
    const GifDecoder decoder(file);
    return {decoder.Width(), decoder.Height()};
  }

  Bitmap Read(Stream& file, std::int32_t page, std::string& warning) override {
    warning.clear();
    GifDecoder decoder(file);
    Frame frame;
    RequireFrame(decoder, frame);
    const bool whole =
        frame.left == 0 && frame.top == 0 && frame.width == decoder.Width() && frame.height == decoder.Height();
    if (page == 1 && whole) return ReadIndices(decoder, frame, warning);

    return ReadDrawn(file, page, warning);
  }

  bool Copy(Stream& file, std::int32_t /*page*/, Stream& to) override {
    if (frameBits.size() != 1) return false;
    CopyBytes(file, 0, file.Size(), to);
    return true;
  }

private:
  static void RequireFrame(GifDecoder& decoder, Frame& frame) {
    if (!decoder.Next(frame)) RaiseUnreadable("The GIF is cut short.");
  }

  // A frame drawn over all before it. The last ones that were drawn for it are kept: who walks through the pages, in
  // either direction, finds the next one there mostly.
  Bitmap ReadDrawn(Stream& file, std::int32_t page, std::string& warning) {
    const auto wanted = static_cast<std::size_t>(page);
    if (wanted >= firstKept && wanted < firstKept + kept.size()) {
      if (wanted >= firstDamaged) warning = DrawnOverDamage;
      return kept[wanted - firstKept];
    }
    GifDecoder decoder(file);
    Canvas canvas(NewPage(decoder.Width(), decoder.Height(), 24, limits));
    const std::size_t most = KeptBytes / (decoder.Width() * decoder.Height() * 3) + 1;
    kept.clear();
    firstKept = wanted > most ? wanted - most + 1 : 1;
    for (std::size_t i = 1; i <= wanted; ++i) {
      Frame frame;
      RequireFrame(decoder, frame);
      if (!canvas.Draw(decoder, frame)) firstDamaged = std::min(firstDamaged, i);
      if (i >= firstKept) kept.push_back(canvas.Picture());
    }
    if (wanted >= firstDamaged) warning = DrawnOverDamage;
    return kept.back();
  }

  // A frame that covers the page keeps its palette; what is transparent in it shows paper.
  Bitmap ReadIndices(GifDecoder& decoder, const Frame& frame, std::string& warning) const {
    const ColorMapObject* colours = decoder.Colours();
    const int depth = DepthOf(colours);
    std::vector<Rgb> palette;
    for (std::size_t i = 0; i < static_cast<std::size_t>(colours->ColorCount); ++i) {
      palette.push_back(static_cast<int>(i) == frame.transparent ? Paper : ColourOf(colours, i));
    }
    Bitmap page = NewPage(frame.width, frame.height, depth, limits);
    page.SetPalette(std::move(palette));
    const auto bits = static_cast<unsigned>(depth);
    const unsigned mask = (1U << bits) - 1;
    std::vector<bool> present(frame.height);
    decoder.ReadPixels(frame, [&](std::size_t y, const std::vector<GifPixelType>& indices) {
      present[y] = true;
      const auto row = page.MutableRow(static_cast<std::int32_t>(y));
      unsigned gathered = 0;
      for (std::size_t x = 0; x < row.size() * 8 / bits; ++x) {
        gathered = gathered << bits | (x < indices.size() ? indices[x] & mask : 0);
        row[x * bits / 8] = static_cast<std::uint8_t>(gathered);
      }
    });
    Recovery recovery;
    for (std::int32_t y = 0; y < page.Height(); ++y) {
      if (!present[static_cast<std::size_t>(y)]) recovery.MissRows(page, y, y + 1);
    }
    warning = recovery.Finish(page, "The GIF data is damaged or cut short.");
    return page;
  }

  static constexpr const char* DrawnOverDamage = "A frame of the GIF up to this page is damaged or cut short.";

  std::vector<std::int16_t> frameBits;
  ReadLimits limits;
  // The pages from `firstKept` on.
  std::vector<Bitmap> kept;
  std::size_t firstKept = 1;
  // The first page that a frame with missing rows was drawn on, as far as is known.
  std::size_t firstDamaged = std::numeric_limits<std::size_t>::max();
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

const PictureFormat GifFormat{"GIF", {"gif"}, RecogniseGif, OpenGif, WriteGif, nullptr};

}  // namespace kw
