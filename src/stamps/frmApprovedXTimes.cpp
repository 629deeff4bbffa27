#include "stamps/frmApprovedXTimes.h"

#include <charconv>

#include "components/base/Blank.h"
#include "components/base/Texts.h"
#include "components/controls/AccessibleTexts.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

constexpr int HighestCount = 100;
constexpr int DaysOffered = 90;

// The options.
enum : std::int16_t { StampOption, CountOption, DateOption };

// The number that a text begins with, blanks left out; 0 if it begins with none.
double NumericValue(std::string text) {
  std::erase(text, ' ');
  if (text.starts_with('+')) text.erase(0, 1);
  const std::size_t first = text.find_first_not_of("-.");
  if (first == std::string::npos || text[first] < '0' || text[first] > '9') return 0;  // words as "inf" are none
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool isTiny = text[first] == '0' || text.find('-', first) != std::string::npos;
  if (result.ec == std::errc::result_out_of_range && !isTiny) Raise(ErrorNumber::Overflow);
  return value;
}

}  // namespace

frmApprovedXTimes::frmApprovedXTimes(Desktop& platform, Trap& errorTrap)
    : desktop(platform), trap(errorTrap), list(platform, errorTrap) {
  PlaceControls();
  SetDesignValues();
  ConnectEvents();
}

void frmApprovedXTimes::PlaceControls() {
  struct Placement {
    Control& control;
    float left, top, width, height;
  };
  form.UserResize(432, 330);
  // The keyboard visits the controls in this order.
  const Placement rows[] = {
      {opt(StampOption), 12, 12, 408, 18}, {cmbStamps, 32, 34, 388, 24},
      {opt(CountOption), 12, 68, 408, 18}, {Label1, 32, 90, 72, 24},
      {cmbNoOfTimes, 108, 90, 80, 24},     {lblTimes, 196, 90, 224, 24},
      {opt(DateOption), 12, 124, 408, 18}, {lblOKUntil, 32, 146, 72, 24},
      {DTPicker1, 108, 146, 120, 24},      {chkAttachSignature, 12, 182, 408, 18},
      {picPreview, 12, 208, 408, 74},      {chkOK, 240, 292, 86, 26},
      {chkCancel, 334, 292, 86, 26},
  };
  for (const Placement& row : rows) {
    row.control.SetContainer(&form);
    row.control.Move(row.left, row.top, row.width, row.height);
  }
}

void frmApprovedXTimes::SetDesignValues() {
  form.SetCaption("Stamp");
  opt(StampOption).SetCaption(Translated("&Stamp"));
  opt(CountOption).SetCaption(Translated("A&pproved for a number of times"));
  opt(DateOption).SetCaption(Translated("OK &until a date"));
  cmbStamps.SetEditable(true);
  cmbNoOfTimes.SetEditable(true);
  Label1.SetCaption("APPROVED");
  lblOKUntil.SetCaption("OK UNTIL");
  chkAttachSignature.SetCaption(Translated("&Attach signature"));
  picPreview.SetBackColor(MakeColour(255, 255, 255));
  picPreview.SetEnabled(false);  // display only
  chkOK.SetCaption(Translated("&OK"));
  chkCancel.SetCaption(Translated("&Cancel"));
  cmbStamps.SetAccessibleName(accessible::StampList);
  cmbNoOfTimes.SetAccessibleName(accessible::StampCount);
  lblTimes.SetAccessibleName(accessible::StampTimes);
  DTPicker1.SetAccessibleName(accessible::StampDate);
  picPreview.SetAccessibleName(accessible::StampPreview);
  for (CheckBox* button : {&chkOK, &chkCancel}) button->SetIsButton(true);
  opt(StampOption).SetValue(true);
  EnableForOption(StampOption);
}

void frmApprovedXTimes::ConnectEvents() {
  form.KeyDown.Connect([this](std::int16_t keyCode, std::int16_t) { Form_KeyDown(keyCode); });
  form.Activate.Connect([this] { Form_Activate(); });
  form.CloseBox.Connect([this] { chkCancel_Click(); });
  opt.ConnectItems([this](OptionButton& option) {
    option.Click.Connect([this, index = option.Index().value_or(0)] { opt_Click(index); });
  });
  cmbStamps.Change.Connect([this] { Preview.Raise(); });
  cmbStamps.Click.Connect([this] { Preview.Raise(); });
  cmbNoOfTimes.Change.Connect([this] { cmbNoOfTimes_Change(); });
  cmbNoOfTimes.Click.Connect([this] { cmbNoOfTimes_Click(); });
  DTPicker1.Change.Connect([this] { Preview.Raise(); });
  chkAttachSignature.Click.Connect([this] { Preview.Raise(); });
  chkOK.Click.Connect([this] { chkOK_Click(); });
  chkCancel.Click.Connect([this] { chkCancel_Click(); });
}

