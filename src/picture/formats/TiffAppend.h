#pragma once

#include <optional>

#include "picture/PictureFormat.h"
#include "picture/formats/TiffCopy.h"

namespace kw {

// Adds pages to a little-endian TIFF file with offsets of 32 bits, as this engine writes them; an empty stream gets
// `header` first. A page is written behind all existing bytes and then linked. The link, four bytes at a multiple of
// four, is the only change in the old part of the file.
class TiffAppender : public PageAppender {
public:
  // Raises InvalidPicture for any other stream.
  TiffAppender(Stream& document, std::span<const std::uint8_t> header, std::optional<TiffMark> pageMark);
  // Raises InvalidPicture for more than MostPages pages: the document could not be opened any more.
  bool Append(Stream& page) override;

private:
  Stream& to;
  std::optional<TiffMark> mark;
  std::size_t pages = 0;
  // The position of the link to the next page.
  std::uint64_t link = 4;
};

}  // namespace kw
