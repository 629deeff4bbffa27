#pragma once

#include "components/CheckBox.h"
#include "windows/ControlView.h"
#include "windows/ViewFactory.h"

namespace kw::windows {

class CheckBoxView final : public ControlView {
public:
  CheckBoxView(Pane& shared, CheckBox& shown, ControlView* container)
      : ControlView(shared, shown, container), box(shown) {}

  static void Draw(const Look& look, const RECT& place, const CheckBox& box);

  bool IsTabStop() const override { return true; }
  void OnCommand(WORD notification, WORD id) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;

  CheckBox& box;
};

}  // namespace kw::windows
