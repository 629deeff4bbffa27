#include "components/parameters/dialog/ParameterDialog.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>

#include "components/base/Texts.h"
#include "components/parameters/ParameterText.h"

namespace kw {
namespace {

// The layout, in pixels of the form.
constexpr float Margin = 12;
constexpr float Gap = 6;
constexpr float LabelWidth = 104;
constexpr float NumberWidth = 72;
constexpr float UnitWidth = 58;
constexpr float SliderWidth = 170;
constexpr float LineWidth = LabelWidth + NumberWidth + Gap + UnitWidth;
constexpr float FieldRowHeight = 26;
constexpr float FieldHeight = 21;
constexpr float TextHeight = 18;  // of labels; an edit field shows its text in the upper part, too
constexpr float ButtonWidth = 76;
constexpr float ButtonHeight = 24;

// A preview that takes longer is made under the hourglass.
constexpr std::chrono::milliseconds LongTime(50);

// Work on a preview, during which no messages are handled: measures its time, and shows the hourglass if asked to.
class PreviewWork {
public:
  PreviewWork(DialogForm& shown, bool& wasSlow) : form(shown), isSlow(wasSlow) {
    if (isSlow) form.SetPointer(MousePointer::Hourglass);
  }
  PreviewWork(const PreviewWork&) = delete;
  PreviewWork& operator=(const PreviewWork&) = delete;
  ~PreviewWork() {
    isSlow = std::chrono::steady_clock::now() - start > LongTime;
    form.SetPointer(MousePointer::Default);
  }

private:
  DialogForm& form;
  bool& isSlow;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

void PlaceIn(DialogForm& form, Control& control, float left, float top, float width, float height) {
  control.SetContainer(&form);
  control.Move(left, top, width, height);
}

}  // namespace

ParameterDialog::Field::Field(const Parameter& parameter)
    : number(std::string(parameter.name)), choice(std::string(parameter.name)) {}

ParameterDialog::ParameterDialog(Desktop& platform, const ParameterQuestion& asked, std::span<double> offered)
    : tmrPreview("tmrPreview", platform),
      desktop(platform),
      question(asked),
      entry(asked.fields, offered, platform.DecimalSeparator()),
      chosen(offered) {
  for (const Parameter& parameter : asked.fields) fields.push_back(std::make_unique<Field>(parameter));
  SetDesignValues();
  Place();
  ConnectEvents();
}

// With a picture the sliders are below the numbers, else to the right of them. The keyboard visits the controls in the
// order in which they are placed.
void ParameterDialog::Place() {
  const float picture = HasPicture() ? static_cast<float>(PictureSide) : 0;
  const float left = Margin + (HasPicture() ? picture + Margin : 0);
  const float width = left + LineWidth + (HasPicture() ? 0 : SliderWidth) + Margin;
  if (HasPicture()) PlaceIn(form, picPreview, Margin, Margin, picture, picture);
  const float height = (HasPicture() ? 2.0F : 1.0F) * FieldRowHeight;
  for (std::size_t i = 0; i < fields.size(); ++i) PlaceField(i, left, Margin + static_cast<float>(i) * height);
  const float bottom = Margin + std::max(static_cast<float>(fields.size()) * height, picture) + Gap;
  const float buttons = bottom + TextHeight + Gap;
  const float last = width - Margin - ButtonWidth;
  PlaceIn(form, message, Margin, bottom, width - 2 * Margin, TextHeight);
  PlaceIn(form, ok, last - Gap - ButtonWidth, buttons, ButtonWidth, ButtonHeight);
  PlaceIn(form, cancel, last, buttons, ButtonWidth, ButtonHeight);
  PlaceIn(form, defaults, Margin, buttons, ButtonWidth, ButtonHeight);
  form.UserResize(width, buttons + ButtonHeight + Margin);
}

void ParameterDialog::PlaceField(std::size_t i, float left, float top) {
  Field& field = *fields[i];
  const float number = left + LabelWidth;
  PlaceIn(form, field.label, left, top, LabelWidth, TextHeight);
  if (entry.IsChoice(i)) return PlaceIn(form, field.choice, number, top, NumberWidth + Gap + UnitWidth, FieldHeight);
  PlaceIn(form, field.number, number, top, NumberWidth, FieldHeight);
  PlaceIn(form, field.unit, number + NumberWidth + Gap, top, UnitWidth, TextHeight);
  if (HasPicture()) return PlaceIn(form, field.slider, left, top + FieldRowHeight, LineWidth, FieldRowHeight);
  PlaceIn(form, field.slider, left + LineWidth, top, SliderWidth, FieldHeight);
}

void ParameterDialog::SetDesignValues() {
  form.SetCaption(question.title);
  form.SetKeyPreview(false);
  picPreview.SetBackColor(MakeColour(128, 128, 128));
  picPreview.SetIsPreview(true);
  picPreview.SetEnabled(false);  // display only
  tmrPreview.SetInterval(PreviewDelay);
  ok.SetCaption(Translated("OK"));
  ok.SetIsDefault(true);
  cancel.SetCaption(Translated("Cancel"));
  defaults.SetCaption(Translated("&Defaults"));
  const std::vector<std::string> labels = WithMnemonics(question.fields, "d");
  for (std::size_t i = 0; i < fields.size(); ++i) {
    Field& field = *fields[i];
    field.label.SetHasMnemonic(true);
    field.label.SetCaption(labels[i] + ":");
    field.unit.SetCaption(TranslatedIfOwn(entry.Field(i).unit));
    field.slider.SetHasTicks(false);
    field.slider.SetMax(entry.LastPosition(i));
    field.slider.SetLargeChange(std::max(1, entry.LastPosition(i) / 10));
    for (const std::string_view choice : entry.Field(i).choices) field.choice.Add(TranslatedIfOwn(choice));
    ShowValue(i);
  }
}

void ParameterDialog::ConnectEvents() {
  form.Activate.Connect([this] {
    if (!fields.empty()) EnterField(0);
  });
  form.KeyDown.Connect([this](std::int16_t key, std::int16_t) { Form_KeyDown(key); });
  ok.Click.Connect([this] { Accept(); });
  cancel.Click.Connect([this] { form.SetVisible(false); });
  defaults.Click.Connect([this] { SetDefaults(); });
  for (std::size_t i = 0; i < fields.size(); ++i) ConnectField(i);
  if (!HasPicture()) return;
  entry.OnChange([this] { tmrPreview.SetEnabled(true); });
  tmrPreview.Tick.Connect([this] { RenewPreview(); });
}

void ParameterDialog::ConnectField(std::size_t i) {
  Field& field = *fields[i];
  field.number.GotFocus.Connect([this, i] { ShowRange(i); });
  field.number.Change.Connect([this, i] {
    entry.Type(i, fields[i]->number.Text());
    if (!entry.Position(i)) return;
    ShowRange(i);
    ShowSlider(i);
  });
  field.number.Step.Connect([this, i](int steps) {
    entry.Step(i, steps);
    ShowValue(i);
    ShowRange(i);
  });
  field.slider.Change.Connect([this, i] {
    const std::int32_t position = fields[i]->slider.Value();
    if (entry.Position(i) == position) return;  // it follows the number
    entry.SlideTo(i, position);
    ShowValue(i);
    ShowRange(i);
  });
  field.choice.GotFocus.Connect([this, i] { ShowRange(i); });
  field.choice.Click.Connect(
      [this, i] { entry.Choose(i, static_cast<std::size_t>(fields[i]->choice.SelectedItem()) - 1); });
}

bool ParameterDialog::ShowModal() {
  tmrPreview.SetEnabled(HasPicture());
  desktop.ShowModal(form);
  tmrPreview.SetEnabled(false);
  return isAccepted;
}

void ParameterDialog::ShowValue(std::size_t i) {
  if (entry.IsChoice(i)) return fields[i]->choice.Select(static_cast<std::int32_t>(entry.Choice(i)) + 1);
  fields[i]->number.SetText(entry.Text(i));
  ShowSlider(i);
}

void ParameterDialog::ShowSlider(std::size_t i) {
  if (const auto position = entry.Position(i)) fields[i]->slider.SetValue(*position);
}

void ParameterDialog::EnterField(std::size_t i) {
  entry.IsChoice(i) ? fields[i]->choice.SetFocus() : fields[i]->number.StartTyping();
}

void ParameterDialog::Form_KeyDown(std::int16_t key) {
  if (key == DialogForm::EscapeKey) return cancel.UserClick();
  if (key != DialogForm::EnterKey) return;
  auto* const focused = dynamic_cast<CommandButton*>(form.ActiveControl());
  (focused == nullptr ? ok : *focused).UserClick();
}

void ParameterDialog::Accept() {
  if (const auto values = entry.Values()) {
    std::ranges::copy(*values, chosen.begin());
    isAccepted = true;
    form.SetVisible(false);
    return;
  }
  const std::size_t wrong = *entry.FirstInvalid();
  desktop.Beep();
  EnterField(wrong);
  message.SetCaption(Filled(Translated("Not allowed. {1}"), {entry.Range(wrong)}));
}

void ParameterDialog::SetDefaults() {
  entry.SetDefaults();
  for (std::size_t i = 0; i < fields.size(); ++i) ShowValue(i);
}

void ParameterDialog::RenewPreview() {
  tmrPreview.SetEnabled(false);
  const auto values = entry.Values();
  if (!values) return;  // the last picture stays until all numbers are allowed
  const PreviewWork underWay(form, isPreviewSlow);
  picPreview.SetPicture({});  // if an error leaves the preview, there is none
  const auto side = static_cast<std::int32_t>(std::lround(PictureSide * form.ScreenPixels()));
  if (preview == nullptr) preview = question.makePreview(side, side);
  picPreview.SetPicture(preview(*values));
}

}  // namespace kw
