#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "components/base/Font.h"
#include "components/controls/Control.h"
#include "components/controls/MouseInput.h"

namespace kw {

// A caption, also used for the plain colour fields of the tool box.
class Label : public Control, public MouseInput {
public:
  explicit Label(std::string controlName) : Control(std::move(controlName), "Label") {}

  const std::string& Caption() const { return caption; }
  void SetCaption(std::string text);
  Colour ForeColor() const { return foreColor; }
  void SetForeColor(Colour value);
  Colour BackColor() const { return backColor; }
  void SetBackColor(Colour value);
  // A label is transparent until a back colour is set.
  bool IsOpaque() const { return isOpaque; }
  bool HasBorder() const { return hasBorder; }
  void SetBorder(bool value) { hasBorder = value; }
  // Whether "&" in the caption marks a letter, which gives the focus to the control behind the label. A matter of
  // design time.
  bool HasMnemonic() const { return hasMnemonic; }
  void SetHasMnemonic(bool value) { hasMnemonic = value; }

  std::string_view MnemonicCaption() const override { return hasMnemonic ? caption : std::string_view(); }
  void UserMnemonic() override;

private:
  std::string caption;
  Colour foreColor = 0;
  Colour backColor = 0;
  bool isOpaque = false;
  bool hasBorder = false;
  bool hasMnemonic = false;
};

}  // namespace kw
