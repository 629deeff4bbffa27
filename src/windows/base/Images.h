#pragma once

#include <windows.h>

#include <commctrl.h>

#include <map>
#include <string>

#include "components/controls/Control.h"
#include "drawing/Scale.h"

namespace kw::windows {

// The pictures of the tool bars and the mouse pointers, made from the module's resources when they are first needed.
class Images {
public:
  // Of a tool bar's button, in the models' pixels.
  static constexpr int ButtonSize = 24;

  // In the largest size of theirs that is not too large at that scale.
  explicit Images(const Scale& scale);
  Images(const Images&) = delete;
  Images& operator=(const Images&) = delete;
  ~Images();

  // Image lists for tool bars, with the same indexes; the disabled one holds pale grey copies. Each picture has a
  // margin that brings it into the middle of its button.
  HIMAGELIST Normal() const;
  HIMAGELIST Disabled() const;
  // The place of that picture in both; a plain square stands for a key without a drawing.
  int IndexOf(const std::string& key) const;
  // Draws one of them in the middle of a place, which may be smaller.
  void Draw(HDC context, const RECT& bounds, const std::string& key, bool isEnabled) const;

  // Null for the default pointer.
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
