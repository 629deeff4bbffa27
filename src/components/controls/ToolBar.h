#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "components/controls/Control.h"
#include "components/controls/ControlArray.h"

namespace kw {

enum class ButtonStyle : std::uint8_t {
  Push,
  Check,      // toggles when it is clicked
  Group,      // one of its run of neighbouring group buttons is pressed
  Separator,  // a gap that also ends a run of group buttons
};

// A row of buttons that are known by their keys.
class ToolBar : public Control {
public:
  struct Button {
    std::string key{};
    std::string toolTip{};
    std::string caption{};
    std::string image{};  // key in the image list of the tool bars; empty: none
    ButtonStyle style = ButtonStyle::Push;
    bool enabled = true;
    bool visible = true;
    bool pressed = false;  // Value 1
  };

  explicit ToolBar(std::string controlName) : Control(std::move(controlName), "Toolbar") {}

  // Buttons in their order. Buttons are added only while the form is built.
  const std::vector<Button>& Buttons() const { return buttons; }
  void AddButton(Button button);
  void LoadFrom(const ToolBar& other);

  bool HasButton(const std::string& key) const;
  // Each raises ElementNotFound for a key that the bar does not have.
  const Button& ButtonOf(const std::string& key) const;
  void SetButtonEnabled(const std::string& key, bool value);
  void SetButtonVisible(const std::string& key, bool value);
  // Value = pressed; in a group the others come up. Raises no ButtonClick.
  void SetButtonPressed(const std::string& key, bool value);
  // Every button, separators left out.
  void EnableAllButtons(bool value);

  // Input procedure: the user clicked the button. Ignored when the bar or the button is disabled or hidden.
  void UserClick(const std::string& key);

  Event<const std::string&> ButtonClick;

private:
  Button& Find(const std::string& key);
  void Press(Button& button);

  std::vector<Button> buttons;
};

// The element of an array of bars that has the button; raises ElementNotFound if none has.
ToolBar& BarOf(const ControlArray<ToolBar>& bars, const std::string& key);

}  // namespace kw
