#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "components/controls/OptionButton.h"
#include "form/EditorForm.h"

namespace kw::test {

// A form's look as text.

using Lines = std::vector<std::string>;

inline std::string NameOf(const Control& control) {
  std::string name = control.Name();
  if (control.Index()) name += "(" + std::to_string(*control.Index()) + ")";
  return name;
}

// Left, top, width and height.
inline std::string PlaceOf(const Control& control) {
  std::ostringstream place;
  place << control.Left() << " " << control.Top() << " " << control.Width() << " " << control.Height();
  return place.str();
}

// Each control with its container, its left, top, width and height there and whether it is hidden. The controls in it
// follow it, from back to front.
inline Lines PlacesOf(EditorForm& form) {
  Lines lines;
  for (const Control* control : form.Controls()) {
    lines.push_back(NameOf(*control->Container()) + " > " + NameOf(*control) + ": " + PlaceOf(*control) +
                    (control->Visible() ? "" : " hidden"));
  }
  return lines;
}

// The buttons of a bar, each with all that differs from a push button that can be pressed.
inline Lines ButtonsOf(const ToolBar& bar) {
  Lines lines;
  for (const ToolBar::Button& button : bar.Buttons()) {
    if (button.style == ButtonStyle::Separator) {
      lines.push_back(button.key.empty() && button.visible ? "|" : "a separator with a key or a hidden one");
      continue;
    }
    std::string line = button.key + ": " + button.toolTip;
    if (!button.caption.empty()) line += " (" + button.caption + ")";
    if (button.image != button.key) line += " with the image " + button.image;
    if (button.style == ButtonStyle::Check) line += " toggles";
    if (button.style == ButtonStyle::Group) line += " grouped";
    if (!button.enabled) line += " disabled";
    if (!button.visible) line += " hidden";
    if (button.pressed) line += " pressed";
    lines.push_back(line);
  }
  return lines;
}

namespace form_look {

class Values {
public:
  template <class T>
  void Add(const char* what, const T& value, const T& usual) {
    if (value == usual) return;
    line << " " << what << "=" << value;
  }
  void AddColour(const char* what, Colour value, Colour usual) {
    if (value == usual) return;
    line << " " << what << "=" << (value & 0xFFU) << "," << (value >> 8U & 0xFFU) << "," << (value >> 16U);
  }
  void Add(const char* what, bool value) {
    if (value) line << " " << what;
  }
  std::string Text() const { return line.str(); }

private:
  std::ostringstream line;
};

inline void Describe(const Label& label, Values& values) {
  values.Add("caption", label.Caption(), {});
  values.AddColour("fore", label.ForeColor(), 0);
  if (label.IsOpaque()) values.AddColour("back", label.BackColor(), ~Colour{0});
  values.Add("bordered", label.HasBorder());
}

inline void Describe(const RangeControl& range, Values& values) {
  values.Add("min", range.Min(), 0);
  values.Add("max", range.Max(), -1);
  values.Add("value", range.Value(), 0);
}

inline void Describe(const TransparentPicture& layer, Values& values) {
  values.Add("caption", layer.Caption(), {});
  values.AddColour("fore", layer.ForeColor(), 0);
  values.AddColour("back", layer.BackColor(), 0xFFFFFF);
  values.AddColour("fill", layer.FillColor(), 0xFFFFFF);
  values.AddColour("line", layer.LineColor(), 0);
  values.AddColour("transparent", layer.TransparentColor(), 0xFFFFFF);
  values.Add("line width", int{layer.LineWidth()}, 1);
  values.Add("figure", static_cast<int>(layer.DrawnFigure().kind), 1);
  values.Add("frame", layer.SelectionFrame(), 0);
  values.Add("picture", layer.HasPicture());
  values.Add("lightened", layer.IsLightened());
  values.Add("text entry", layer.IsTextEntry());
  values.Add("typing", layer.IsTyping());
  values.Add("border marks", layer.IsToShowBorderMarks());
  values.Add("resize handles", layer.IsToShowResize());
}

}  // namespace form_look

// The values of a control that differ from those of a new one.
inline std::string ValuesOf(const Control& control) {
  form_look::Values values;
  values.Add("twips", control.ScaleUnit() == Unit::Twips);
  values.Add("pointer", static_cast<int>(control.Pointer()), 0);
  values.Add("icon", control.PointerIcon(), {});
  values.Add("tip", control.ToolTip(), {});
  values.Add("disabled", !control.Enabled());
  if (const auto* label = dynamic_cast<const Label*>(&control)) Describe(*label, values);
  if (const auto* range = dynamic_cast<const RangeControl*>(&control)) Describe(*range, values);
  if (const auto* layer = dynamic_cast<const TransparentPicture*>(&control)) Describe(*layer, values);
  if (const auto* bar = dynamic_cast<const ScrollBar*>(&control)) {
    values.Add("vertical", bar->IsVertical());
    values.Add("large", int{bar->LargeChange()}, 0);
    values.Add("small", int{bar->SmallChange()}, 0);
  }
  if (const auto* box = dynamic_cast<const PictureBox*>(&control)) values.AddColour("back", box->BackColor(), 0xFFFFFF);
  if (const auto* marker = dynamic_cast<const LightWeightMarker*>(&control)) {
    values.AddColour("colour", marker->Color(), 0);
  }
  if (const auto* raised = dynamic_cast<const RaisedPicture*>(&control)) {
    values.Add("picture", raised->Picture(), {});
    values.Add("button", raised->IsButton());
  }
  if (const auto* box = dynamic_cast<const CheckBox*>(&control)) {
    values.Add("caption", box->Caption(), {});
    values.Add("button", box->IsButton());
    values.Add("ticked", box->Value());
  }
  if (const auto* option = dynamic_cast<const OptionButton*>(&control)) {
    values.Add("caption", option->Caption(), {});
    values.Add("chosen", option->Value());
  }
  if (const auto* menu = dynamic_cast<const Menu*>(&control)) values.Add("caption", menu->Caption(), {});
  if (const auto* timer = dynamic_cast<const Timer*>(&control)) values.Add("interval", timer->Interval(), 0);
  if (const auto* combo = dynamic_cast<const ImageCombo*>(&control)) {
    values.Add("items", combo->ItemCount(), 0);
    values.Add("selected", combo->SelectedItem(), 0);
    values.Add("text", combo->Text(), {});
    values.Add("editable", combo->IsEditable());
  }
  return NameOf(control) + ":" + values.Text();
}

inline Lines ValuesOf(EditorForm& form) {
  Lines lines;
  for (const Control* control : form.Controls()) lines.push_back(ValuesOf(*control));
  return lines;
}

// All of that, from outside to inside.
inline Lines LookOf(EditorForm& form) {
  Lines lines = PlacesOf(form);
  for (const std::string& line : ValuesOf(form)) lines.push_back(line);
  for (const ToolBar* bar : {&form.tbrOpenFile, &form.tbrBasicTools(0), &form.tbrBasicTools(1), &form.tbrEditingTools,
                             &form.tbrFillPattern, &form.tbrFonts, &form.tbrMoreTools}) {
    for (const std::string& line : ButtonsOf(*bar)) lines.push_back(NameOf(*bar) + " " + line);
  }
  return lines;
}

// The lines of `after` that `before` does not have.
inline Lines NewLines(const Lines& before, const Lines& after) {
  Lines lines;
  for (const std::string& line : after) {
    if (std::find(before.begin(), before.end(), line) == before.end()) lines.push_back(line);
  }
  return lines;
}

}  // namespace kw::test
