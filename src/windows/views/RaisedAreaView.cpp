#include "windows/views/RaisedAreaView.h"

#include "components/controls/UserControl.h"
#include "windows/base/Gdi.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {

void DrawRaised(HDC context, const RECT& bounds, bool isPressed) {
  FillWithFace(context, bounds);
  RECT edge = bounds;
  DrawEdge(context, &edge, isPressed ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
}

void RaisedAreaView::Draw(const Look& look, const RECT& bounds, const RaisedArea& area) {
  RECT inner = bounds;
  if (dynamic_cast<const UserControl*>(area.Container()) != nullptr) {
    // An outline sets the area off from a white page below it.
    FillWith(look.context, bounds, GetSysColor(COLOR_3DSHADOW));
    InflateRect(&inner, -1, -1);
  }
  DrawRaised(look.context, inner);
}

void RaisedAreaView::Show(Aspect aspect) {
  PaintedView::Show(aspect);
  // Raised areas contain tool bars, so lay these out again.
  if (aspect == Aspect::Geometry || aspect == Aspect::Visibility) Shared().LayOut();
}

void RaisedAreaView::Paint(HDC context, const RECT& client) {
  Draw({context, Shared().Pictures(), Shared().Scaling()}, client, area);
}

void FrameView::Draw(const Look& look, const RECT& bounds, const Frame& /*frame*/) {
  FillWithFace(look.context, bounds);
}
void FrameView::Paint(HDC context, const RECT& client) { FillWithFace(context, client); }

}  // namespace kw::windows
