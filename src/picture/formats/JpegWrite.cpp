#include "picture/formats/JpegWrite.h"

#include <array>
#include <memory>
#include <string>

#include <jerror.h>

#include "picture/Depth.h"
#include "picture/Unreadable.h"
#include "picture/formats/JpegTrap.h"

namespace kw {
namespace {

constexpr std::size_t WriteBlockSize = std::size_t{64} * 1024;

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

  JpegTrap trap;
  Destination destination;
  jpeg_compress_struct codec{};
};

}  // namespace

void WriteJpeg(const Bitmap& picture, Stream& to, const WriteOptions& options) {
  const bool grey = HasGreyPalette(picture);
  Bitmap source = grey ? ToGreyLevels(picture) : ToDepth(picture, 24);
  std::make_unique<JpegEncoder>(to)->Write(source, options.jpegQuality);
}

}  // namespace kw
