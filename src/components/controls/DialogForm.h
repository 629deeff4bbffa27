#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "components/controls/UserControl.h"

namespace kw {

// A form with a window of its own, which Desktop::ShowModal shows for as long as the form is visible.
class DialogForm : public UserControl {
public:
  // Key codes that every dialog uses.
  static constexpr std::int16_t EnterKey = 13;
  static constexpr std::int16_t EscapeKey = 27;

  explicit DialogForm(std::string formName) : UserControl(std::move(formName)) { SetVisible(false); }

  const std::string& Caption() const { return caption; }
  void SetCaption(std::string text) { caption = std::move(text); }
  // Whether the form sees every key before the control that has the keyboard does. Else it does not see those that the
  // control uses itself, as a list that is dropped down uses Enter and Escape. A matter of design time.
  bool KeyPreview() const { return isPreviewing; }
  void SetKeyPreview(bool value) { isPreviewing = value; }
  // Pixels of the screen to a pixel of the form, in each direction; 1 as long as no window shows it.
  double ScreenPixels() const { return screenPixels; }

  // Input procedure: the user closed its window by the window's own means.
  void UserClose() {
    CloseBox.Raise();
    SetVisible(false);
  }
  // Input procedure: the user pressed Alt and a letter. True if it is the mnemonic of a control, which acts then.
  bool UserAltKey(char16_t letter);
  // Input procedure: its window is on a screen of that scale.
  void UserScale(double pixels) { screenPixels = pixels; }

  Event<> Activate;  // its window is up
  Event<> CloseBox;  // the window is about to be closed

private:
  std::string caption;
  bool isPreviewing = true;
  double screenPixels = 1;
};

}  // namespace kw
