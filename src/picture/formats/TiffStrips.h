#pragma once

#include <functional>

#include "picture/formats/TiffLayout.h"

namespace kw {

// Calls decode(own, strip) for each strip of the page on several threads; `own` is the page in a handle of the thread,
// and decode() returns whether the strip is sound. It may throw. Returns true if every strip was decoded, and as one
// handle alone would have done it. False: nothing is known, and the page has to be decoded in the plain way, whether
// because threads do not pay, because the file or its codec does not allow it, or because something was not sound.
bool DecodeStripsByThreads(const TiffPage& page,
                           const std::function<bool(const TiffPage& own, std::uint32_t strip)>& decode);

}  // namespace kw
