#pragma once

#include <functional>

#include "picture/formats/TiffLayout.h"

namespace kw {

// Strips [begin, end) of a page.
struct StripRange {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

// How the strips of a page are decoded.
enum class StripCalls {
  // Row by row.
  Rows,
  // By one call of the library for each strip. Of a page in planes, the first one only.
  Whole,
  // Of a page that is not coded: each thread is called once, for all strips, and the threads share their rows.
  Shared,
};

// Whether a call for each strip takes less time than one for each row, and makes the same of sound strips.
bool PaysWhole(int compression);

// Calls decode(own, range) for all strips of the page, on several threads if they pay; `own` is the page in a handle of
// the thread, and decode() returns whether these strips are sound. It may throw. Returns true if every strip was
// decoded, and as the handle of the page itself would have done it row by row. False: nothing is known, and the page
// has to be decoded in that plain way, whether because another one does not pay, because the file or its codec does not
// allow it, or because something was not sound.
bool DecodeStripsApart(const TiffPage& page, StripCalls calls,
                       const std::function<bool(const TiffPage& own, StripRange range)>& decode);

}  // namespace kw
