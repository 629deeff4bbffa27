// What a canvas tells screen readers of the parts that it draws.

#include <oleacc.h>

#include "components/base/Texts.h"
#include "components/controls/AccessibleTexts.h"
#include "windows/base/Gdi.h"
#include "windows/base/Text.h"
#include "windows/views/CanvasItemView.h"
#include "windows/views/PictureBoxView.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {

LONG PictureBoxView::IdOf(const AccessiblePart& part) const {
  auto* const view = dynamic_cast<CanvasItemView*>(Shared().ViewOf(*part.item));
  if (view == nullptr) return CHILDID_SELF;
  return view->AccessibleId() + (part.handle ? static_cast<LONG>(*part.handle) + 1 : 0);
}

std::vector<AccessibleAnswer> PictureBoxView::Parts() const {
  std::vector<AccessibleAnswer> answers;
  const bool isFocused = GetFocus() == Handle();
  const bool isUsable = TakesInput();
  for (const AccessiblePart& part : PartsOf(box, Shared().Scaling())) {
    unsigned state = part.isPickable ? STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE : 0;
    if (part.isPicked) state |= STATE_SYSTEM_SELECTED;
    if (part.isPicked && isFocused) state |= STATE_SYSTEM_FOCUSED;
    if (!isUsable) state |= STATE_SYSTEM_UNAVAILABLE;
    AccessibleAnswer& answer = answers.emplace_back();
    answer.id = IdOf(part);
    answer.role = SystemRoleOf(part.role);
    answer.state = static_cast<LONG>(state);
    answer.name = ToWide(part.name);
    answer.value = ToWide(part.value);
    if (part.isPickable) answer.action = ToWide(TranslatedIfOwn(accessible::PickAction));
    answer.place = ToRect(part.bounds);
  }
  return answers;
}

LONG PictureBoxView::PartAt(POINT point) const {
  const std::vector<AccessiblePart> parts = PartsOf(box, Shared().Scaling());
  const AccessiblePart* const part = kw::PartAt(parts, point.x, point.y);
  return part == nullptr ? LONG{CHILDID_SELF} : IdOf(*part);
}

void PictureBoxView::Do(LONG id) {
  if (!TakesInput()) return;
  for (const AccessiblePart& part : PartsOf(box)) {
    if (!part.isPickable || IdOf(part) != id) continue;
    // The handlers may close the window or let go of the control.
    const auto held = Shared().Hold();
    const ViewTree::Message underWay(Shared());
    static_cast<const TransparentPicture*>(part.item)->UserPick();
    return;
  }
}

void PictureBoxView::TellFocus() const {
  for (const AccessiblePart& part : PartsOf(box)) {
    if (part.isPicked) Shared().Announce(EVENT_OBJECT_FOCUS, Handle(), IdOf(part));
  }
}

}  // namespace kw::windows
