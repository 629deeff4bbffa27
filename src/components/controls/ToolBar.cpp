#include "components/controls/ToolBar.h"

#include <algorithm>
#include <iterator>

#include "components/base/RunTimeError.h"

namespace kw {

void ToolBar::AddButton(Button button) {
  buttons.push_back(std::move(button));
  Tell(Aspect::Content);
}

void ToolBar::LoadFrom(const ToolBar& other) {
  CopyDesign(other);
  buttons = other.buttons;
}

bool ToolBar::HasButton(const std::string& key) const {
  return std::any_of(buttons.begin(), buttons.end(), [&](const Button& b) { return b.key == key; });
}

ToolBar::Button& ToolBar::Find(const std::string& key) {
  const auto found = std::find_if(buttons.begin(), buttons.end(),
                                  [&](const Button& b) { return b.key == key && b.style != ButtonStyle::Separator; });
  if (found == buttons.end()) Raise(ErrorNumber::ElementNotFound);
  return *found;
}

const ToolBar::Button& ToolBar::ButtonOf(const std::string& key) const {
  return const_cast<ToolBar*>(this)->Find(key);  // Find changes nothing
}

void ToolBar::SetButtonEnabled(const std::string& key, bool value) {
  Button& button = Find(key);
  if (button.enabled == value) return;
  button.enabled = value;
  Tell(Aspect::Content);
}

void ToolBar::SetButtonVisible(const std::string& key, bool value) {
  Button& button = Find(key);
  if (button.visible == value) return;
  button.visible = value;
  Tell(Aspect::Content);
}

void ToolBar::SetButtonPressed(const std::string& key, bool value) {
  Button& button = Find(key);
  if (button.pressed == value) return;
  if (value)
    Press(button);
  else
    button.pressed = false;
  Tell(Aspect::Content);
}

void ToolBar::Press(Button& button) {
  if (button.style == ButtonStyle::Group) {
    const auto isOther = [](const Button& b) { return b.style != ButtonStyle::Group; };
    const auto place = std::next(buttons.begin(), &button - buttons.data());
    const auto first = std::find_if(std::make_reverse_iterator(place), buttons.rend(), isOther).base();
    const auto last = std::find_if(place, buttons.end(), isOther);
    for (auto other = first; other != last; ++other) other->pressed = false;
  }
  button.pressed = true;
}

void ToolBar::EnableAllButtons(bool value) {
  for (Button& button : buttons) {
    if (button.style != ButtonStyle::Separator) button.enabled = value;
  }
  Tell(Aspect::Content);
}

void ToolBar::UserClick(const std::string& key) {
  Button& button = Find(key);
  if (!Enabled() || !button.enabled || !button.visible) return;
  if (button.style == ButtonStyle::Check) {
    button.pressed = !button.pressed;
    Tell(Aspect::Content);
  } else if (button.style == ButtonStyle::Group && !button.pressed) {
    Press(button);
    Tell(Aspect::Content);
  }
  ButtonClick.Raise(key);
}

ToolBar& BarOf(const ControlArray<ToolBar>& bars, const std::string& key) {
  for (const auto& [index, bar] : bars) {
    if (bar->HasButton(key)) return *bar;
  }
  Raise(ErrorNumber::ElementNotFound);
}

}  // namespace kw
