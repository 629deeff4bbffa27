#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace kw::windows {

// A device-independent bitmap as the clipboard holds it: the head, the colours, the rows.
using PackedDib = std::vector<std::uint8_t>;

// The images of one acquisition, which end on the clipboard as one.
class ScannedPages {
public:
  // Takes a copy of the device-independent bitmap in `memory`; the memory stays the caller's. False for what is none.
  bool Add(HGLOBAL memory);
  bool IsEmpty() const { return pages.empty(); }

  // A single page as it came. Several stand one below the other from the left edge, on white: in their own depth and
  // colours where they agree in these, else in 24 bits; with the first page's resolution. Where there is not the memory
  // for all of them, the last ones are left out. The pages are gone then. Raises OutOfMemory.
  PackedDib TakeJoined();

private:
  PackedDib Joined() const;

  std::vector<PackedDib> pages;
};

// Replaces what is on the clipboard. Raises CannotOpenClipboard, after some attempts, or OutOfMemory; the clipboard
// then stays as it is.
void PutOnClipboard(const PackedDib& image, HWND owner);

}  // namespace kw::windows