void frmApprovedXTimes::ShowModal() {
  Form_Load();
  Procedure run(trap);
  run([&] { desktop.ShowModal(form); });
}

void frmApprovedXTimes::Form_Load() {
  Procedure run(trap, "Form_Load");
  run([&] { list.FillStampList(cmbStamps); });
  run([&] {
    const std::int32_t builtIn = cmbStamps.ItemCount() - list.UserStampCount();
    if (LastItemSelected > 0 && LastItemSelected <= builtIn) LastStampSelected = cmbStamps.ItemText(LastItemSelected);
  });
  run([&] {
    if (!IsBlank(LastStampSelected)) cmbStamps.SetText(LastStampSelected);
  });
  run([&] { cmbNoOfTimes.Clear(); });
  run([&] { cmbNoOfTimes.Add("LAST"); });
  run([&] {
    for (int count = 1; count <= HighestCount; ++count) cmbNoOfTimes.Add(std::to_string(count));
  });
  run([&] {
    if (!IsBlank(NoOfTimes)) cmbNoOfTimes.SetText(NoOfTimes);
  });
  run([&] { cmbNoOfTimes_Change(); });
  // A new date picker shows today.
  run([&] { DTPicker1.SetValue(desktop.Date()); });
  run([&] { DTPicker1.SetValue(AddDays(DTPicker1.Value(), DaysOffered)); });
}

void frmApprovedXTimes::Form_Activate() {
  Procedure run(trap, "Form_Activate");
  run([&] { cmbStamps.SetFocus(); });
}

void frmApprovedXTimes::EnableForOption(std::int16_t chosen) {
  cmbStamps.SetEnabled(chosen == StampOption);
  cmbNoOfTimes.SetEnabled(chosen == CountOption);
  Label1.SetEnabled(chosen == CountOption);
  lblTimes.SetEnabled(chosen == CountOption);
  DTPicker1.SetEnabled(chosen == DateOption);
  lblOKUntil.SetEnabled(chosen == DateOption);
}

void frmApprovedXTimes::opt_Click(std::int16_t index) {
  Procedure run(trap, "opt_Click");
  run([&] { EnableForOption(index); });
  run([&] { Preview.Raise(); });
}

void frmApprovedXTimes::cmbNoOfTimes_Change() {
  Procedure run(trap, "cmbNoOfTimes_Change");
  run([&] { lblTimes.SetCaption(NumericValue(cmbNoOfTimes.Text()) > 1 ? "TIMES" : "TIME"); });
  run([&] {
    if (cmbNoOfTimes.Text() == "LAST") lblTimes.SetCaption(lblTimes.Caption() + ", MUST SEE MD");
  });
  run([&] { Preview.Raise(); });
}

void frmApprovedXTimes::cmbNoOfTimes_Click() {
  Procedure run(trap, "cmbNoOfTimes_Click");
  run([&] { cmbNoOfTimes_Change(); });
}

std::string frmApprovedXTimes::ComposedStamp() const {
  if (opt(CountOption).Value()) return "APPROVED " + cmbNoOfTimes.Text() + " " + lblTimes.Caption();
  if (opt(DateOption).Value()) {
    return "OK UNTIL " + std::to_string(DTPicker1.Month()) + "/" + std::to_string(DTPicker1.Day()) + "/" +
           std::to_string(DTPicker1.Year());
  }
  return cmbStamps.Text();
}

void frmApprovedXTimes::chkOK_Click() {
  Procedure run(trap, "chkOK_Click");
  run([&] { NoOfTimes = cmbNoOfTimes.Text(); });
  run([&] {
    LastStampSelected = cmbStamps.Text();
    LastItemSelected = cmbStamps.SelectedItem();
  });
  run([&] { IsToAttachSignature = chkAttachSignature.Value(); });
  run([&] {
    if (cmbStamps.SelectedItem() == 0) list.AddStamp(cmbStamps.Text());
  });
  run([&] { StampString = ComposedStamp(); });
  run([&] { form.SetVisible(false); });
}

void frmApprovedXTimes::chkCancel_Click() {
  Procedure run(trap, "chkCancel_Click");
  run([&] { IsCancelled = true; });
  run([&] { form.SetVisible(false); });
}

void frmApprovedXTimes::Form_KeyDown(std::int16_t keyCode) {
  Procedure run(trap, "Form_KeyDown");
  if (keyCode == DialogForm::EnterKey) run([&] { chkOK_Click(); });
  if (keyCode == DialogForm::EscapeKey) run([&] { chkCancel_Click(); });
}

}  // namespace kw
