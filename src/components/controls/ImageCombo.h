#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "components/controls/Control.h"

namespace kw {

// A drop-down list whose items are numbered from 1.
class ImageCombo : public Control {
public:
  explicit ImageCombo(std::string controlName) : Control(std::move(controlName), "ImageCombo") {}

  std::int32_t ItemCount() const { return static_cast<std::int32_t>(items.size()); }
  // Raises SubscriptOutOfRange outside 1 to ItemCount().
  const std::string& ItemText(std::int32_t position) const;
  // Adds at `position`, or at the end for 0. Raises SubscriptOutOfRange for a position that leaves a gap.
  void Add(const std::string& text, std::int32_t position = 0);
  void Clear();

  // The selected item's number; 0 if none is.
  std::int32_t SelectedItem() const { return selected; }
  // Selects an item and shows its text; raises no event.
  void Select(std::int32_t position);
  // The shown text. Setting it selects the item of that text, or none.
  const std::string& Text() const { return text; }
  void SetText(const std::string& newText);
  bool IsEditable() const { return isEditable; }
  void SetEditable(bool value) { isEditable = value; }
  void Refresh() { Tell(Aspect::Content); }

  // Input procedures; ignored while the combo is disabled.
  void UserChoose(std::int32_t position);
  void UserType(const std::string& newText);

  Event<> Click;   // an item was chosen
  Event<> Change;  // the text was edited

private:
  std::vector<std::string> items;
  std::int32_t selected = 0;
  std::string text;
  bool isEditable = false;
};

}  // namespace kw
