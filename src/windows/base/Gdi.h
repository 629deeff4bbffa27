#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "drawing/FrameBuffer.h"
#include "drawing/Scale.h"

namespace kw::windows {

// A memory device context with a 32-bit bitmap and access to its pixels. It keeps its memory until a larger one is
// needed.
class BackBuffer {
public:
  BackBuffer() = default;
  BackBuffer(const BackBuffer&) = delete;
  BackBuffer& operator=(const BackBuffer&) = delete;
  ~BackBuffer() { Free(); }

  // Makes it at least that large; false if memory runs out. The content is undefined.
  bool Reserve(int width, int height);
  HDC Context() const { return context; }
  // The pixels as the part `area` of a larger surface.
  FrameBuffer Pixels(const RECT& area) const;

private:
  void Free();

  HDC context = nullptr;
  HBITMAP bitmap = nullptr;
  HGDIOBJ before = nullptr;
  std::uint32_t* pixels = nullptr;
  int width = 0;
  int height = 0;
};

// Double-buffered painting: the destructor copies to the window what was drawn into Context(), in window coordinates,
// but only the out-of-date parts.
class BufferedPaint {
public:
  // For WM_PAINT: paints the system's update region.
  BufferedPaint(HWND painted, BackBuffer& frame);
  // At any other time: paints the given parts.
  BufferedPaint(HWND painted, BackBuffer& frame, const std::vector<PixelRect>& changed);
  BufferedPaint(const BufferedPaint&) = delete;
  BufferedPaint& operator=(const BufferedPaint&) = delete;
  ~BufferedPaint();

  HDC Context() const { return buffer.Context(); }
  // The out-of-date rectangles. They are few, those of an update region do not overlap, and there are none if there is
  // nothing to paint.
  const std::vector<RECT>& Parts() const { return parts; }
  FrameBuffer Pixels() const { return buffer.Pixels(paint.rcPaint); }
  bool IsNeeded() const { return !parts.empty(); }

private:
  void Begin();

  HWND window;
  bool isAnswer;
  PAINTSTRUCT paint = {};
  BackBuffer& buffer;
  std::vector<RECT> parts;
};

inline RECT ToRect(const PixelRect& r) { return {r.left, r.top, r.right, r.bottom}; }
inline PixelRect ToPixelRect(const RECT& r) { return {r.left, r.top, r.right, r.bottom}; }
inline int WidthOf(const RECT& r) { return r.right - r.left; }
inline int HeightOf(const RECT& r) { return r.bottom - r.top; }

void FillWith(HDC context, const RECT& rectangle, COLORREF colour);
inline void FillWithFace(HDC context, const RECT& rectangle) {
  FillWith(context, rectangle, GetSysColor(COLOR_3DFACE));
}

// The font of all captions. The caller owns it.
HFONT CreateCaptionFont(const Scale& scale);

}  // namespace kw::windows
