#pragma once

#include <windows.h>

#include <string>

namespace kw::host {

// A running list of lines, the newest at the end; the oldest go when there are very many.
class EventList {
public:
  explicit EventList(HWND parent);

  void Arrange(const RECT& place, HFONT font, int dpi);
  void Add(const std::wstring& line);

private:
  HWND label;
  HWND list;
};

}  // namespace kw::host
