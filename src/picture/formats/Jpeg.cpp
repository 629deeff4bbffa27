#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <string>
#include <vector>

#include <jerror.h>
#include <jpeglib.h>

#include "components/base/RunTimeError.h"
#include "picture/DamageReport.h"
#include "picture/Depth.h"
#include "picture/Orientation.h"
#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"
#include "picture/formats/TiffDirectory.h"

namespace kw {
namespace {

constexpr std::size_t BlockSize = std::size_t{64} * 1024;
constexpr int ExifMarker = JPEG_APP0 + 1;
constexpr unsigned LongestMarker = 65535;
// Decoding a scan of a progressive picture takes the time of the whole picture, however few bytes the scan has.
constexpr int MostScans = 500;

// libjpeg reports an error by longjmp. It is therefore called only inside Trapped(), in steps that own nothing: the
// jump runs no destructors.
struct Trap {
  jpeg_error_mgr manager{};
  std::jmp_buf jump{};
  std::array<char, JMSG_LENGTH_MAX> message{};
  // The coded data ended too early, after the decoder had made `rowsBefore` rows.
  bool ranDry = false;
  JDIMENSION rowsBefore = 0;
};

void Leave(j_common_ptr codec) {
  auto* trap = reinterpret_cast<Trap*>(codec->err);
  codec->err->format_message(codec, trap->message.data());
  std::longjmp(trap->jump, 1);
}

void Note(j_common_ptr codec, int level) {
  auto* trap = reinterpret_cast<Trap*>(codec->err);
  if (level >= 0 || codec->err->msg_code != JWRN_HIT_MARKER || trap->ranDry) return;
  trap->ranDry = true;
  trap->rowsBefore = reinterpret_cast<jpeg_decompress_struct*>(codec)->output_scanline;
}

void StaySilent(j_common_ptr /*codec*/) {}

void CountScans(j_common_ptr codec) {
  if (reinterpret_cast<jpeg_decompress_struct*>(codec)->input_scan_number <= MostScans) return;
  auto* trap = reinterpret_cast<Trap*>(codec->err);
  std::snprintf(trap->message.data(), trap->message.size(), "more than %d scans", MostScans);
  std::longjmp(trap->jump, 1);
}

void Prepare(Trap& trap) {
  jpeg_std_error(&trap.manager);
  trap.manager.error_exit = Leave;
  trap.manager.emit_message = Note;
  trap.manager.output_message = StaySilent;
}

template <typename Step>
bool Trapped(Trap& trap, const Step& step) {
  if (setjmp(trap.jump) != 0) return false;
  step();
  return true;
}

void RequireMemory(const Trap& trap) {
  if (trap.manager.msg_code == JERR_OUT_OF_MEMORY) Raise(ErrorNumber::OutOfMemory);
}

std::string Reason(const Trap& trap) { return std::string("The JPEG data is damaged: ") + trap.message.data() + "."; }

// libjpeg's data source, from a stream.
struct JpegInput {
  jpeg_source_mgr manager{};
  Stream* file = nullptr;
  bool atEnd = false;
  std::array<JOCTET, BlockSize> block{};
};

boolean FillSource(j_decompress_ptr decoder) {
  auto* source = reinterpret_cast<JpegInput*>(decoder->src);
  std::size_t count = source->file->Read(source->block.data(), source->block.size());
  if (count == 0) {
    source->atEnd = true;
    source->block[0] = 0xFF;
    source->block[1] = JPEG_EOI;
    count = 2;
  }
  source->manager.next_input_byte = source->block.data();
  source->manager.bytes_in_buffer = count;
  return TRUE;
}

void SkipSource(j_decompress_ptr decoder, long count) {
  auto* source = reinterpret_cast<JpegInput*>(decoder->src);
  while (count > 0 && !source->atEnd) {
    if (source->manager.bytes_in_buffer == 0) FillSource(decoder);
    const std::size_t part = std::min(static_cast<std::size_t>(count), source->manager.bytes_in_buffer);
    source->manager.next_input_byte += part;
    source->manager.bytes_in_buffer -= part;
    count -= static_cast<long>(part);
  }
}

// One decompression of a stream.
class JpegDecoder {
public:
  explicit JpegDecoder(Stream& file) {
    Prepare(trap);
    source.file = &file;
    source.manager.init_source = [](j_decompress_ptr) {};
    source.manager.fill_input_buffer = FillSource;
    source.manager.skip_input_data = SkipSource;
    source.manager.resync_to_restart = jpeg_resync_to_restart;
    source.manager.term_source = [](j_decompress_ptr) {};
    codec.err = &trap.manager;
    if (!file.Seek(0)) RaiseUnreadable("The file cannot be read.");
  }
  JpegDecoder(const JpegDecoder&) = delete;
  JpegDecoder& operator=(const JpegDecoder&) = delete;
  ~JpegDecoder() { jpeg_destroy_decompress(&codec); }

