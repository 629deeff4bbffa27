#pragma once

#include <memory>

#include "components/controls/Control.h"

namespace kw::windows {

class ControlView;
class ViewTree;

// Makes the views of one window, each when its model joins the form.
class ViewFactory {
public:
  ViewFactory() = default;
  ViewFactory(const ViewFactory&) = delete;
  ViewFactory& operator=(const ViewFactory&) = delete;
  virtual ~ViewFactory() = default;

  // The view that suits the model's type; null for a model without a look.
  virtual std::unique_ptr<ControlView> MakeView(ViewTree& tree, Control& model, ControlView* container) = 0;
  // Size or visibility of a view that holds others changed: views whose layout depends on each other are laid out.
  virtual void LayOut() = 0;
};

}  // namespace kw::windows
