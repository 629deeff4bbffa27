#pragma once

#include "components/controls/UserControl.h"
#include "windows/toolbar/BarRows.h"
#include "windows/views/Look.h"
#include "windows/views/ViewFactory.h"

namespace kw::windows {

// The views of the editor's form: one row of a table for each kind of model that has a look.
class FormViews final : public ViewFactory {
public:
  std::unique_ptr<ControlView> MakeView(ViewTree& tree, Control& model, ControlView* container) override;
  void LayOut() override { bars.LayOut(); }

private:
  BarRows bars;
};

// Draws what the model holds, all visible levels, with the model's upper left corner at (0, 0) of the context.
void DrawChildren(const Look& look, const Control& holder);

}  // namespace kw::windows
