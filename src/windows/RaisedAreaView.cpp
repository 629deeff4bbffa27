#include "windows/RaisedAreaView.h"

#include "windows/Gdi.h"

namespace kw::windows {

void DrawRaised(HDC context, const RECT& place) {
  FillWithFace(context, place);
  RECT edge = place;
  DrawEdge(context, &edge, BDR_RAISEDINNER, BF_RECT);
}

void RaisedAreaView::Draw(const Look& look, const RECT& place, const RaisedArea&) { DrawRaised(look.context, place); }
void RaisedAreaView::Paint(HDC context, const RECT& client) { DrawRaised(context, client); }

void FrameView::Draw(const Look& look, const RECT& place, const Frame&) { FillWithFace(look.context, place); }
void FrameView::Paint(HDC context, const RECT& client) { FillWithFace(context, client); }

}  // namespace kw::windows
