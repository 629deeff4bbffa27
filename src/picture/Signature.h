#pragma once

#include "components/base/Bitmap.h"

namespace kw {

// A scanned signature with its paper made white: the level of the paper is the commonest brightness of the lighter
// half, and all brightness is stretched so that the paper and what is lighter become white. Depths up to 8 keep their
// depth (their palette changes), 24 and 32 become 24.
Bitmap WithWhitePaper(const Bitmap& picture);

// The ink of a signature whose paper is white: a picture of 32 bits that looks signed wherever it is laid, on white
// paper exactly as scanned. To place it, give it to a layer as its picture (TransparentPicture::SetPicture) and leave
// that layer's transparent colour white:
//
//   Bitmap ink = SignatureInk(WithWhitePaper(scan));
//   layer.Move(x, y, ink.Width(), ink.Height());  // or any other size in its proportions: it is scaled to the layer
//   layer.SetPicture(std::move(ink));
//
// Paper and what is nearly as light becomes the colour white with alpha 0. Ink keeps its hue, and its alpha says how
// much of it covers the paper, so that the soft edges of a stroke stay soft on every ground. The margins without ink
// are cut off; a picture that has no ink at all keeps its size. Takes every depth; empty for an empty picture.
Bitmap SignatureInk(const Bitmap& whitePaper);

}  // namespace kw
