#pragma once

#include <functional>
#include <span>

#include "picture/PictureFormat.h"
#include "picture/formats/TiffDirectory.h"
#include "picture/formats/TiffHandle.h"

namespace kw {

// A sound file refers to each of its bytes about once. In a hostile file many pages or strips refer to the same bytes,
// and reading or copying them would take any time and any space on the disk. So all parts together may have at most
// four times the file's size; the functions below raise InvalidPicture if they have more.

// Counts directories, values and coded bytes of all pages.
void RequireBoundedPages(const TiffStructure& structure, Stream& file);

// Counts the bytes that libtiff would read for the selected page: it guesses sizes that the file does not state.
void RequireBoundedPieces(const TiffHandle& tiff, std::uint64_t fileSize);

// Raises InvalidPicture if the tiles of the selected page, which are decoded as a whole, exceed the limits of a page.
void RequireTilesFit(const TiffHandle& tiff, int bitsPerPixel, const ReadLimits& limits);

// Raises InvalidPicture if the selected page takes too much memory at once: `page`, `bandBytes` for a band of it in
// another form (0: it is decoded line by line, if its codec can), and what the codec keeps of a strip or tile.
void RequireWorkFits(const TiffHandle& tiff, const Bitmap& page, std::uint64_t bandBytes, const ReadLimits& limits);

// Whether that compression can only be decoded a whole strip at a time.
bool NeedsWholeStrips(int compression);

// Calls take() with the coded bytes of each strip or tile of the selected page, as they are stored.
void ForCodedPieces(const TiffHandle& tiff, std::uint64_t fileSize,
                    const std::function<void(std::span<std::uint8_t> code)>& take);

}  // namespace kw
