#include <gtest/gtest.h>

#include "stamps/frmApprovedXTimes.h"
#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

constexpr std::int16_t Enter = 13;
constexpr std::int16_t Escape = 27;

class StampDialog : public EditorTest {
protected:
  // Shows the dialog to a user who does this.
  void Show(const std::function<void()>& user) {
    desktop.formAnswers.emplace_back([&user](DialogForm&) { user(); });
    dialog.ShowModal();
  }
  void Press(std::int16_t key) const { dialog.form.KeyDown.Raise(key, 0); }
  std::string ListFile() const { return ReadWhole(folder.File("stamps.lst")); }

  frmApprovedXTimes dialog{desktop, control->ErrorTrap()};
};

TEST_F(StampDialog, OffersTheStampOptionFirst) {
  Show([&] {
    EXPECT_TRUE(dialog.opt(0).Value());
    EXPECT_EQ(dialog.form.ActiveControl(), &dialog.cmbStamps);
    EXPECT_EQ(dialog.cmbStamps.ItemCount(), 25);
    EXPECT_EQ(dialog.cmbStamps.Text(), "Dt: 11/15/2026");
    EXPECT_FALSE(dialog.chkAttachSignature.Value());
  });
}

TEST_F(StampDialog, OffersTheCountsLastAndOneToHundred) {
  Show([&] {
    ASSERT_EQ(dialog.cmbNoOfTimes.ItemCount(), 101);
    EXPECT_EQ(dialog.cmbNoOfTimes.ItemText(1), "LAST");
    EXPECT_EQ(dialog.cmbNoOfTimes.ItemText(2), "1");
    EXPECT_EQ(dialog.cmbNoOfTimes.ItemText(101), "100");
    EXPECT_EQ(dialog.cmbNoOfTimes.SelectedItem(), 0);
    EXPECT_EQ(dialog.lblTimes.Caption(), "TIME");
  });
}

TEST_F(StampDialog, EnablesTheControlsOfTheChosenOptionOnly) {
  const auto enabled = [&] {
    return std::vector<bool>{dialog.cmbStamps.Enabled(), dialog.cmbNoOfTimes.Enabled(), dialog.Label1.Enabled(),
                             dialog.lblTimes.Enabled(),  dialog.DTPicker1.Enabled(),    dialog.lblOKUntil.Enabled()};
  };
  Show([&] {
    EXPECT_EQ(enabled(), (std::vector<bool>{true, false, false, false, false, false}));
    dialog.opt(1).UserChoose();
    EXPECT_EQ(enabled(), (std::vector<bool>{false, true, true, true, false, false}));
    dialog.opt(2).UserChoose();
    EXPECT_EQ(enabled(), (std::vector<bool>{false, false, false, false, true, true}));
    dialog.opt(0).UserChoose();
    EXPECT_EQ(enabled(), (std::vector<bool>{true, false, false, false, false, false}));
  });
}

TEST_F(StampDialog, ComposesTheChosenStamp) {
  Show([&] {
    dialog.cmbStamps.UserChoose(5);
    Press(Enter);
    EXPECT_FALSE(dialog.form.Visible());
  });
  EXPECT_EQ(dialog.StampString, "APPROVED 11/15/2026");
  EXPECT_EQ(dialog.LastStampSelected, "APPROVED 11/15/2026");
  EXPECT_FALSE(dialog.IsCancelled);
  EXPECT_FALSE(Exists(folder.File("stamps.lst"))) << "picking an item writes nothing";
}

