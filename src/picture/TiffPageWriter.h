#pragma once

#include <cstdint>
#include <memory>

#include "components/base/Bitmap.h"
#include "picture/Stream.h"

namespace kw {

class TiffHandle;

// Writes a TIFF file of one page without loss, CCITT G4 for black and white, LZW for everything else. The page comes in
// bands, so it need not be in memory as a whole. All procedures raise InvalidPicture if the stream fails.
class TiffPageWriter {
public:
  // The stream must outlive the writer.
  TiffPageWriter(Stream& to, std::int32_t pageHeight);
  TiffPageWriter(const TiffPageWriter&) = delete;
  TiffPageWriter& operator=(const TiffPageWriter&) = delete;
  ~TiffPageWriter();

  // Adds the rows below those that are there. The first band says the width, the depth, the palette and the resolution
  // of the page; the others have the same.
  void Add(const Bitmap& band);
  // To be called when all rows are there; without it the file is not complete.
  void Finish();

private:
  std::unique_ptr<TiffHandle> tiff;
  std::int32_t height;
  std::int32_t next = 0;  // the row that comes next
};

}  // namespace kw
