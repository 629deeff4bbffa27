#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "components/controls/CheckBox.h"
#include "components/controls/ControlArray.h"
#include "components/controls/DTPicker.h"
#include "components/controls/DialogForm.h"
#include "components/controls/ImageCombo.h"
#include "components/controls/Label.h"
#include "components/controls/OptionButton.h"
#include "components/controls/PictureBox.h"
#include "components/platform/Desktop.h"
#include "stamps/StampList.h"
#include "trap/Trap.h"

namespace kw {

// The dialog that asks which text to stamp on the page: a stamp of the list or a typed one, "APPROVED n TIMES", or
// "OK UNTIL" a date; and whether the signature goes with it.
//
// Made for one stamp: preset, shown once, read.
class frmApprovedXTimes {
public:
  // Both arguments must outlive the dialog.
  frmApprovedXTimes(Desktop& platform, Trap& errorTrap);

  // Shows the dialog and waits until it is left.
  void ShowModal();

  // The results. The texts of the two combos may be preset and are then offered again.
  std::string StampString;  // empty until OK
  bool IsCancelled = false;
  bool IsToAttachSignature = false;
  std::string NoOfTimes;
  std::string LastStampSelected;
  // The place of that stamp in the list if it was picked there; 0 if it was typed. Preset, a built-in stamp is
  // offered again as it reads at the moment of the new list.
  std::int32_t LastItemSelected = 0;

  // The text that OK would compose now.
  std::string ComposedStamp() const;
  // The choices changed: what OK would compose is another text, or the signature's tick is.
  Event<> Preview;

  DialogForm form{"frmApprovedXTimes"};
  ControlArray<OptionButton> opt{"opt", 3};
  ImageCombo cmbStamps{"cmbStamps"};
  Label Label1{"Label1"};
  ImageCombo cmbNoOfTimes{"cmbNoOfTimes"};
  Label lblTimes{"lblTimes"};
  Label lblOKUntil{"lblOKUntil"};
  DTPicker DTPicker1{"DTPicker1"};
  CheckBox chkAttachSignature{"chkAttachSignature"};
  PictureBox picPreview{"picPreview"};
  CheckBox chkOK{"chkOK"};
  CheckBox chkCancel{"chkCancel"};

private:
  void PlaceControls();
  void SetDesignValues();
  void ConnectEvents();
  void EnableForOption(std::int16_t chosen);

  void Form_Load();
  void Form_Activate();
  void Form_KeyDown(std::int16_t keyCode);
  void opt_Click(std::int16_t index);
  void cmbNoOfTimes_Change();
  void cmbNoOfTimes_Click();
  void chkOK_Click();
  void chkCancel_Click();

  Desktop& desktop;
  Trap& trap;
  StampList list;
};

}  // namespace kw
