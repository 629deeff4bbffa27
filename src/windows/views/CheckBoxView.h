#pragma once

#include "components/controls/CheckBox.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

class CheckBoxView final : public ControlView {
public:
  CheckBoxView(ViewTree& shared, CheckBox& shown, ControlView* container)
      : ControlView(shared, shown, container), box(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const CheckBox& box);

  bool IsTabStop() const override { return true; }
  void OnCommand(WORD notification, WORD id) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;

  CheckBox& box;
};

}  // namespace kw::windows
