#include "components/controls/Control.h"

#include <cmath>

#include "components/base/RunTimeError.h"

namespace kw {

Control::Control(std::string controlName, std::string_view componentType)
    : name(std::move(controlName)), type(componentType) {}

Control::~Control() {
  Control& root = Root();
  if (root.active == this) root.active = nullptr;
  SetContainer(nullptr);
  for (Control* child : children) child->container = nullptr;
}

void Control::Move(float newLeft, float newTop, float newWidth, float newHeight) {
  if (!(newWidth >= 0 && newHeight >= 0) || !std::isfinite(newWidth) || !std::isfinite(newHeight) ||
      !std::isfinite(newLeft) || !std::isfinite(newTop)) {
    Raise(ErrorNumber::InvalidPropertyValue);
  }
  const bool moved = newLeft != left || newTop != top;
  const bool resized = newWidth != width || newHeight != height;
  if (!moved && !resized) return;
  left = newLeft;
  top = newTop;
  width = newWidth;
  height = newHeight;
  Tell(Aspect::Geometry);
  if (resized) Resized();
}

void Control::SetVisible(bool value) {
  if (visible == value) return;
  visible = value;
  Tell(Aspect::Visibility);
  if (!visible) GiveUpFocus();
}

// A hidden control cannot have the focus; if there are windows, the system has taken it away by now.
void Control::GiveUpFocus() {
  Control* const holder = Root().active;
  for (const Control* one = holder; one != nullptr; one = one->container) {
    if (one == this) return holder->LoseFocus();
  }
}

void Control::SetEnabled(bool value) {
  if (enabled == value) return;
  enabled = value;
  Tell(Aspect::Enabled);
}

void Control::SetPointer(MousePointer value) {
  if (pointer == value) return;
  pointer = value;
  Tell(Aspect::Pointer);
}

void Control::SetPointerIcon(const std::string& key) {
  if (pointerIcon == key) return;
  pointerIcon = key;
  Tell(Aspect::Pointer);
}

void Control::ZOrder() {
  if (container == nullptr || mark == container->highestMark) return;
  mark = ++container->highestMark;
  container->areChildrenSorted = false;
  Tell(Aspect::Order);
}

const std::vector<Control*>& Control::Children() const {
  if (!areChildrenSorted) {
    std::ranges::sort(children, {}, [](const Control* child) { return child->mark; });
    areChildrenSorted = true;
  }
  return children;
}

bool Control::CanTakeFocus() const {
  for (const Control* one = this; one != nullptr; one = one->container) {
    if (!one->visible || !one->enabled) return false;
  }
  return true;
}

void Control::SetFocus() {
  if (!CanTakeFocus()) Raise(ErrorNumber::InvalidProcedureCall);
  Activate(true);
}

void Control::ReceiveFocus() { Activate(false); }

void Control::LoseFocus() {
  Control& root = Root();
  if (root.active != this) return;
  root.active = nullptr;
  LostFocus.Raise();
}

void Control::Activate(bool byProcedure) {
  Control& root = Root();
  if (root.active == this) return;
  Control* const before = root.active;
  root.active = this;
  if (before != nullptr) before->LostFocus.Raise();
  if (root.active != this) return;  // the handler moved the focus on
  if (byProcedure) Tell(Aspect::Focus);
  GotFocus.Raise();
}

Control* Control::ActiveControl() const { return Root().active; }

void Control::SetContainer(Control* newContainer) {
  if (container == newContainer) return;
  // Without the memory for it, the control stays where it is.
  if (newContainer != nullptr) newContainer->children.push_back(this);
  if (container != nullptr) {
    if (container->view != nullptr) container->view->ChildRemoved(*this);
    // Search from the back: the newest children are removed most often.
    auto& siblings = container->children;
    siblings.erase(std::prev(std::find(siblings.rbegin(), siblings.rend(), this).base()));
  }
  container = newContainer;
  if (container != nullptr) {
    mark = ++container->highestMark;
    if (container->view != nullptr) container->view->ChildAdded(*this);
  }
}

bool Control::TrySetInterval(std::int32_t milliseconds) {
  static_cast<void>(milliseconds);
  return false;
}

bool Control::TryClearPicture() { return false; }

void Control::Tell(Aspect aspect) {
  if (view != nullptr) view->Changed(aspect);
}

void Control::CopyDesign(const Control& other) {
  left = other.left;
  top = other.top;
  width = other.width;
  height = other.height;
  enabled = other.enabled;
  pointer = other.pointer;
  pointerIcon = other.pointerIcon;
  toolTip = other.toolTip;
  scaleUnit = other.scaleUnit;
}

Control& Control::Root() { return container == nullptr ? *this : container->Root(); }
const Control& Control::Root() const { return container == nullptr ? *this : container->Root(); }

}  // namespace kw
