#pragma once

#include <optional>

#include "picture/PictureFormat.h"
#include "picture/formats/TiffCopy.h"

namespace kw {

// Adds pages to a TIFF file with offsets of 32 bits and little-endian numbers, as this engine writes them; an empty
// stream becomes one that begins with `header`. A page is written behind all there is, then linked: its link, of four
// bytes at a multiple of four, is the only thing that changes in the old part of the file.
class TiffAppender : public PageAppender {
public:
  // Raises InvalidPicture for a stream that is no such file.
  TiffAppender(Stream& document, std::span<const std::uint8_t> header, std::optional<TiffMark> pageMark);
  // Raises InvalidPicture for a page more than MostPages: the document could not be opened any more.
  bool Append(Stream& page) override;

private:
  Stream& to;
  std::optional<TiffMark> mark;
  std::size_t pages = 0;
  // Where the offset of the next page goes.
  std::uint64_t link = 4;
};

}  // namespace kw
