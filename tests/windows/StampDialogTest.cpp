// The stamp dialog in its real window, driven as a user drives it.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "stamps/frmApprovedXTimes.h"
#include "tests/support/RecordedEvents.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/RealDialog.h"

namespace kw::test {
namespace {

class RealStampDialog : public RealDialog {
protected:
  RealStampDialog() : RealDialog(L"Stamp") { AppDir = folder.Path(); }
  ~RealStampDialog() override { AppDir.clear(); }

  // Shows a new dialog while a user does this on a thread of his own.
  void Show(const std::function<void()>& user) {
    made.emplace(desktop, trap);
    made->LastStampSelected = lastStamp;
    Use([&] { made->ShowModal(); }, [&] { return Focus() == FieldOf(made->cmbStamps); }, user);
  }
  static std::string TextIn(const ImageCombo& combo) { return RealDialog::TextIn(FieldOf(combo)); }
  std::string ListFile() const { return ReadWhole(folder.File("stamps.lst")); }

  const TemporaryFolder folder;
  Log log{"log"};
  RecordedEvents events;
  Trap trap{desktop, events, form.root, form.frame, form.canvas, log};
  std::optional<frmApprovedXTimes> made;
  std::string lastStamp;
};

TEST_F(RealStampDialog, StampsTheItemChosenWithTheKeyboard) {
  Show([&] {
    Press(VK_DOWN);
    Press(VK_DOWN);
    Press(VK_DOWN);
    EXPECT_EQ(made->cmbStamps.SelectedItem(), 4);
    Press(VK_RETURN);
  });
  EXPECT_EQ(made->StampString, "APPROVED");
  EXPECT_FALSE(made->IsCancelled);
  EXPECT_FALSE(Exists(folder.File("stamps.lst")));
}

TEST_F(RealStampDialog, KeepsATypedStamp) {
  Show([&] {
    SendMessageW(Focus(), EM_SETSEL, 0, -1);
    Type(L"SEEN \u627F\u8A8D BY ME");
    EXPECT_EQ(made->cmbStamps.SelectedItem(), 0);
    Press(VK_TAB);  // the field keeps what was typed
    EXPECT_EQ(made->cmbStamps.Text(), "SEEN 承認 BY ME");
    EXPECT_EQ(TextIn(made->cmbStamps), "SEEN 承認 BY ME");
    Mnemonic(L'u');
    EXPECT_EQ(TextIn(made->cmbStamps), "SEEN 承認 BY ME");
    Mnemonic(L's');
    Press(VK_RETURN);
  });
  EXPECT_EQ(made->StampString, "SEEN 承認 BY ME");
  EXPECT_EQ(StampList(desktop, trap).ReadStamp("1"), "SEEN 承認 BY ME");
}

TEST_F(RealStampDialog, OffersTheLastStampAgainAndItsOwnStamps) {
  WriteWhole(folder.File("stamps.lst"), "[Stamps]\r\n1=" + std::string(600, 'x') + "\r\n2=MINE\r\n");
  lastStamp = "MINE";
  Show([&] {
    EXPECT_EQ(TextIn(made->cmbStamps), "MINE");
    EXPECT_EQ(SendMessageW(WindowOf(made->cmbStamps), CB_GETCOUNT, 0, 0), 27);
    Press(VK_UP);
    EXPECT_EQ(made->cmbStamps.Text(), std::string(511, 'x'));
    Press(VK_RETURN);
  });
  EXPECT_EQ(made->StampString, std::string(511, 'x'));
}

TEST_F(RealStampDialog, StampsTheCount) {
  Show([&] {
    Mnemonic(L'p');
    EXPECT_TRUE(made->opt(1).Value());
    EXPECT_EQ(TextIn(made->cmbStamps), made->cmbStamps.Text());
    EXPECT_EQ(Focus(), WindowOf(made->opt(1)));
    EXPECT_FALSE(IsWindowEnabled(WindowOf(made->cmbStamps)));
    Press(VK_TAB);
    EXPECT_EQ(Focus(), FieldOf(made->cmbNoOfTimes));
    Type(L"3");
    EXPECT_EQ(made->lblTimes.Caption(), "TIMES");
    Type(L"0");
    Click(made->chkOK);
  });
  EXPECT_EQ(made->StampString, "APPROVED 30 TIMES");
  EXPECT_EQ(made->NoOfTimes, "30");
}

TEST_F(RealStampDialog, StampsTheDateThatThePickerShows) {
  LocalDate shown;
  Show([&] {
    const auto date = [&] {
      SYSTEMTIME time = {};
      SendMessageW(WindowOf(made->DTPicker1), DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&time));
      return LocalDate{time.wYear, time.wMonth, time.wDay};
    };
    Mnemonic(L'U');
    Press(VK_TAB);
    EXPECT_EQ(Focus(), WindowOf(made->DTPicker1));
    EXPECT_EQ(date(), AddDays(desktop.Date(), 90));
    Press(VK_RIGHT);
    Press(VK_UP);
    shown = date();
    EXPECT_NE(shown, AddDays(desktop.Date(), 90));
    Press(VK_RETURN);
  });
  EXPECT_EQ(made->StampString, "OK UNTIL " + std::to_string(shown.month) + "/" + std::to_string(shown.day) + "/" +
                                   std::to_string(shown.year));
}

TEST_F(RealStampDialog, EnterTakesTheDateThatIsBeingTyped) {
  const LocalDate offered = AddDays(desktop.Date(), 90);
  // Another digit could follow, so the field waits.
  int typed = 1;
  while (typed == offered.month || typed == offered.day) ++typed;
  Show([&] {
    Mnemonic(L'U');
    Press(VK_TAB);
    Press(VK_RIGHT);
    Type(std::to_wstring(typed));
    Press(VK_RETURN);
  });
  const auto stamp = [&](int month, int day) {
    return "OK UNTIL " + std::to_string(month) + "/" + std::to_string(day) + "/" + std::to_string(offered.year);
  };
  // The system says which field the key leads to.
  EXPECT_TRUE(made->StampString == stamp(typed, offered.day) || made->StampString == stamp(offered.month, typed))
      << made->StampString;
}

TEST_F(RealStampDialog, TakesTheSignatureTick) {
  Show([&] {
    Mnemonic(L'a');
    EXPECT_TRUE(made->chkAttachSignature.Value());
    EXPECT_EQ(SendMessageW(WindowOf(made->chkAttachSignature), BM_GETCHECK, 0, 0), BST_CHECKED);
    Press(VK_RETURN);
  });
  EXPECT_TRUE(made->IsToAttachSignature);
}

TEST_F(RealStampDialog, IsLeftByEnterAndEscWhereverTheKeyboardIs) {
  const std::function<void()> places[] = {
      [&] { Mnemonic(L's'); },
      [&] {
        Mnemonic(L'u');
        Press(VK_TAB);
      },
      [&] { SendMessageW(WindowOf(made->cmbStamps), CB_SHOWDROPDOWN, TRUE, 0); },
  };
  for (const auto& go : places) {
    Show([&] {
      go();
      Press(VK_RETURN);
    });
    EXPECT_FALSE(made->IsCancelled);
    EXPECT_FALSE(made->StampString.empty());
    Show([&] {
      go();
      Press(VK_ESCAPE);
    });
    EXPECT_TRUE(made->IsCancelled);
    EXPECT_EQ(made->StampString, "");
  }
}

// The list of a field chooses the item that begins with what was typed, and writes it into the field.
TEST_F(RealStampDialog, StampsWhatItsFieldShowsOnceTheListWasDown) {
  for (const bool isLeftDown : {true, false}) {
    std::string shown;
    Show([&] {
      const HWND combo = WindowOf(made->cmbStamps);
      SendMessageW(Focus(), EM_SETSEL, 0, -1);
      Type(L"AP");
      SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
      if (!isLeftDown) SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
      Settle();
      EXPECT_EQ(TextIn(made->cmbStamps), made->cmbStamps.Text());
      EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), made->cmbStamps.SelectedItem() - 1);
      shown = TextIn(made->cmbStamps);
      Press(VK_RETURN);
    });
    EXPECT_EQ(made->StampString, shown);
  }
}