TEST_F(StampDialog, ComposesTheCount) {
  const std::pair<const char*, const char*> cases[] = {
      {"1", "APPROVED 1 TIME"},
      {"2", "APPROVED 2 TIMES"},
      {"LAST", "APPROVED LAST TIME, MUST SEE MD"},
      {"0", "APPROVED 0 TIME"},
      {"-3", "APPROVED -3 TIME"},
      {"1.5", "APPROVED 1.5 TIMES"},
      {"last", "APPROVED last TIME"},
      {"3 more", "APPROVED 3 more TIMES"},
      {"x3", "APPROVED x3 TIME"},
      {" 12", "APPROVED  12 TIMES"},
      {"+7", "APPROVED +7 TIMES"},
      {"1 0", "APPROVED 1 0 TIMES"},
      {"", "APPROVED  TIME"},
      {"inf", "APPROVED inf TIME"},
      {"二", "APPROVED 二 TIME"},
      {"1e3", "APPROVED 1e3 TIMES"},
      {"1E0", "APPROVED 1E0 TIME"},
      {"1e", "APPROVED 1e TIME"},
      {"-inf", "APPROVED -inf TIME"},
      {"nan", "APPROVED nan TIME"},
      {"1e-999", "APPROVED 1e-999 TIME"},
      {".5", "APPROVED .5 TIME"},
      {"-", "APPROVED - TIME"},
      {"05", "APPROVED 05 TIMES"},
      {"9", "APPROVED 9 TIMES"},
  };
  for (const auto& row : cases) {
    frmApprovedXTimes one(desktop, control->ErrorTrap());
    desktop.formAnswers.emplace_back([&](DialogForm&) {
      one.opt(1).UserChoose();
      one.cmbNoOfTimes.UserType(row.first);
      one.chkOK.UserToggle();
    });
    one.ShowModal();
    EXPECT_EQ(one.StampString, row.second);
    EXPECT_EQ(one.NoOfTimes, row.first);
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(StampDialog, SetsTheWordAfterTheCountWhenOneIsChosenFromTheList) {
  Show([&] {
    dialog.opt(1).UserChoose();
    dialog.cmbNoOfTimes.UserChoose(1);
    EXPECT_EQ(dialog.lblTimes.Caption(), "TIME, MUST SEE MD");
    dialog.cmbNoOfTimes.UserChoose(2);
    EXPECT_EQ(dialog.lblTimes.Caption(), "TIME");
    dialog.cmbNoOfTimes.UserChoose(101);
    EXPECT_EQ(dialog.lblTimes.Caption(), "TIMES");
  });
}

TEST_F(StampDialog, ReportsACountThatIsNoNumberOfTheMachine) {
  desktop.Expect("Critical Error: Error Number : 6");
  Show([&] {
    dialog.opt(1).UserChoose();
    dialog.cmbNoOfTimes.UserType(std::string(400, '9'));
  });
  EXPECT_EQ(events.errors, (std::vector<int>{static_cast<int>(ErrorNumber::Overflow)}));
}

TEST_F(StampDialog, OffersADateInNinetyDays) {
  const std::pair<LocalDate, const char*> cases[] = {
      {{2003, 11, 7}, "OK UNTIL 2/5/2004"},   {{2026, 11, 15}, "OK UNTIL 2/13/2027"},
      {{2023, 12, 31}, "OK UNTIL 3/30/2024"}, {{2024, 2, 29}, "OK UNTIL 5/29/2024"},
      {{2022, 12, 31}, "OK UNTIL 3/31/2023"}, {{1999, 10, 3}, "OK UNTIL 1/1/2000"},
      {{2025, 7, 2}, "OK UNTIL 9/30/2025"},   {{2099, 12, 2}, "OK UNTIL 3/2/2100"},
  };
  for (const auto& [today, stamp] : cases) {
    desktop.date = today;
    frmApprovedXTimes one(desktop, control->ErrorTrap());
    desktop.formAnswers.emplace_back([&](DialogForm&) {
      one.opt(2).UserChoose();
      one.chkOK.UserToggle();
    });
    one.ShowModal();
    EXPECT_EQ(one.StampString, stamp);
  }
}

TEST_F(StampDialog, ComposesTheChosenDateWithoutLeadingZeros) {
  Show([&] {
    dialog.opt(2).UserChoose();
    dialog.DTPicker1.UserChoose({2004, 2, 5});
    Press(Enter);
  });
  EXPECT_EQ(dialog.StampString, "OK UNTIL 2/5/2004");
}

TEST_F(StampDialog, ReportsADateThatNoPickerHolds) {
  desktop.Expect("Critical Error: Error Number : 380");
  desktop.date = {9999, 12, 1};
  Show([&] {
    dialog.opt(2).UserChoose();
    Press(Enter);
  });
  EXPECT_EQ(events.errors, (std::vector<int>{static_cast<int>(ErrorNumber::InvalidPropertyValue)}));
  EXPECT_EQ(dialog.StampString, "OK UNTIL 12/1/9999");
}

TEST_F(StampDialog, AppendsATypedStampToTheList) {
  WriteWhole(folder.File("stamps.lst"), "[Stamps]\r\n1=ONE\r\n2=TWO\r\n4=FOUR\r\n");
  Show([&] {
    dialog.cmbStamps.UserType("SEEN \"BY\" ME = OK");
    Press(Enter);
  });
  EXPECT_EQ(dialog.StampString, "SEEN \"BY\" ME = OK");
  EXPECT_EQ(ListFile(), "[Stamps]\r\n1=ONE\r\n2=TWO\r\n4=FOUR\r\n3=SEEN \"BY\" ME = OK\r\n");
  frmApprovedXTimes next(desktop, control->ErrorTrap());
  desktop.formAnswers.emplace_back([&](DialogForm&) {
    EXPECT_EQ(next.cmbStamps.ItemCount(), 29) << "and the key behind the gap is there again";
    EXPECT_EQ(next.cmbStamps.ItemText(28), "SEEN \"BY\" ME = OK");
  });
  next.ShowModal();
}

TEST_F(StampDialog, MakesTheListWithTheFirstTypedStamp) {
  Show([&] {
    dialog.cmbStamps.UserType("MINE");
    dialog.chkOK.UserToggle();
  });
  EXPECT_EQ(ListFile(), "[Stamps]\r\n1=MINE\r\n");
}

TEST_F(StampDialog, WritesATypedStampWhicheverOptionIsChosen) {
  Show([&] {
    dialog.cmbStamps.UserType("MINE");
    dialog.opt(2).UserChoose();
    Press(Enter);
  });
  EXPECT_EQ(dialog.StampString, "OK UNTIL 2/13/2027");
  EXPECT_EQ(ListFile(), "[Stamps]\r\n1=MINE\r\n");
}

TEST_F(StampDialog, WritesWhatIsLongerThanWhatIsReadWhole) {
  Show([&] {
    dialog.cmbStamps.UserType(std::string(600, 'x'));
    Press(Enter);
  });
  EXPECT_EQ(dialog.StampString.size(), 600U);
  EXPECT_EQ(ListFile(), "[Stamps]\r\n1=" + std::string(600, 'x') + "\r\n");
}

TEST_F(StampDialog, StampsAllTheSameWhereTheListCannotBeWritten) {
  std::filesystem::create_directory(folder.Native() / "stamps.lst");
  Show([&] {
    dialog.cmbStamps.UserType("MINE");
    Press(Enter);
  });
  EXPECT_EQ(dialog.StampString, "MINE");
  EXPECT_TRUE(events.errors.empty());
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(StampDialog, OffersTheLastStampAndCountAgain) {
  dialog.LastStampSelected = "CONFIDENTIAL";
  dialog.NoOfTimes = "7";
  Show([&] {
    EXPECT_EQ(dialog.cmbStamps.Text(), "CONFIDENTIAL");
    EXPECT_EQ(dialog.cmbStamps.SelectedItem(), 8);
    EXPECT_EQ(dialog.cmbNoOfTimes.Text(), "7");
    EXPECT_EQ(dialog.lblTimes.Caption(), "TIMES");
  });
}

TEST_F(StampDialog, IgnoresBlankPresets) {
  dialog.LastStampSelected = "  ";
  dialog.NoOfTimes = " ";
  Show([&] {
    EXPECT_EQ(dialog.cmbStamps.SelectedItem(), 1);
    EXPECT_EQ(dialog.cmbNoOfTimes.Text(), "");
  });
}

TEST_F(StampDialog, KeepsALastStampThatTheListDoesNotHold) {
  dialog.LastStampSelected = "APPROVED 11/14/2026";
  Show([&] {
    EXPECT_EQ(dialog.cmbStamps.Text(), "APPROVED 11/14/2026");
    EXPECT_EQ(dialog.cmbStamps.SelectedItem(), 0);
    Press(Enter);
  });
  EXPECT_EQ(ListFile(), "[Stamps]\r\n1=APPROVED 11/14/2026\r\n") << "no item was picked";
}

TEST_F(StampDialog, OffersABuiltInStampAsItReadsNow) {
  dialog.LastStampSelected = "APPROVED 11/14/2026 08:00:00";
  dialog.LastItemSelected = 6;
  Show([&] {
    EXPECT_EQ(dialog.cmbStamps.SelectedItem(), 6);
    EXPECT_EQ(dialog.cmbStamps.Text(), dialog.cmbStamps.ItemText(6));
    EXPECT_TRUE(dialog.cmbStamps.Text().starts_with("APPROVED 11/15/2026 "));
    Press(Enter);
  });
  EXPECT_EQ(dialog.StampString, dialog.cmbStamps.ItemText(6));
  EXPECT_EQ(dialog.LastItemSelected, 6);
  EXPECT_FALSE(Exists(folder.File("stamps.lst")));
}

TEST_F(StampDialog, OffersTheFirstAndTheLastBuiltInStampAsTheyReadNow) {
  for (const std::int32_t item : {1, 25}) {
    frmApprovedXTimes one(desktop, control->ErrorTrap());
    one.LastStampSelected = "of another day";
    one.LastItemSelected = item;
    desktop.formAnswers.emplace_back([&](DialogForm&) { EXPECT_EQ(one.cmbStamps.SelectedItem(), item); });
    one.ShowModal();
  }
}

TEST_F(StampDialog, OffersAUserStampByItsTextWhereverItStandsNow) {
  WriteWhole(folder.File("stamps.lst"), "[Stamps]\r\n1=ANOTHER\r\n2=MINE\r\n");
  dialog.LastStampSelected = "MINE";
  dialog.LastItemSelected = 26;
  Show([&] {
    EXPECT_EQ(dialog.cmbStamps.SelectedItem(), 27);
    EXPECT_EQ(dialog.cmbStamps.Text(), "MINE");
    dialog.cmbStamps.UserType("TYPED");
    Press(Enter);
  });
  EXPECT_EQ(dialog.LastItemSelected, 0) << "it was not picked";
}

TEST_F(StampDialog, IsCancelledByButtonEscAndCloseBox) {
  const std::function<void(frmApprovedXTimes&)> ways[] = {
      [](frmApprovedXTimes& one) { one.chkCancel.UserToggle(); },
      [](frmApprovedXTimes& one) { one.form.KeyDown.Raise(Escape, 0); },
      [](frmApprovedXTimes& one) { one.form.UserClose(); },
  };
  for (const auto& cancel : ways) {
    frmApprovedXTimes one(desktop, control->ErrorTrap());
    one.LastStampSelected = "DRAFT";
    one.NoOfTimes = "2";
    desktop.formAnswers.emplace_back([&](DialogForm&) {
      one.cmbStamps.UserType("NEVER");
      one.chkAttachSignature.UserToggle();
      cancel(one);
      EXPECT_FALSE(one.form.Visible());
    });
    one.ShowModal();
    EXPECT_TRUE(one.IsCancelled);
    EXPECT_EQ(one.StampString, "");
    EXPECT_EQ(one.LastStampSelected, "DRAFT");
    EXPECT_EQ(one.NoOfTimes, "2");
    EXPECT_FALSE(one.IsToAttachSignature);
  }
  EXPECT_FALSE(Exists(folder.File("stamps.lst")));
}

TEST_F(StampDialog, TellsWhetherTheSignatureGoesWithIt) {
  Show([&] {
    dialog.chkAttachSignature.UserToggle();
    Press(Enter);
  });
  EXPECT_TRUE(dialog.IsToAttachSignature);
}

TEST_F(StampDialog, ShowsWhatOKWouldCompose) {
  std::vector<std::string> shown;
  dialog.Preview.Connect([&] { shown.push_back(dialog.ComposedStamp()); });
  Show([&] {
    shown.clear();
    dialog.cmbStamps.UserType("M");
    dialog.opt(1).UserChoose();
    dialog.cmbNoOfTimes.UserChoose(4);
    dialog.opt(2).UserChoose();
    dialog.DTPicker1.UserChoose({2030, 1, 31});
  });
  EXPECT_EQ(shown, (std::vector<std::string>{"M", "APPROVED  TIME", "APPROVED 3 TIMES", "OK UNTIL 2/13/2027",
                                             "OK UNTIL 1/31/2030"}));
}

TEST_F(StampDialog, OtherKeysGoToTheControls) {
  Show([&] {
    for (std::int16_t key : {std::int16_t{32}, std::int16_t{65}, std::int16_t{46}, std::int16_t{9}}) Press(key);
    EXPECT_TRUE(dialog.form.Visible());
  });
}

TEST_F(StampDialog, TracesItsProceduresByName) {
  ForgetTrace();
  Show([&] { Press(Enter); });
  EXPECT_EQ(Trace(), (std::vector<std::string>{"Form_Load", "FillStampList", "cmbNoOfTimes_Change", "Form_Activate",
                                               "Form_KeyDown", "chkOK_Click"}));
}

TEST_F(StampDialog, CannotAppendToAListOf32767Stamps) {
  desktop.Expect("Critical Error: Error Number : 6");
  class FullDesktop : public ScriptedDesktop {
  public:
    int written = 0;
    std::string ReadProfileString(const std::string& /*section*/, const std::string& key,
                                  const std::string& /*defaultValue*/, const std::string& /*path*/) override {
      return "STAMP " + key;
    }
    bool WriteProfileString(const std::string& /*section*/, const std::string& /*key*/, const std::string& /*value*/,
                            const std::string& /*path*/) override {
      ++written;
      return true;
    }
  } full;
  frmApprovedXTimes one(full, control->ErrorTrap());
  full.formAnswers.emplace_back([&](DialogForm&) {
    one.cmbStamps.UserType("ONE MORE");
    one.chkOK.UserToggle();
  });
  one.ShowModal();
  EXPECT_EQ(events.errors.size(), 1U) << "reported once, by the filling";
  EXPECT_EQ(full.written, 0);
  EXPECT_EQ(one.StampString, "ONE MORE");
}

}  // namespace
}  // namespace kw::test
