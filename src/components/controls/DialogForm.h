#pragma once

#include <string>
#include <utility>

#include "components/controls/UserControl.h"

namespace kw {

// A form with a window of its own, which Desktop::ShowModal shows for as long as the form is visible. It sees every key
// before the control that has the keyboard does.
class DialogForm : public UserControl {
public:
  explicit DialogForm(std::string formName) : UserControl(std::move(formName)) { SetVisible(false); }

  const std::string& Caption() const { return caption; }
  void SetCaption(std::string text) { caption = std::move(text); }

  // Input procedure: the user closed its window by the window's own means.
  void UserClose() {
    CloseBox.Raise();
    SetVisible(false);
  }

  Event<> Activate;  // its window is up
  Event<> CloseBox;  // the window is about to be closed

private:
  std::string caption;
};

}  // namespace kw
