#pragma once

#include <windows.h>

#include <commctrl.h>

#include <map>
#include <string>

#include "components/controls/Control.h"
#include "drawing/Scale.h"

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

  // Image lists for tool bars with the same indexes; the disabled one holds pale grey copies. Each image has a margin
  // that centres it in its button.
  HIMAGELIST Normal() const;
  HIMAGELIST Disabled() const;
  // The key's index in both lists; a key without an icon has that of a plain square.
  int IndexOf(const std::string& key) const;
  // Draws an image centred in `bounds`, which may be smaller.
  void Draw(HDC context, const RECT& bounds, const std::string& key, bool isEnabled) const;

  // Returns null for the default pointer.
  HCURSOR CursorOf(MousePointer pointer, const std::string& icon) const;

private:
  void Fill() const;

  int size;
  SIZE cellSize;
  int cursorSize;
  mutable HIMAGELIST normal = nullptr;
  mutable HIMAGELIST disabled = nullptr;
  mutable std::map<std::string, int> indexes;
  mutable std::map<std::string, HCURSOR> cursors;
};

}  // namespace kw::windows
