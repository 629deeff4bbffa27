#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace kw::windows {

// A packed device-independent bitmap: header, colours, rows.
using PackedDib = std::vector<std::uint8_t>;

// The pages of one acquisition, which go to the clipboard as one image.
class ScannedPages {
public:
  // Copies the device-independent bitmap in `memory`, which stays the caller's. False if it is none.
  bool Add(HGLOBAL memory);
  bool IsEmpty() const { return pages.empty(); }

  // Returns the pages as one image and removes them. A single page stays unchanged. Several are stacked, left-aligned
  // on white, with the first page's resolution: in their own depth and colours if these agree, else in 24 bits. If
  // memory does not suffice for all, the last ones are left out. Raises OutOfMemory.
  PackedDib TakeJoined();

private:
  PackedDib Joined() const;

  std::vector<PackedDib> pages;
};

// Replaces the clipboard's content. Raises CannotOpenClipboard after some attempts, or OutOfMemory; the clipboard is
// then unchanged.
void PutOnClipboard(const PackedDib& image, HWND owner);

}  // namespace kw::windows
