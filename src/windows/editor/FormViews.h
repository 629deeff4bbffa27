#pragma once

#include "components/controls/UserControl.h"
#include "windows/toolbar/BarRows.h"
#include "windows/views/Look.h"
#include "windows/views/ViewFactory.h"

namespace kw::windows {

// The views of the editor's form: a table with one row for each kind of model that has a view.
class FormViews final : public ViewFactory {
public:
  std::unique_ptr<ControlView> MakeView(ViewTree& tree, Control& model, ControlView* container) override;
  void LayOut() override { bars.LayOut(); }

private:
  BarRows bars;
};

// Draws all visible descendants of the model, with the model's top left corner at (0, 0) of the context.
void DrawChildren(const Look& look, const Control& holder);

}  // namespace kw::windows