  const jpeg_decompress_struct& ReadHeader() {
    Try([this] {
      jpeg_create_decompress(&codec);
      codec.src = &source.manager;
      codec.progress = &watch;
      jpeg_save_markers(&codec, ExifMarker, LongestMarker);
      jpeg_read_header(&codec, TRUE);
    });
    return codec;
  }

  int Depth() const { return codec.num_components == 1 ? 8 : 24; }

  // Memory that is needed besides the page until the last scan has been read.
  std::uint64_t CoefficientMemory() {
    if (jpeg_has_multiple_scans(&codec) == 0) return 0;
    const auto rounded = [](JDIMENSION blocks, int step) {
      const auto size = static_cast<std::uint64_t>(step);
      return (blocks + size - 1) / size * size;
    };
    std::uint64_t blocks = 0;
    for (int i = 0; i < codec.num_components; ++i) {
      const jpeg_component_info& part = codec.comp_info[i];
      blocks += rounded(part.width_in_blocks, part.h_samp_factor) * rounded(part.height_in_blocks, part.v_samp_factor);
    }
    return blocks * DCTSIZE2 * sizeof(JCOEF);
  }

  // Decodes all rows that can be decoded; returns a warning about missing ones.
  std::string ReadRows(Bitmap& page) {
    const bool inks = codec.num_components == 4;
    codec.out_color_space = inks ? JCS_CMYK : codec.num_components == 1 ? JCS_GRAYSCALE : JCS_EXT_BGR;
    Try([this] { jpeg_start_decompress(&codec); });
    std::vector<std::uint8_t> inkRow(inks ? static_cast<std::size_t>(page.Width()) * 4 : 0);
    std::int32_t rows = 0;
    for (; rows < page.Height(); ++rows) {
      const auto row = page.MutableRow(rows);
      JSAMPROW target = inks ? inkRow.data() : row.data();
      if (!Trapped(trap, [this, &target] { jpeg_read_scanlines(&codec, &target, 1); })) break;
      if (inks) FromInks(inkRow, row);
    }
    RequireMemory(trap);
    const std::string reason = rows == page.Height() ? "The JPEG data is cut short." : Reason(trap);
    // Data behind the last row do not matter, unless later scans would have refined the rows.
    const bool refined = jpeg_has_multiple_scans(&codec) != 0;
    if (refined && source.atEnd) {
      constexpr int leastScans = 2;  // the first scan is whole
      if (codec.input_scan_number < leastScans) RaiseUnreadable(reason);
      return reason + " Details or colours are missing.";
    }
    if (source.atEnd && trap.ranDry) rows = std::min(rows, static_cast<std::int32_t>(trap.rowsBefore));
    if (rows == 0) RaiseUnreadable(reason);
    DamageReport damage;
    if (rows < page.Height()) damage.MissRows(page, rows, page.Height());
    return damage.Finish(page, reason);
  }

private:
  template <typename Step>
  void Try(const Step& step) {
    if (Trapped(trap, step)) return;
    RequireMemory(trap);
    RaiseUnreadable(Reason(trap));
  }

