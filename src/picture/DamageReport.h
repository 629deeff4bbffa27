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

// Collects the parts of a page that could not be read. A reader continues behind a damaged part as its codec allows and
// notes what is missing; Finish() whitens these parts and describes them.
class DamageReport {
public:
  // In a page below 8 bits per pixel, an area begins and ends at whole bytes or at the page's edge.
  void Miss(const PageArea& area) { missing.push_back(area); }
  // Rows [top, bottom).
  void MissRows(const Bitmap& page, std::int32_t top, std::int32_t bottom) { Miss({0, top, page.Width(), bottom}); }

  bool IsWhole() const { return missing.empty(); }
  // True if no row is whole.
  bool IsNothingLeft(const Bitmap& page) const;

  // Whitens what is missing and returns a sentence about it that ends with `reason`; empty if nothing is missing.
  std::string Finish(Bitmap& page, const std::string& reason) const;

private:
  std::int32_t MissingRows(const Bitmap& page) const;

  std::vector<PageArea> missing;
};

}  // namespace kw
