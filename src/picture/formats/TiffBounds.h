#pragma once

#include <functional>
#include <span>

#include "picture/PictureFormat.h"
#include "picture/formats/TiffDirectory.h"
#include "picture/formats/TiffHandle.h"

namespace kw {

// A sound file names each of its bytes about once. In a hostile one many pages, or many strips, name the same bytes:
// reading or copying all of them would take any time and any room on the disk. So what is named, a byte as often as it
// is named, may be at most four times the file; all of this raises InvalidPicture where it is more.

// Counts directories, values and coded bytes of all pages.
void RequireBoundedPages(const TiffStructure& structure, Stream& file);

// Counts what libtiff would read for the selected page: it guesses sizes that the file does not say.
void RequireBoundedPieces(const TiffHandle& tiff, std::uint64_t fileSize);

// Raises InvalidPicture where the tiles of the selected page, which are decoded as a whole, are more than a page may
// be.
void RequireTilesFit(const TiffHandle& tiff, int bitsPerPixel, const ReadLimits& limits);

// Calls take() with the coded bytes of each strip or tile of the selected page, as they are stored.
void ForCodedPieces(const TiffHandle& tiff, std::uint64_t fileSize,
                    const std::function<void(std::span<std::uint8_t> code)>& take);

}  // namespace kw
