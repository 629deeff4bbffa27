#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kw {

// Longer streams are not looked at: who does that holds them in memory, with the places of their markers.
constexpr std::size_t LongestJpegScan = std::size_t{1} << (sizeof(void*) >= 8 ? 26U : 24U);

// A JPEG data stream of one scan of all its components, sequential and with Huffman codes, up to its end.
struct JpegScan {
  // In the stream.
  std::size_t codesBegin = 0;
  std::size_t codesEnd = 0;
  std::size_t heightAt = 0;
  // A bit for each table that the stream defines, and for each that its codes need.
  std::uint16_t definedTables = 0;
  std::uint16_t neededTables = 0;
  std::uint32_t height = 0;
  // Rows of pixels in a row of minimum coded units, and units in such a row.
  std::uint32_t unitHeight = 0;
  std::uint32_t unitsPerRow = 0;
  // Units between two restart markers; 0 if there are none.
  std::uint32_t interval = 0;
  // Where the restart markers lie in the stream: all that there have to be, in their order.
  std::vector<std::uint32_t> restarts;
};

// Nothing if the stream is too long or of another kind, or if anything in it is not as a sound one has it, but for the
// codes themselves.
std::optional<JpegScan> JpegScanOf(std::span<const std::uint8_t> stream);

}  // namespace kw
