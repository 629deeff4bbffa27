#include "picture/formats/JpegDecoder.h"

#include <algorithm>

#include "picture/DamageReport.h"
#include "picture/Unreadable.h"

namespace kw {
namespace {

constexpr unsigned LongestMarker = 65535;
// Decoding a scan of a progressive picture takes the time of the whole picture, however few bytes the scan has.
constexpr int MostScans = 500;

void CountScans(j_common_ptr codec) {
  if (reinterpret_cast<jpeg_decompress_struct*>(codec)->input_scan_number <= MostScans) return;
  auto* trap = reinterpret_cast<JpegTrap*>(codec->err);
  std::snprintf(trap->message.data(), trap->message.size(), "more than %d scans", MostScans);
  std::longjmp(trap->jump, 1);
}

std::string Reason(const JpegTrap& trap) {
  return std::string("The JPEG data is damaged: ") + trap.message.data() + ".";
}

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

}  // namespace

JpegDecoder::JpegDecoder(Stream& file) {
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

template <typename Step>
void JpegDecoder::Try(const Step& step) {
  if (Trapped(trap, step)) return;
  RequireMemory(trap);
  RaiseUnreadable(Reason(trap));
}

const jpeg_decompress_struct& JpegDecoder::ReadHeader() {
  Try([this] {
    jpeg_create_decompress(&codec);
    codec.src = &source.manager;
    watch.progress_monitor = CountScans;
    codec.progress = &watch;
    jpeg_save_markers(&codec, ExifMarker, LongestMarker);
    jpeg_read_header(&codec, TRUE);
  });
  return codec;
}

std::uint64_t JpegDecoder::CoefficientMemory() {
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

void JpegDecoder::Start() {
  codec.out_color_space = HasInks() ? JCS_CMYK : codec.num_components == 1 ? JCS_GRAYSCALE : JCS_EXT_BGR;
  Try([this] { jpeg_start_decompress(&codec); });
  if (HasInks()) inkRow.resize(std::size_t{codec.output_width} * 4);
}

bool JpegDecoder::ReadRow(std::span<std::uint8_t> row) {
  JSAMPROW target = HasInks() ? inkRow.data() : row.data();
  if (!Trapped(trap, [this, &target] { jpeg_read_scanlines(&codec, &target, 1); })) return false;
  if (HasInks()) FromInks(inkRow, row);
  return true;
}

std::string JpegDecoder::ReadRows(Bitmap& page) {
  Start();
  std::int32_t rows = 0;
  while (rows < page.Height() && ReadRow(page.MutableRow(rows))) ++rows;
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

void JpegDecoder::FromInks(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) const {
  // Adobe's programs store inverted inks.
  const unsigned flip = codec.saw_Adobe_marker != 0 ? 0 : 255;
  for (std::size_t in = 0, out = 0; in < from.size(); in += 4, out += 3) {
    const unsigned black = from[in + 3] ^ flip;
    for (std::size_t i = 0; i < 3; ++i) {
      to[out + 2 - i] = static_cast<std::uint8_t>(((from[in + i] ^ flip) * black + 127) / 255);
    }
  }
}

}  // namespace kw
