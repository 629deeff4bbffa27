#pragma once

#include "components/base/Bitmap.h"

namespace kw {

// Pages of A4 at 300 dpi.
constexpr std::int32_t PageWidth = 2480;
constexpr std::int32_t PageHeight = 3508;

// Rows of letter-like marks on white paper.
Bitmap FaxPage(std::int32_t height = PageHeight);
// Soft colours with the noise of a camera.
Bitmap Photograph();

}  // namespace kw
