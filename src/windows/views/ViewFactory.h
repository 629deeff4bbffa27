#pragma once

#include <memory>

#include "components/controls/Control.h"

namespace kw::windows {

class ControlView;
class ViewTree;

// Creates the views of a window, each when its model joins the form.
class ViewFactory {
public:
  ViewFactory() = default;
  ViewFactory(const ViewFactory&) = delete;
  ViewFactory& operator=(const ViewFactory&) = delete;
  virtual ~ViewFactory() = default;

  // Creates the view for the model's type; null if the type has none.
  virtual std::unique_ptr<ControlView> MakeView(ViewTree& tree, Control& model, ControlView* container) = 0;
  // Lays out views whose layout depends on each other, after the size or visibility of a container changed.
  virtual void LayOut() = 0;
};

}  // namespace kw::windows