  void FromInks(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) const {
    // Adobe's programs store inverted inks.
    const unsigned flip = codec.saw_Adobe_marker != 0 ? 0 : 255;
    for (std::size_t in = 0, out = 0; in < from.size(); in += 4, out += 3) {
      const unsigned black = from[in + 3] ^ flip;
      for (std::size_t i = 0; i < 3; ++i) {
        to[out + 2 - i] = static_cast<std::uint8_t>(((from[in + i] ^ flip) * black + 127) / 255);
      }
    }
  }

  Trap trap;
  jpeg_progress_mgr watch{CountScans, 0, 0, 0, 0};
  JpegInput source;
  jpeg_decompress_struct codec{};
};

void SetJpegResolution(const jpeg_decompress_struct& codec, Bitmap& page) {
  const double perInch = codec.density_unit == 1 ? 1 : codec.density_unit == 2 ? CentimetresPerInch : 0;
  page.SetResolution(codec.X_density * perInch, codec.Y_density * perInch);
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
      const TiffStructure structure(exif);
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
    const auto& header = decoder->ReadHeader();
    storedBits = static_cast<std::int16_t>(header.num_components * header.data_precision);
    const std::uint64_t coefficients = decoder->CoefficientMemory();
    const ReadLimits left{limits.pageMemory - std::min(limits.pageMemory, coefficients)};
    RequirePageFits(header.image_width, header.image_height, decoder->Depth(), left);
  }

  std::int16_t StoredBitsPerPixel(Stream& /*file*/, std::int32_t /*page*/) override { return storedBits; }

  Bitmap Read(Stream& file, std::int32_t /*page*/, std::string& warning) override {
    const auto decoder = std::make_unique<JpegDecoder>(file);
    const auto& header = decoder->ReadHeader();
    Bitmap page = NewUnfilledPage(header.image_width, header.image_height, decoder->Depth(), limits);
    SetJpegResolution(header, page);
    warning = decoder->ReadRows(page);
    return Upright(page, OrientationOf(header), limits);
  }

  bool Copy(Stream& file, std::int32_t /*page*/, Stream& to) override {
    CopyBytes(file, 0, file.Size(), to);
    return true;
  }

private:
  std::int16_t storedBits = 0;
  ReadLimits limits;
};

bool RecogniseJpeg(std::span<const std::uint8_t> head) {
  return head.size() >= 4 && head[0] == 0xFF && head[1] == 0xD8 && head[2] == 0xFF;
}

std::unique_ptr<PictureSource> OpenJpeg(Stream& file, const ReadLimits& limits) {
  return std::make_unique<JpegSource>(file, limits);
}

// libjpeg's data destination, to a stream.
struct Destination {
  jpeg_destination_mgr manager{};
  Stream* file = nullptr;
  std::array<JOCTET, BlockSize> block{};
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

  void Write(const Bitmap& picture, int quality) {
    Try([&] { Start(picture, quality); });
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
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

  void Start(const Bitmap& picture, int quality) {
    constexpr int fineColour = 90;
    jpeg_create_compress(&codec);
    codec.dest = &destination.manager;
    codec.image_width = static_cast<JDIMENSION>(picture.Width());
    codec.image_height = static_cast<JDIMENSION>(picture.Height());
    const bool grey = picture.BitsPerPixel() == 8;
    codec.input_components = grey ? 1 : 3;
    codec.in_color_space = grey ? JCS_GRAYSCALE : JCS_EXT_BGR;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, quality, TRUE);
    // Chroma subsampling would fray coloured writing.
    if (quality >= fineColour) codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
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

  Trap trap;
  Destination destination;
  jpeg_compress_struct codec{};
};

void WriteJpeg(const Bitmap& picture, Stream& to, const WriteOptions& options) {
  const bool grey = HasGreyPalette(picture);
  Bitmap source = grey ? ToGreyLevels(picture) : ToDepth(picture, 24);
  std::make_unique<JpegEncoder>(to)->Write(source, options.jpegQuality);
}

}  // namespace

const PictureFormat JpegFormat{"JPEG", JpegExtensions, RecogniseJpeg, OpenJpeg, WriteJpeg, nullptr};

}  // namespace kw
