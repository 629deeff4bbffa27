#pragma once

#include "picture/PictureFormat.h"
#include "picture/formats/Formats.h"
#include "picture/formats/TiffHandle.h"

// The parts of the TIFF format, each in the source of its name (TiffRead.cpp, TiffWrite.cpp ...).
namespace kw {

// What a resolution in this unit is to be multiplied by; 0 for a unit that has no length.
constexpr double TiffUnitsPerInch(std::uint64_t unit) {
  return unit == RESUNIT_INCH ? 1 : unit == RESUNIT_CENTIMETER ? CentimetresPerInch : 0;
}

// Decodes the page whose directory is at `directory`, upright. Grey and palette pages of 1 sample keep their indices
// (up to 8 bits; 16 become 8); all others become 24 bits, or 32 with alpha. Raises InvalidPicture.
Bitmap ReadTiffPage(Stream& file, std::uint64_t directory, const ReadLimits& limits, std::string& warning);

// Writes a TIFF file of one page without loss: CCITT G4 for black and white, LZW for everything else.
void WriteTiff(const Bitmap& picture, Stream& to, const WriteOptions& options);

// Raises InvalidPicture if libtiff was built without JBIG, or if JBIG pixels claim more memory than the strips or tiles
// of the selected page have: the decoder trusts the claim, and ends the program if it gets no memory. `fileSize` is in
// bytes.
void RequireJbigFits(const TiffHandle& tiff, std::uint64_t fileSize);

// Raises InvalidPicture if LZMA pixels of the selected page ask for a dictionary of more than `most` bytes: libtiff
// allocates whatever they ask for. `fileSize` is in bytes.
void RequireLzmaFits(const TiffHandle& tiff, std::uint64_t fileSize, std::uint64_t most);

}  // namespace kw