TEST_F(RealStampDialog, IsLeftByItsButtonsAndItsCloseBox) {
  Show([&] { Click(made->chkCancel); });
  EXPECT_TRUE(made->IsCancelled);
  Show([&] { PostMessageW(Dialog(), WM_CLOSE, 0, 0); });
  EXPECT_TRUE(made->IsCancelled);
  Show([&] { Mnemonic(L'c'); });
  EXPECT_TRUE(made->IsCancelled);
  EXPECT_EQ(made->StampString, "");
}

TEST_F(RealStampDialog, TheTabKeyGoesRoundTheControlsOfTheOption) {
  std::vector<HWND> forth;
  std::vector<HWND> expected;
  Show([&] {
    expected = {WindowOf(made->chkAttachSignature), WindowOf(made->chkOK), WindowOf(made->chkCancel),
                WindowOf(made->opt(0)), FieldOf(made->cmbStamps)};
    for (int i = 0; i < 5; ++i) {
      Press(VK_TAB);
      forth.push_back(Focus());
    }
    Press(VK_ESCAPE);
  });
  EXPECT_EQ(forth, expected);
}

TEST_F(RealStampDialog, TheArrowsChooseTheNeighbouringOption) {
  Show([&] {
    Mnemonic(L's');
    Press(VK_DOWN);
    EXPECT_TRUE(made->opt(1).Value());
    EXPECT_EQ(Focus(), WindowOf(made->opt(1)));
    Press(VK_UP);
    Press(VK_UP);
    EXPECT_TRUE(made->opt(2).Value());
    Press(VK_RIGHT);
    EXPECT_TRUE(made->opt(0).Value());
    Press(VK_ESCAPE);
  });
}

TEST_F(RealStampDialog, BelongsToItsOwnerWhichWaits) {
  Show([&] {
    EXPECT_EQ(GetWindow(Dialog(), GW_OWNER), form.host);
    EXPECT_FALSE(IsWindowEnabled(form.host));
    Press(VK_ESCAPE);
  });
  EXPECT_TRUE(IsWindowEnabled(form.host));
}

TEST_F(RealStampDialog, IsCancelledWhenItsOwnerGoes) {
  Show([&] { PostMessageW(form.host, WM_CLOSE, 0, 0); });  // destroys it on its own thread
  EXPECT_FALSE(IsWindow(form.host));
  EXPECT_TRUE(made->IsCancelled);
}

TEST_F(RealStampDialog, ListsUserStampsUntilTheCounterOverflows) {
  std::string content = "[Stamps]\r\n";
  for (int i = 1; i <= 40000; ++i) content += std::to_string(i) + "=STAMP " + std::to_string(i) + "\r\n";
  WriteWhole(folder.File("stamps.lst"), content);
  form.root.SetEnabled(false);  // so that the report stays silent
  StampList list(desktop, trap);
  ImageCombo combo("combo");
  list.FillStampList(combo);
  EXPECT_EQ(trap.CurrentError().Number(), static_cast<std::int32_t>(ErrorNumber::Overflow));
  EXPECT_EQ(combo.ItemCount(), 25 + 32767);
  EXPECT_EQ(combo.ItemText(25 + 32767), "STAMP 32767");
  EXPECT_EQ(ListFile(), content);
}

}  // namespace
}  // namespace kw::test
