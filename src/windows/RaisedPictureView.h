#pragma once

#include "components/RaisedArea.h"
#include "windows/PaintedView.h"
#include "windows/ViewFactory.h"

namespace kw::windows {

// A raised frame with an icon, or with the colour map where its picture is that of the colour chooser.
class RaisedPictureView final : public PaintedView {
public:
  RaisedPictureView(Pane& shared, RaisedPicture& shown, ControlView* container)
      : PaintedView(shared, shown, &shown, container), picture(shown) {}

  static void Draw(const Look& look, const RECT& place, const RaisedPicture& picture);

private:
  void Paint(HDC context, const RECT& client) override;

  RaisedPicture& picture;
};

}  // namespace kw::windows
