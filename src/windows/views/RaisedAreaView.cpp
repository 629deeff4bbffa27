#include "windows/views/RaisedAreaView.h"

#include "components/controls/UserControl.h"
#include "windows/base/Gdi.h"
#include "windows/views/Pane.h"

namespace kw::windows {

void DrawRaised(HDC context, const RECT& place, bool isPressed) {
  FillWithFace(context, place);
  RECT edge = place;
  DrawEdge(context, &edge, isPressed ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
}

void RaisedAreaView::Draw(const Look& look, const RECT& place, const RaisedArea& area) {
  RECT inner = place;
  if (dynamic_cast<const UserControl*>(area.Container()) != nullptr) {
    // What lies on the form may lie on a white page: an outline tells it apart.
    FillWith(look.context, place, GetSysColor(COLOR_3DSHADOW));
    InflateRect(&inner, -1, -1);
  }
  DrawRaised(look.context, inner);
}

void RaisedAreaView::Show(Aspect aspect) {
  PaintedView::Show(aspect);
  // Tool bars lie on raised areas.
  if (aspect == Aspect::Geometry || aspect == Aspect::Visibility) Shared().LayOut();
}

void RaisedAreaView::Paint(HDC context, const RECT& client) {
  Draw({context, Shared().Pictures(), Shared().Scaling()}, client, area);
}

void FrameView::Draw(const Look& look, const RECT& place, const Frame& /*frame*/) { FillWithFace(look.context, place); }
void FrameView::Paint(HDC context, const RECT& client) { FillWithFace(context, client); }

}  // namespace kw::windows
