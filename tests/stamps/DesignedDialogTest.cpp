// The stamp dialog as it is designed.

#include <gtest/gtest.h>

#include "stamps/frmApprovedXTimes.h"
#include "tests/support/EditorFixture.h"
#include "tests/support/FormLook.h"

namespace kw::test {
namespace {

class DesignedDialog : public EditorTest {
protected:
  frmApprovedXTimes dialog{desktop, control->ErrorTrap()};
};

// In the order in which the keyboard visits them.
TEST_F(DesignedDialog, HasEachControlInItsPlace) {
  const Lines expected{
      "opt(0): 12 12 408 18",       "cmbStamps: 32 34 388 24",
      "opt(1): 12 68 408 18",       "Label1: 32 90 72 24",
      "cmbNoOfTimes: 108 90 80 24", "lblTimes: 196 90 224 24",
      "opt(2): 12 124 408 18",      "lblOKUntil: 32 146 72 24",
      "DTPicker1: 108 146 120 24",  "chkAttachSignature: 12 182 408 18",
      "picPreview: 12 208 408 74",  "chkOK: 240 292 86 26",
      "chkCancel: 334 292 86 26",
  };
  Lines places;
  for (const Control* child : dialog.form.Children()) places.push_back(NameOf(*child) + ": " + PlaceOf(*child));
  EXPECT_EQ(places, expected);
  EXPECT_EQ(PlaceOf(dialog.form), "0 0 6480 4950") << "432 by 330 pixels";
}

TEST_F(DesignedDialog, HasItsCaptionsAndTheStampOptionChosen) {
  const Lines expected{
      "opt(0): caption=&Stamp chosen",
      "cmbStamps: editable",
      "opt(1): caption=A&pproved for a number of times",
      "Label1: disabled caption=APPROVED",
      "cmbNoOfTimes: disabled editable",
      "lblTimes: disabled",
      "opt(2): caption=OK &until a date",
      "lblOKUntil: disabled caption=OK UNTIL",
      "DTPicker1: disabled",
      "chkAttachSignature: caption=&Attach signature",
      "picPreview: disabled",
      "chkOK: caption=&OK button",
      "chkCancel: caption=&Cancel button",
  };
  Lines values;
  for (const Control* child : dialog.form.Children()) values.push_back(ValuesOf(*child));
  EXPECT_EQ(values, expected);
  EXPECT_EQ(dialog.form.Caption(), "Stamp");
  EXPECT_EQ(dialog.picPreview.BackColor(), 0xFFFFFFU);
}

}  // namespace
}  // namespace kw::test
