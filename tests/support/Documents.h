#pragma once

#include <cstdint>
#include <string>

#include "components/base/Bitmap.h"

namespace kw::test {

// Saves a picture in the format of the path's extension.
void SavePicture(const Bitmap& picture, const std::string& path);

// Bytes of an uncompressed grey TIFF whose page p (from 1) is 10 p wide, 20 high and of the grey value p.
std::string GreyTiff(int pages);
// One of two pages, of which the first is said to be coded in a way that it is not.
std::string TiffWithoutFirstPage();

}  // namespace kw::test
