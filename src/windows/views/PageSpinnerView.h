#pragma once

#include "components/controls/RangeControl.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

class PageSpinnerView final : public ControlView {
public:
  PageSpinnerView(ViewTree& shared, PageSpinner& shown, ControlView* container)
      : ControlView(shared, shown, container), spinner(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const PageSpinner& spinner);

  LRESULT OnNotify(NMHDR& header) override;
  // No user sees it; programs send it the steps of a spinner.
  bool SleepsWhileHidden() const override { return false; }

private:
  HWND Create(HWND parent) override;
  void Fit() override;
  void Show(Aspect aspect) override;

  PageSpinner& spinner;
};

}  // namespace kw::windows
