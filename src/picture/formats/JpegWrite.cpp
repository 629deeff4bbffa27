#include "picture/formats/JpegWrite.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <jerror.h>

#include "components/base/RunTimeError.h"
#include "picture/Depth.h"
#include "picture/Unreadable.h"
#include "picture/effects/ParallelRows.h"
#include "picture/formats/JpegScan.h"
#include "picture/formats/JpegTrap.h"

namespace kw {
namespace {

constexpr std::size_t WriteBlockSize = std::size_t{64} * 1024;

// A picture of so many bytes gets restart markers, so that threads can write and read it. That does not depend on the
// threads that there are: the same picture is the same file everywhere.
constexpr std::uint64_t BytesWorthMarkers = std::uint64_t{4} << 20U;

// From one restart marker to the next. A band begins as the picture does: with the marker's first number.
constexpr std::int32_t RowsOfInterval = 16;
constexpr std::int32_t MarkersOfBand = 8;
constexpr std::int32_t RowsOfCodedBand = MarkersOfBand * RowsOfInterval;

std::uint64_t BytesOf(const Bitmap& picture) {
  return std::uint64_t{picture.RowBytes()} * static_cast<std::uint64_t>(picture.Height());
}

bool HasMarkers(const Bitmap& picture) { return BytesOf(picture) >= BytesWorthMarkers; }

// libjpeg's data destination, to a stream.
struct Destination {
  jpeg_destination_mgr manager{};
  Stream* file = nullptr;
  std::array<JOCTET, WriteBlockSize> block{};
};

void StartBlock(j_compress_ptr encoder) {
  auto* destination = reinterpret_cast<Destination*>(encoder->dest);
  destination->manager.next_output_byte = destination->block.data();
  destination->manager.free_in_buffer = destination->block.size();
}

boolean FlushBlock(j_compress_ptr encoder) {
  auto* destination = reinterpret_cast<Destination*>(encoder->dest);
  const std::size_t size = destination->block.size();
  if (destination->file->Write(destination->block.data(), size) != size) ERREXIT(encoder, JERR_FILE_WRITE);
  StartBlock(encoder);
  return TRUE;
}

void FlushLastBlock(j_compress_ptr encoder) {
  auto* destination = reinterpret_cast<Destination*>(encoder->dest);
  destination->file->Write(destination->block.data(), destination->block.size() - destination->manager.free_in_buffer);
}

// One compression to a stream.
class JpegEncoder {
public:
  explicit JpegEncoder(Stream& file) {
    Prepare(trap);
    destination.file = &file;
    destination.manager.init_destination = StartBlock;
    destination.manager.empty_output_buffer = FlushBlock;
    destination.manager.term_destination = FlushLastBlock;
    codec.err = &trap.manager;
  }
  JpegEncoder(const JpegEncoder&) = delete;
  JpegEncoder& operator=(const JpegEncoder&) = delete;
  ~JpegEncoder() { jpeg_destroy_compress(&codec); }

  // Writes a picture of these rows of `picture`.
  void Write(const Bitmap& picture, RowBand rows, int quality) {
    Try([&] { Start(picture, rows.end - rows.begin, quality); });
    for (std::int32_t y = rows.begin; y < rows.end; ++y) {
      // libjpeg's interface takes rows as non-const but does not change them.
      auto* row = const_cast<JSAMPLE*>(picture.Row(y).data());
      Try([this, &row] { jpeg_write_scanlines(&codec, &row, 1); });
    }
    Try([this] { jpeg_finish_compress(&codec); });
  }

private:
  template <typename Step>
  void Try(const Step& step) {
    if (Trapped(trap, step)) return;
    RequireMemory(trap);
    RaiseUnreadable(std::string("The picture cannot be written as JPEG: ") + trap.message.data());
  }

  void Start(const Bitmap& picture, std::int32_t height, int quality) {
    constexpr int fineColour = 90;
    jpeg_create_compress(&codec);
    codec.dest = &destination.manager;
    codec.image_width = static_cast<JDIMENSION>(picture.Width());
    codec.image_height = static_cast<JDIMENSION>(height);
    const bool grey = picture.BitsPerPixel() == 8;
    codec.input_components = grey ? 1 : 3;
    codec.in_color_space = grey ? JCS_GRAYSCALE : JCS_EXT_BGR;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, quality, TRUE);
    // Chroma subsampling would fray coloured writing.
    if (quality >= fineColour) codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
    if (HasMarkers(picture)) codec.restart_in_rows = RowsOfInterval / (codec.comp_info[0].v_samp_factor * DCTSIZE);
    SetDensity(picture);
    jpeg_start_compress(&codec, TRUE);
  }

