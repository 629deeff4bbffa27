#pragma once

#include <string>

#include "components/base/Bitmap.h"
#include "components/base/Font.h"
#include "components/base/Units.h"
#include "components/controls/TransparentPicture.h"
#include "components/platform/Desktop.h"
#include "drawing/PixelRect.h"

namespace kw {

// A stamp as it comes to lie on the page.
struct Stamp {
  std::string text = {};
  Font font = {};
  Colour colour = 0;
  Bitmap signature = {};  // see SignatureInk; empty for none
};

// Where its parts lie; empty for a part that the stamp lacks.
struct StampPlaces {
  PixelRect text;
  PixelRect signature;
};

// The text is as large as its font makes it, with its left top corner at (x, y); the signature follows below, in its
// own size but at most a third as wide as the page. Both stay inside the page: they move away from its edges, a text
// that is wider than the page breaks into lines, and a signature shrinks to the height that the text leaves.
StampPlaces Arrange(Desktop& desktop, const Stamp& stamp, const PixelRect& page, std::int32_t x, std::int32_t y);

// Make a layer show a part of the stamp.
void ShowText(TransparentPicture& layer, const Stamp& stamp, const PixelRect& place);
void ShowSignature(TransparentPicture& layer, const Stamp& stamp, const PixelRect& place);

}  // namespace kw
