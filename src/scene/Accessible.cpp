#include "scene/Accessible.h"

#include <algorithm>

#include "components/base/Texts.h"
#include "components/controls/AccessibleTexts.h"
#include "components/controls/DialogForm.h"
#include "components/controls/Label.h"
#include "components/controls/LightWeightMarker.h"
#include "components/controls/RaisedArea.h"
#include "components/controls/TransparentPicture.h"
#include "drawing/DisplayItem.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

// Captions hold rows of blanks that make room for other controls.
std::string WithoutRowsOfBlanks(const std::string& text) {
  std::string result;
  for (const char one : text) {
    const bool isBlank = one == ' ' || one == '\t' || one == '\r' || one == '\n';
    if (!isBlank)
      result += one;
    else if (!result.empty() && result.back() != ' ')
      result += ' ';
  }
  if (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

std::string NameOf(const Control& control) {
  return TranslatedIfOwn(control.AccessibleName().empty() ? control.ToolTip() : control.AccessibleName());
}

std::string TextOfColour(Colour colour) {
  const auto part = [colour](unsigned shift) {
    return std::to_string((static_cast<std::uint32_t>(colour) >> shift) & 0xFFU);
  };
  return Filled(Translated("red {1}, green {2}, blue {3}"), {part(0), part(8), part(16)});
}

const char* KindOfLayer(FigureKind kind) {
  switch (kind) {
    case FigureKind::Text:
      return accessible::TextLayer;
    case FigureKind::Ellipse:
      return accessible::EllipseLayer;
    case FigureKind::Rectangle:
      return accessible::RectangleLayer;
    case FigureKind::Line:
      return accessible::LineLayer;
    case FigureKind::Picture:
      break;
  }
  return accessible::PictureLayer;
}

AccessibleItem ItemOfLayer(const TransparentPicture& layer) {
  const FigureKind kind = layer.DrawnFigure().kind;
  AccessibleItem item = {.role = kind == FigureKind::Text ? AccessibleRole::Text : AccessibleRole::Graphic,
                         .name = TranslatedIfOwn(layer.AccessibleName()),
                         .value = layer.Caption()};
  if (item.name.empty())
    item.name = TranslatedIfOwn(KindOfLayer(kind)) + " " + std::to_string(layer.Index().value_or(0));
  return item;
}

AccessibleItem ItemOfLabel(const Label& label) {
  if (label.RoleOfDesign() == AccessibleRole::Button)
    return {.role = AccessibleRole::Button, .name = NameOf(label), .value = TextOfColour(label.BackColor())};
  const std::string caption = WithoutRowsOfBlanks(label.Caption());
  return {.role = AccessibleRole::Text, .name = caption.empty() ? NameOf(label) : caption, .value = {}};
}

AccessibleItem ItemByKind(const Control& control) {
  if (const auto* layer = dynamic_cast<const TransparentPicture*>(&control)) return ItemOfLayer(*layer);
  if (const auto* label = dynamic_cast<const Label*>(&control)) return ItemOfLabel(*label);
  AccessibleItem item = {.role = AccessibleRole::Standard, .name = NameOf(control), .value = {}};
  if (dynamic_cast<const LightWeightMarker*>(&control) != nullptr) {
    item.role = AccessibleRole::Grip;
  } else if (const auto* picture = dynamic_cast<const RaisedPicture*>(&control)) {
    item.role = picture->IsButton() ? AccessibleRole::Button : AccessibleRole::Graphic;
  } else if (const auto* dialog = dynamic_cast<const DialogForm*>(&control)) {
    item.role = AccessibleRole::Pane;
    item.name = dialog->Caption();
  } else if (dynamic_cast<const UserControl*>(&control) != nullptr ||
             dynamic_cast<const PictureBox*>(&control) != nullptr) {
    item.role = AccessibleRole::Pane;
  } else if (dynamic_cast<const RaisedArea*>(&control) != nullptr || dynamic_cast<const Frame*>(&control) != nullptr) {
    item.role = AccessibleRole::Group;
  }
  return item;
}

}  // namespace

AccessibleItem AccessibleOf(const Control& control) {
  AccessibleItem item = ItemByKind(control);
  if (control.RoleOfDesign() != AccessibleRole::Standard) item.role = control.RoleOfDesign();
  return item;
}

bool IsAccessiblePart(const Control& child) {
  if (!child.Visible() || !IsCanvasItem(child)) return false;
  const bool isLayer = child.Index() && dynamic_cast<const TransparentPicture*>(&child) != nullptr;
  return isLayer || !child.AccessibleName().empty();
}

std::vector<AccessiblePart> PartsOf(const PictureBox& canvas, const Scale& scale) {
  std::vector<AccessiblePart> parts;
  for (const Control* child : canvas.Children()) {
    if (!IsAccessiblePart(*child)) continue;
    AccessiblePart part;
    static_cast<AccessibleItem&>(part) = AccessibleOf(*child);
    part.item = child;
    const auto* const layer = dynamic_cast<const TransparentPicture*>(child);
    if (layer == nullptr) {
      part.bounds = BoundsOnDevice(static_cast<const LightWeightMarker&>(*child), scale);
      parts.push_back(std::move(part));
      continue;
    }
    part.bounds = BoundsOnDevice(*layer, scale);
    part.isPicked = layer->SelectionFrame() != 0;
    // The page and the background are named by the editor.
    part.isPickable = layer->Index() && layer->AccessibleName().empty();
    const auto handles = HandlesOf(part.bounds, scale.LengthOnDevice(DisplayItem::HandleSize));
    parts.push_back(std::move(part));
    if (!layer->IsToShowResize()) continue;
    for (std::size_t i = 0; i < handles.size(); ++i) {
      AccessiblePart& handle = parts.emplace_back();
      handle.role = AccessibleRole::Grip;
      handle.name = TranslatedIfOwn(accessible::Handles[i]);
      handle.item = child;
      handle.handle = i;
      handle.bounds = handles[i];
    }
  }
  return parts;
}

const AccessiblePart* PartAt(const std::vector<AccessiblePart>& parts, std::int32_t x, std::int32_t y) {
  const auto found = std::find_if(parts.rbegin(), parts.rend(), [x, y](const AccessiblePart& part) {
    const PixelRect& bounds = part.bounds;
    return x >= bounds.left && x < bounds.right && y >= bounds.top && y < bounds.bottom;
  });
  return found == parts.rend() ? nullptr : &*found;
}

}  // namespace kw