  void SetDensity(const Bitmap& picture) {
    const double x = picture.HorizontalResolution() + 0.5;
    const double y = picture.VerticalResolution() + 0.5;
    constexpr double most = 65535;
    if (!(x >= 1 && x <= most && y >= 1 && y <= most)) return;
    codec.density_unit = 1;
    codec.X_density = static_cast<UINT16>(x);
    codec.Y_density = static_cast<UINT16>(y);
  }

  JpegTrap trap;
  Destination destination;
  jpeg_compress_struct codec{};
};

// The rows [begin, end) as a picture of their own.
struct CodedBand {
  MemoryFile file;
  std::optional<JpegScan> scan;

  // Without memory, the scan stays empty. Does not throw.
  void Code(const Bitmap& picture, RowBand rows, int quality) {
    try {
      file.Seek(0);
      std::make_unique<JpegEncoder>(file)->Write(picture, rows, quality);
      scan = JpegScanOf(file.Bytes());
    } catch (...) {
      scan.reset();
    }
  }
};

// What the encoder makes of the whole picture, whose bands are coded by threads.
class BandWriter {
public:
  BandWriter(const Bitmap& source, Stream& target, int jpegQuality)
      : picture(source), to(target), quality(jpegQuality) {}

  void Write(std::size_t threads) {
    // Coded pixels of a group of bands are held in memory; hardly any page has a second group.
    constexpr std::uint64_t bytesOfGroup = std::uint64_t{64} << 20U;
    const auto bandBytes = std::uint64_t{picture.RowBytes()} * RowsOfCodedBand;
    const std::size_t most = std::max(2 * threads, static_cast<std::size_t>(bytesOfGroup / bandBytes));
    const auto bands = static_cast<std::size_t>((picture.Height() + RowsOfCodedBand - 1) / RowsOfCodedBand);
    for (std::size_t first = 0; first < bands; first += most) WriteGroup(first, std::min(most, bands - first));
    Put(std::array<std::uint8_t, 2>{0xFF, JPEG_EOI});
  }

private:
  RowBand RowsOf(std::size_t band) const {
    const auto begin = static_cast<std::int32_t>(band) * RowsOfCodedBand;
    return {begin, std::min(begin + RowsOfCodedBand, picture.Height())};
  }

  void WriteGroup(std::size_t first, std::size_t count) {
    std::vector<CodedBand> bands(count);
    ParallelFor(count, [&](std::size_t i) { bands[i].Code(picture, RowsOf(first + i), quality); });
    for (std::size_t i = 0; i < count; ++i) {
      // The threads have given back what memory they had.
      if (!bands[i].scan) bands[i].Code(picture, RowsOf(first + i), quality);
      if (!bands[i].scan) Raise(ErrorNumber::OutOfMemory);
      Append(bands[i], first + i == 0);
    }
  }

  void Append(const CodedBand& band, bool isFirst) {
    const auto bytes = band.file.Bytes();
    const JpegScan& scan = *band.scan;
    if (isFirst) {
      Put(bytes.first(scan.heightAt));
      const auto height = static_cast<std::uint32_t>(picture.Height());
      Put(std::array{static_cast<std::uint8_t>(height >> 8U), static_cast<std::uint8_t>(height)});
      Put(bytes.subspan(scan.heightAt + 2, scan.codesBegin - scan.heightAt - 2));
    } else {
      Put(std::array<std::uint8_t, 2>{0xFF, JPEG_RST0 + MarkersOfBand - 1});
    }
    Put(bytes.subspan(scan.codesBegin, scan.codesEnd - scan.codesBegin));
  }

  void Put(std::span<const std::uint8_t> bytes) {
    if (!to.WriteAll(bytes)) RaiseUnreadable("The picture cannot be written as JPEG.");
  }

  const Bitmap& picture;
  Stream& to;
  int quality;
};

// 1 if the encoder itself has to say that a picture is too large for it.
std::size_t ThreadsToWrite(const Bitmap& picture) {
  if (!HasMarkers(picture) || std::max(picture.Width(), picture.Height()) > JPEG_MAX_DIMENSION) return 1;
  return ThreadsForWork(BytesOf(picture) * WorkOfJpegByte);
}

}  // namespace

void WriteJpeg(const Bitmap& picture, Stream& to, const WriteOptions& options) {
  const bool grey = HasGreyPalette(picture);
  const Bitmap source = grey ? ToGreyLevels(picture) : ToDepth(picture, 24);
  if (const std::size_t threads = ThreadsToWrite(source); threads > 1)
    BandWriter(source, to, options.jpegQuality).Write(threads);
  else
    std::make_unique<JpegEncoder>(to)->Write(source, {0, source.Height()}, options.jpegQuality);
}

}  // namespace kw
