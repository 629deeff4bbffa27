#pragma once

#include "components/controls/NumberField.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

// An edit field, which is the view's window, and a spin button, which follows it.
class NumberFieldView final : public ControlView {
public:
  NumberFieldView(ViewTree& shared, NumberField& shown, ControlView* container)
      : ControlView(shared, shown, container), field(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const NumberField& field);

  bool IsTabStop() const override { return true; }
  bool WantsKey(WPARAM key) const override;
  void Leave() override;
  void OnCommand(WORD notification, WORD id) override;
  LRESULT OnNotify(NMHDR& header) override;
  void Complete() override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;
  RECT Place() const override;
  void Fit() override;
  void ShowEnabled() override;
  void ShowText();
  void SelectAll() const { SendMessageW(Handle(), EM_SETSEL, 0, -1); }
  // Puts the spin button into the right end of the bounds; it is visible if the field is.
  void PlaceSpin() const;
  int SpinWidth() const;
  void Turn(int wheel);

  NumberField& field;
  HWND spin = nullptr;
  int wheelRest = 0;  // wheel delta that did not yet suffice for a step
};

}  // namespace kw::windows
