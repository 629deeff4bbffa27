#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/base/Bitmap.h"
#include "components/base/Event.h"
#include "components/base/Units.h"

namespace kw {

class Control;

// The kind of a model's change, so that a view repaints no more than that.
enum class Aspect : std::uint8_t {
  Geometry,    // left, top, width or height
  Visibility,  // shown or hidden
  Enabled,
  Content,  // text, picture, value, items, range: what the control displays
  Colours,
  Font,
  Pointer,  // mouse pointer or its icon
  Order,    // its place among its siblings
  Focus,    // it became the active control by a procedure, not by the user
  PopUp,    // a menu is to be shown at the mouse
  Typing,   // typing into it begins or ends
  Name,     // its accessible name
};

// The one window or drawing that may show a model. A model works the same with none.
class View {
public:
  View() = default;
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  virtual ~View() = default;

  virtual void Changed(Aspect aspect) = 0;
  // A child was loaded into, or is about to be unloaded from, the model that this view shows.
  virtual void ChildAdded(Control& child) { static_cast<void>(child); }
  virtual void ChildRemoved(Control& child) { static_cast<void>(child); }
};

// What a control is to a screen reader.
enum class AccessibleRole : std::uint8_t {
  Standard,  // what its kind of control is
  Pane,
  Group,
  Separator,
  Text,
  Graphic,
  Document,
  Button,
  Grip,
};

// Codes of the mouse pointers that the editor sets.
enum class MousePointer : std::uint8_t {
  Default = 0,
  Arrow = 1,
  Cross = 2,
  SizeNESW = 6,
  SizeNS = 7,
  SizeNWSE = 8,
  SizeWE = 9,
  Hourglass = 11,
  NoDrop = 12,
  SizeAll = 15,
  Custom = 99,
};

// Mouse buttons and shift states as the event arguments carry them.
namespace Mouse {
inline constexpr std::int16_t LeftButton = 1;
inline constexpr std::int16_t RightButton = 2;
inline constexpr std::int16_t MiddleButton = 4;
inline constexpr std::int16_t ShiftKey = 1;
inline constexpr std::int16_t ControlKey = 2;
inline constexpr std::int16_t AltKey = 4;
}  // namespace Mouse

// The standard members that a container adds to every hosted control.
//
// Left, Top, Width and Height are in the unit of the container (see Unit); a control without a container measures in
// its own. A container owns none of its children: the form does, and a child that is destroyed leaves its container.
class Control {
public:
  // `componentType` is the component's name, as "KWRaisedAreaCtl".
  Control(std::string controlName, std::string_view componentType);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control();

  const std::string& Name() const { return name; }
  std::string_view Type() const { return type; }
  // Its number in a control array; empty for a single control.
  std::optional<std::int16_t> Index() const { return index; }
  void SetIndex(std::int16_t newIndex) { index = newIndex; }

  float Left() const { return left; }
  float Top() const { return top; }
  float Width() const { return width; }
  float Height() const { return height; }
  void SetLeft(float value) { Move(value, top, width, height); }
  void SetTop(float value) { Move(left, value, width, height); }
  void SetWidth(float value) { Move(left, top, value, height); }
  void SetHeight(float value) { Move(left, top, width, value); }
  // Raises InvalidPropertyValue for a negative or not finite size.
  void Move(float newLeft) { Move(newLeft, top, width, height); }
  void Move(float newLeft, float newTop) { Move(newLeft, newTop, width, height); }
  void Move(float newLeft, float newTop, float newWidth, float newHeight);

  bool Visible() const { return visible; }
  void SetVisible(bool value);
  bool Enabled() const { return enabled; }
  virtual void SetEnabled(bool value);
  MousePointer Pointer() const { return pointer; }
  void SetPointer(MousePointer value);
  // The key of the picture in the image list of mouse pointers that Custom shows.
  const std::string& PointerIcon() const { return pointerIcon; }
  void SetPointerIcon(const std::string& key);
  const std::string& ToolTip() const { return toolTip; }
  void SetToolTip(std::string text) { toolTip = std::move(text); }
  // What a screen reader calls it; if empty, its caption or its tool tip.
  const std::string& AccessibleName() const { return accessibleName; }
  void SetAccessibleName(std::string text) { AssignIfNew(accessibleName, std::move(text), Aspect::Name); }
  // A matter of design time.
  AccessibleRole RoleOfDesign() const { return role; }
  void SetRoleOfDesign(AccessibleRole value) { role = value; }

  // Moves this control in front of its siblings.
  void ZOrder();
  // Becomes the active control of its form. Raises InvalidProcedureCall when it cannot take the focus.
  void SetFocus();
  // Shown and enabled, and every container of it too.
  bool CanTakeFocus() const;
  // The control of this control's form that has the keyboard; null when none has.
  Control* ActiveControl() const;

  Control* Container() const { return container; }
  // Leaves the present container and becomes the frontmost child of `newContainer`.
  void SetContainer(Control* newContainer);
  // Back to front. A child that comes to the front meanwhile shows its new place from the next call on.
  const std::vector<Control*>& Children() const;
  Unit ScaleUnit() const { return scaleUnit; }
  void SetScaleUnit(Unit unit) { scaleUnit = unit; }

  // Only while no other view is attached; a view detaches itself before it dies.
  void AttachView(View* newView) { view = newView; }
  void DetachView() { view = nullptr; }
  View* AttachedView() const { return view; }

  // Shut-down sets these by name on every control; one that has no such member ignores it.
  virtual bool TrySetInterval(std::int32_t milliseconds);
  virtual bool TryClearPicture();

  // The caption in which "&" marks the control's letter in a dialog; empty if it has none.
  virtual std::string_view MnemonicCaption() const { return {}; }
  // Input procedure: the user pressed Alt and that letter.
  virtual void UserMnemonic() {}

  // Input procedures, called by a view for what the user did.
  void ReceiveFocus();
  void LoseFocus();

  Event<> GotFocus;
  Event<> LostFocus;

protected:
  void Tell(Aspect aspect);
  // Takes over a property's value and tells the view.
  template <class Value>
  void Assign(Value& property, Value value, Aspect aspect) {
    property = std::move(value);
    Tell(aspect);
  }
  // The same, unless it is the value that the property has.
  template <class Value>
  void AssignIfNew(Value& property, Value value, Aspect aspect) {
    if (property != value) Assign(property, std::move(value), aspect);
  }
  // A derived control raises its resize or change event here.
  virtual void Resized() {}
  // For a control array's new item: takes over the design-time values of `other`, its own name and index apart.
  void CopyDesign(const Control& other);

private:
  Control& Root();
  const Control& Root() const;
  void Activate(bool byProcedure);
  void GiveUpFocus();

  std::string name;
  std::string_view type;
  std::optional<std::int16_t> index;
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
  bool visible = true;
  bool enabled = true;
  MousePointer pointer = MousePointer::Default;
  std::string pointerIcon;
  std::string toolTip;
  std::string accessibleName;
  AccessibleRole role = AccessibleRole::Standard;
  Unit scaleUnit = Unit::Pixels;
  Control* container = nullptr;
  // Restacking many children one by one must not move all the others each time: a child that comes to the front gets
  // the next mark, and they are sorted by their marks when somebody asks.
  mutable std::vector<Control*> children;
  mutable bool areChildrenSorted = true;
  std::uint64_t highestMark = 0;  // of all marks given to children
  std::uint64_t mark = 0;         // within the container
  Control* active = nullptr;      // of a root only
  View* view = nullptr;
};

}  // namespace kw
