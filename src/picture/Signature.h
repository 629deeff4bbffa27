#pragma once

#include "components/base/Bitmap.h"

namespace kw {

// Makes the paper of a scanned signature white. The paper's level is the most frequent luma of the lighter half; all
// channels are stretched so that this level and all above become white. Depths up to 8 stay (their palette changes), 24
// and 32 become 24. If it throws, the picture is as it was.
void WhitenPaper(Bitmap& picture);

// The ink of a signature whose paper is white: a picture of 32 bits that can be drawn on any background; on
// white it looks exactly as scanned. To place it, give it to a layer as its picture (TransparentPicture::SetPicture)
// and leave that layer's transparent colour white:
//
//   WhitenPaper(scan);
//   Bitmap ink = SignatureInk(scan);
//   layer.Move(x, y, ink.Width(), ink.Height());  // or any other size in its proportions: it is scaled to the layer
//   layer.SetPicture(std::move(ink));
//
// Paper, and what is nearly as light, becomes white with alpha 0. Ink keeps its hue; its alpha is the share of the
// paper that it covers, so that the soft edges of a stroke stay soft on every background. Margins without ink are
// cropped; a picture without ink keeps its size. Takes every depth; empty for an empty picture.
Bitmap SignatureInk(const Bitmap& whitePaper);

}  // namespace kw
