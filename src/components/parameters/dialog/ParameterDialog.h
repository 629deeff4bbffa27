#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "components/controls/CommandButton.h"
#include "components/controls/DialogForm.h"
#include "components/controls/ImageCombo.h"
#include "components/controls/Label.h"
#include "components/controls/NumberField.h"
#include "components/controls/PictureBox.h"
#include "components/controls/RangeControl.h"
#include "components/controls/Timer.h"
#include "components/parameters/ParameterEntry.h"
#include "components/parameters/dialog/ParameterQuestion.h"
#include "components/platform/Desktop.h"

namespace kw {

// The dialog that asks the user for numbers: for each a field with a spin button and a slider, or a list of choices,
// and beside them the preview. Enter accepts the values, Escape cancels, "Defaults" restores the standard values.
//
// Made for one question, shown once.
class ParameterDialog {
public:
  // The form's pixels, and milliseconds.
  static constexpr std::int32_t PictureSide = 240;
  static constexpr std::int32_t PreviewDelay = 15;

  // All must outlive the dialog. `offered` holds an allowed value for each field.
  ParameterDialog(Desktop& platform, const ParameterQuestion& asked, std::span<double> offered);

  // Shows the dialog and waits until it is left. True: the values that were offered are now the chosen ones. False,
  // with the values as they were, if the user cancelled. Raises OutOfMemory if the system gives no window.
  bool ShowModal();

  // The controls of a parameter. Number and slider, or choice, are in the form.
  struct Field {
    explicit Field(const Parameter& parameter);

    Label label{"label"};
    NumberField number;
    Label unit{"unit"};
    Slider slider{"slider"};
    ImageCombo choice;
  };

  DialogForm form{"frmParameters"};
  PictureBox picPreview{"picPreview"};
  std::vector<std::unique_ptr<Field>> fields;
  Label message{"message"};
  CommandButton ok{"ok"};
  CommandButton cancel{"cancel"};
  CommandButton defaults{"defaults"};
  Timer tmrPreview;

private:
  bool HasPicture() const { return question.makePreview != nullptr; }
  void Place();
  void PlaceField(std::size_t i, float left, float top);
  void SetDesignValues();
  void ConnectEvents();
  void ConnectField(std::size_t i);

  void ShowValue(std::size_t i);
  void ShowSlider(std::size_t i);
  void ShowRange(std::size_t i) { message.SetCaption(entry.Range(i)); }
  void EnterField(std::size_t i);
  void Form_KeyDown(std::int16_t key);
  void Accept();
  void SetDefaults();
  void RenewPreview();

  Desktop& desktop;
  const ParameterQuestion& question;
  ParameterEntry entry;
  std::span<double> chosen;
  bool isAccepted = false;
  ParameterQuestion::Preview preview;
  bool isPreviewSlow = true;  // the last one was; the first one may be
};

}  // namespace kw
