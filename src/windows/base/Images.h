#pragma once

#include <windows.h>

#include <map>
#include <string>

#include "components/controls/Control.h"
#include "drawing/Scale.h"
#include "windows/base/Gdi.h"

namespace kw::windows {

// The tool bars' images and the mouse pointers, loaded from the module's resources on first use.
class Images {
public:
  // Side of a tool bar button, in model pixels.
  static constexpr int ButtonSize = 24;

  // Uses the icons' largest size that fits at that scale.
  explicit Images(const Scale& scale);
  Images(const Images&) = delete;
  Images& operator=(const Images&) = delete;
  ~Images();

  // Draws an image centred in `bounds`, which may be smaller: of a key without an icon a plain square, of a disabled
  // control a pale grey copy.
  void Draw(HDC context, const RECT& bounds, const std::string& key, bool isEnabled) const;

  // Returns null for the default pointer.
  HCURSOR CursorOf(MousePointer pointer, const std::string& icon) const;

private:
  void Fill() const;

  int size;
  int cursorSize;
  // The icons side by side, those of disabled controls below, their colours multiplied by their opacity.
  mutable BackBuffer icons;
  mutable std::map<std::string, int> indexes;  // empty until the icons are loaded
  mutable std::map<std::string, HCURSOR> cursors;
};

}  // namespace kw::windows
