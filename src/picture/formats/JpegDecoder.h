#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "components/base/Bitmap.h"
#include "picture/Stream.h"
#include "picture/formats/JpegTrap.h"

namespace kw {

// The marker whose data ReadHeader() keeps.
constexpr int ExifMarker = JPEG_APP0 + 1;

constexpr std::size_t JpegBlockSize = std::size_t{64} * 1024;

// libjpeg's data source, from a stream.
struct JpegInput {
  jpeg_source_mgr manager{};
  Stream* file = nullptr;
  bool atEnd = false;
  std::array<JOCTET, JpegBlockSize> block{};
};

// One decompression of a stream. Raises InvalidPicture for what cannot be decoded. It is large: keep it on the heap.
class JpegDecoder {
public:
  explicit JpegDecoder(Stream& file);
  JpegDecoder(const JpegDecoder&) = delete;
  JpegDecoder& operator=(const JpegDecoder&) = delete;
  ~JpegDecoder() { jpeg_destroy_decompress(&codec); }

  const jpeg_decompress_struct& ReadHeader();

  int Depth() const { return codec.num_components == 1 ? 8 : 24; }

  // Memory that is needed besides the page until the last scan has been read.
  std::uint64_t CoefficientMemory();

  // Decodes all rows that can be decoded; returns a warning about missing ones.
  std::string ReadRows(Bitmap& page);

  // The same step by step: Start() before the first row; ReadRow() returns false if there is no next row.
  void Start();
  bool ReadRow(std::span<std::uint8_t> row);

  // Whether the library has complained of anything.
  bool HasWarned() const { return trap.warned; }

private:
  template <typename Step>
  void Try(const Step& step);

  bool HasInks() const { return codec.num_components == 4; }
  void FromInks(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) const;

  JpegTrap trap;
  jpeg_progress_mgr watch{};
  JpegInput source;
  jpeg_decompress_struct codec{};
  std::vector<std::uint8_t> inkRow;
};

}  // namespace kw
