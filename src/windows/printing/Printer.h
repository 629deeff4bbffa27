#pragma once

#include <windows.h>

#include <string>

#include "components/base/Bitmap.h"

namespace kw::windows {

// A printer with at most one open job. Raises PrinterError if the system or the driver fails.
class Printer {
public:
  Printer() = default;
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;
  ~Printer();

  // Prints on this device from now on and owns it; an open job is ended first. If the name is not empty, later jobs
  // have it.
  void Use(HDC device, std::wstring name = {});
  // Prints a picture at the top left of the printable area; opens a job and a page if none is open. The picture has its
  // true size if its resolution is known, else 96 pixels to the inch; it is reduced to fit the printable area. An empty
  // picture leaves the page blank.
  void PrintPicture(const Bitmap& picture);
  // Ends the open page; does nothing if none is open.
  void EndPage();
  // Ends the open job, if there is one. A job that cannot be ended is aborted.
  void EndJob();

private:
  void RequirePage();
  void RequireJob();
  void RequireDevice();
  void DrawBands(const Bitmap& picture);

  HDC device = nullptr;
  std::wstring jobName;
  bool isJobOpen = false;
  bool isPageOpen = false;
};

}  // namespace kw::windows
