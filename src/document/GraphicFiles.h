#pragma once

namespace kw {

// The open dialog's filter for everything that can be opened.
inline constexpr const char* SupportedGraphicFiles =
    "All Supported Graphic Files (*.jpg, *.jpeg, *.bmp, *.tif, *.fmf, *.gif)|"
    "*.jpg; *.jpeg; *.bmp; *.tif; *.fmf; *.gif";

}  // namespace kw
