#include "windows/base/ClipboardFormats.h"

#include <algorithm>

namespace kw::windows {

std::vector<UINT> ClipboardFormats() {
  std::vector<UINT> formats(32);
  for (;;) {
    UINT count = 0;
    if (GetUpdatedClipboardFormats(formats.data(), static_cast<UINT>(formats.size()), &count) != FALSE) {
      formats.resize(count);
      return formats;
    }
    if (count <= formats.size()) return {};
    formats.resize(count);
  }
}

bool HoldDeviceIndependentBitmap(std::span<const UINT> formats) {
  const auto dib = std::find(formats.begin(), formats.end(), UINT{CF_DIB});
  if (dib == formats.end()) return false;
  const auto first = std::find_if(formats.begin(), dib, [](UINT one) { return one == CF_BITMAP || one == CF_DIBV5; });
  if (first == dib || *first == CF_DIBV5) return true;
  // A program may have put both there, the old one first. The system synthesises a palette only from a
  // device-independent bitmap.
  return std::find(dib, formats.end(), UINT{CF_PALETTE}) != formats.end();
}

}  // namespace kw::windows
