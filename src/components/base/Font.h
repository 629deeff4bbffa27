#pragma once

#include <string>

namespace kw {

struct Font {
  std::string name = "MS Sans Serif";
  float size = 8.25F;  // points
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeThrough = false;
  friend bool operator==(const Font&, const Font&) = default;
};

}  // namespace kw
