#include "devices/StatusPanel.h"

#include "components/base/Units.h"

namespace kw {

void ShowCentred(RaisedArea& panel, const UserControl& editor) {
  panel.Move((ToPixels(editor.Width()) - panel.Width()) / 2, (ToPixels(editor.Height()) - panel.Height()) / 2);
  panel.ZOrder();
  panel.SetVisible(true);
}

}  // namespace kw
