#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "drawing/FrameBuffer.h"
#include "drawing/Scale.h"

namespace kw::windows {

// A device context with a 32-bit bitmap whose pixels are at hand. Keeps its memory until a larger one is asked for.
class BackBuffer {
public:
  BackBuffer() = default;
  BackBuffer(const BackBuffer&) = delete;
  BackBuffer& operator=(const BackBuffer&) = delete;
  ~BackBuffer() { Free(); }

  // Makes it at least that large; false where the system has no memory left. The content is undefined.
  bool Reserve(int width, int height);
  HDC Context() const { return context; }
  // The pixels as a piece of a larger surface, whose upper left corner is at (left, top).
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

// Paints a window without flicker: what is drawn into Context(), in the coordinates of the window, appears at once, and
// only in its parts.
class BufferedPaint {
public:
  // The answer to WM_PAINT: where the system says that the window is out of date.
  BufferedPaint(HWND painted, BackBuffer& frame);
  // Where its owner says so, at any time.
  BufferedPaint(HWND painted, BackBuffer& frame, const std::vector<PixelRect>& changed);
  BufferedPaint(const BufferedPaint&) = delete;
  BufferedPaint& operator=(const BufferedPaint&) = delete;
  ~BufferedPaint();

  HDC Context() const { return buffer.Context(); }
  // What is out of date: few rectangles, of the system's none that overlap; none when there is nothing to paint.
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

// The font of every caption. Owned by the caller.
HFONT CreateCaptionFont(const Scale& scale);

}  // namespace kw::windows
