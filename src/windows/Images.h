#pragma once

#include <windows.h>

#include <commctrl.h>

#include <map>
#include <string>

#include "components/Control.h"

namespace kw::windows {

// The pictures of the tool bars and the mouse pointers, made from the module's resources when they are first needed.
class Images {
public:
  static constexpr int Size = 16;

  Images() = default;
  Images(const Images&) = delete;
  Images& operator=(const Images&) = delete;
  ~Images();

  // Image lists with the same indexes; the disabled one holds pale grey copies.
  HIMAGELIST Normal() const;
  HIMAGELIST Disabled() const;
  // The place of that picture in both; a plain square stands for a key without a drawing.
  int IndexOf(const std::string& key) const;

  // Null for the default pointer.
  HCURSOR CursorOf(MousePointer pointer, const std::string& icon) const;

private:
  void Fill() const;

  mutable HIMAGELIST normal = nullptr;
  mutable HIMAGELIST disabled = nullptr;
  mutable std::map<std::string, int> indexes;
  mutable std::map<std::string, HCURSOR> cursors;
};

}  // namespace kw::windows
