// What a view tells screen readers of its window.

#include <oleacc.h>

#include <memory>
#include <utility>

#include "components/base/Texts.h"
#include "components/controls/AccessibleTexts.h"
#include "components/controls/DTPicker.h"
#include "components/controls/ImageCombo.h"
#include "scene/Accessible.h"
#include "windows/base/Text.h"
#include "windows/views/ControlView.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

// A combo's text is its selection, a date picker's its date.
bool HasTextOfItsOwn(const Control& model) {
  return dynamic_cast<const ImageCombo*>(&model) != nullptr || dynamic_cast<const DTPicker*>(&model) != nullptr;
}

}  // namespace

LONG SystemRoleOf(AccessibleRole role) {
  switch (role) {
    case AccessibleRole::Pane:
      return ROLE_SYSTEM_PANE;
    case AccessibleRole::Group:
      return ROLE_SYSTEM_GROUPING;
    case AccessibleRole::Separator:
      return ROLE_SYSTEM_SEPARATOR;
    case AccessibleRole::Text:
      return ROLE_SYSTEM_STATICTEXT;
    case AccessibleRole::Graphic:
      return ROLE_SYSTEM_GRAPHIC;
    case AccessibleRole::Document:
      return ROLE_SYSTEM_DOCUMENT;
    case AccessibleRole::Button:
      return ROLE_SYSTEM_PUSHBUTTON;
    case AccessibleRole::Grip:
      return ROLE_SYSTEM_GRIP;
    case AccessibleRole::Standard:
      break;
  }
  return 0;
}

AccessibleAnswer ControlView::Whole() const {
  const AccessibleItem item = AccessibleOf(*model);
  AccessibleAnswer whole;
  whole.role = SystemRoleOf(item.role);
  whole.name = ToWide(item.name);
  whole.value = ToWide(item.value);
  if (item.role == AccessibleRole::Button) whole.action = ToWide(TranslatedIfOwn(accessible::PressAction));
  return whole;
}

// A press waits in the queue: its command may show a box, and the client must not wait for that.
void ControlView::Do(LONG /*id*/) {
  if (!TakesInput()) return;
  RECT client = {};
  GetClientRect(window, &client);
  const LPARAM middle = MAKELPARAM((client.left + client.right) / 2, (client.top + client.bottom) / 2);
  PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, middle);
  PostMessageW(window, WM_LBUTTONUP, 0, middle);
}

void ControlView::ShowName() {
  AccessibleItem now = AccessibleOf(*model);
  const bool isFirst = told == nullptr;
  if (isFirst) told = std::make_unique<AccessibleItem>();
  if (isFirst || now.name != told->name) {
    // Tools that read no accessible names read the text of the window.
    const bool isText = isOwnClass || (GetWindowTextLengthW(window) == 0 && !HasTextOfItsOwn(*model));
    // A new window has none.
    const bool isShown = isFirst && now.name.empty();
    if (isText && !isShown) SetWindowTextW(window, ToWide(now.name).c_str());
    if (!isFirst) tree.Announce(EVENT_OBJECT_NAMECHANGE, window, CHILDID_SELF);
  }
  if (!isFirst && now.value != told->value) tree.Announce(EVENT_OBJECT_VALUECHANGE, window, CHILDID_SELF);
  *told = std::move(now);
}

}  // namespace kw::windows
