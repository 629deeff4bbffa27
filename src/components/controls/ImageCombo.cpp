#include "components/controls/ImageCombo.h"

#include <algorithm>

#include "components/base/RunTimeError.h"

namespace kw {

const std::string& ImageCombo::ItemText(std::int32_t position) const {
  if (position < 1 || position > ItemCount()) Raise(ErrorNumber::SubscriptOutOfRange);
  return items[static_cast<std::size_t>(position - 1)];
}

void ImageCombo::Add(const std::string& newText, std::int32_t position) {
  if (position == 0) position = ItemCount() + 1;
  if (position < 1 || position > ItemCount() + 1) Raise(ErrorNumber::SubscriptOutOfRange);
  items.insert(items.begin() + (position - 1), newText);
  if (selected >= position) ++selected;
  Tell(Aspect::Content);
}

void ImageCombo::Clear() {
  items.clear();
  selected = 0;
  text.clear();
  Tell(Aspect::Content);
}

void ImageCombo::Select(std::int32_t position) {
  text = ItemText(position);
  selected = position;
  Tell(Aspect::Content);
}

void ImageCombo::SetText(const std::string& newText) {
  text = newText;
  const auto found = std::find(items.begin(), items.end(), newText);
  selected = found == items.end() ? 0 : static_cast<std::int32_t>(found - items.begin()) + 1;
  Tell(Aspect::Content);
}

void ImageCombo::UserChoose(std::int32_t position) {
  if (!Enabled()) return;
  Select(position);
  Click.Raise();
}

void ImageCombo::UserType(const std::string& newText) {
  if (!Enabled() || !isEditable || newText == text) return;
  SetText(newText);
  selected = 0;  // a typed text is nobody's item, even if it reads the same
  Change.Raise();
}

}  // namespace kw
