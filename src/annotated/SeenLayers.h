#pragma once

#include <vector>

#include "drawing/PixelRect.h"
#include "form/EditorForm.h"

namespace kw {

// What makes up the annotated page, back to front: the background, the page and the floating layers, as far as they are
// visible.
std::vector<const TransparentPicture*> SeenLayers(const EditorForm& form);

// The area that the page and the shown background cover, in pixels from the canvas's corner. What other layers have
// beyond it is not part of the annotated page.
PixelRect SeenArea(const EditorForm& form);

}  // namespace kw
