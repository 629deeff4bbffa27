#pragma once

#include <windows.h>

#include "components/Bitmap.h"

namespace kw::windows {

// One printer with at most one open job. Raises PrinterError where the system or the driver refuses.
class Printer {
public:
  Printer() = default;
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;
  ~Printer();

  // Prints on this device from now on and owns it; an open job goes to the printer first.
  void Use(HDC device);
  // A page of its own: the picture in its true size where its resolution is known, else one pixel to 1/96 inch, but
  // never larger than the printable area, from its upper left corner on.
  void PrintPicture(const Bitmap& picture);
  // Does nothing without an open job.
  void EndJob();

private:
  void RequireDevice();
  void DrawBands(const Bitmap& picture);

  HDC device = nullptr;
  bool isJobOpen = false;
};

}  // namespace kw::windows
