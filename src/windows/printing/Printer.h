#pragma once

#include <windows.h>

#include <string>

#include "components/base/Bitmap.h"

namespace kw::windows {

// One printer with at most one open job. Raises PrinterError where the system or the driver refuses.
class Printer {
public:
  Printer() = default;
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;
  ~Printer();

  // Prints on this device from now on and owns it; an open job goes to the printer first. Jobs then have that name,
  // where it is not empty.
  void Use(HDC device, std::wstring name = {});
  // Paints on the open page, or on a new one of the open job, or of a new job: the picture in its true size where its
  // resolution is known, else one pixel to 1/96 inch, but never larger than the printable area, from its upper left
  // corner on.
  void PrintPicture(const Bitmap& picture);
  // Ends the open page; without one a page stays blank.
  void NewPage();
  // Does nothing without an open job. A job that cannot be ended is given up.
  void EndJob();

private:
  void RequirePage();
  void RequireJob();
  void RequireDevice();
  void EndPage();
  void DrawBands(const Bitmap& picture);

  HDC device = nullptr;
  std::wstring jobName;
  bool isJobOpen = false;
  bool isPageOpen = false;
};

}  // namespace kw::windows
