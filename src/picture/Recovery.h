#pragma once

#include <string>

#include "components/base/Bitmap.h"

namespace kw {

// A part of a page: columns [left, right), rows [top, bottom).
struct PageArea {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;
};

// Gathers what of a page could not be read. A reader goes on behind a damaged place as its codec allows and notes here
// what is missing; Finish() then makes it look like empty paper and says so.
class Recovery {
public:
  // In a page of less than 8 bits per pixel, an area begins and ends at whole bytes or at the page's edge.
  void Miss(const PageArea& area) { missing.push_back(area); }
  // Rows [top, bottom).
  void MissRows(const Bitmap& page, std::int32_t top, std::int32_t bottom) { Miss({0, top, page.Width(), bottom}); }

  bool IsWhole() const { return missing.empty(); }
  // True where not one row is whole.
  bool IsNothingLeft(const Bitmap& page) const;

  // Whitens what is missing and returns a sentence on it that names `reason`; empty where nothing is missing.
  std::string Finish(Bitmap& page, const std::string& reason) const;

private:
  std::int32_t MissingRows(const Bitmap& page) const;

  std::vector<PageArea> missing;
};

}  // namespace kw
