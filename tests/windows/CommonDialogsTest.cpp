// The system's dialogs for fonts, colours and files.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/win32/Answerer.h"
#include "tests/windows/OwnedDesktop.h"
#include "tests/windows/TestForm.h"

namespace kw::test {
namespace {

class CommonDialogs : public testing::Test {
protected:
  // Shows a dialog of that title, and whether its answer counted; it has to belong to the host's window.
  template <class Dialog>
  bool Show(const wchar_t* title, WPARAM answer, Dialog&& dialog) {
    bool isTaken = false;
    const Answerer user(title, answer, [&](HWND box) { EXPECT_EQ(GetWindow(box, GW_OWNER), form.host); });
    isTaken = dialog();
    TestForm::Pump();
    EXPECT_NE(IsWindowEnabled(form.host), FALSE);
    return isTaken;
  }
  bool ShowFont(Font& font, WPARAM answer) {
    return Show(L"Font", answer, [&] { return desktop.ShowFont(font); });
  }
  bool ShowColor(Colour& colour, WPARAM answer) {
    return Show(L"Color", answer, [&] { return desktop.ShowColor(colour); });
  }

  TestForm form;
  OwnedDesktop desktop{form.window->Handle()};
};

TEST_F(CommonDialogs, AFontIsOfferedAsItIs) {
  const Font offered{
      .name = "Liberation Sans", .size = 14, .bold = true, .italic = true, .underline = true, .strikeThrough = true};
  Font font = offered;
  EXPECT_TRUE(ShowFont(font, IDOK));
  EXPECT_TRUE(font == offered);
  const Font plain{.name = "Liberation Serif", .size = 9};
  font = plain;
  EXPECT_TRUE(ShowFont(font, IDOK));
  EXPECT_TRUE(font == plain);
}

TEST_F(CommonDialogs, AFontThatIsNotInstalledStaysWhenTheUserCancels) {
  const Font offered{.name = "No Such Font", .size = 30, .italic = true};
  Font font = offered;
  EXPECT_FALSE(ShowFont(font, IDCANCEL));
  EXPECT_TRUE(font == offered);
}

TEST_F(CommonDialogs, AColourIsOfferedAsItIs) {
  for (const Colour offered : {MakeColour(0, 0, 0), MakeColour(12, 200, 255), MakeColour(255, 255, 255)}) {
    Colour colour = offered;
    EXPECT_TRUE(ShowColor(colour, IDOK));
    EXPECT_EQ(colour, offered);
    EXPECT_FALSE(ShowColor(colour, IDCANCEL));
    EXPECT_EQ(colour, offered);
  }
}

TEST_F(CommonDialogs, ANumberThatIsNoColourIsShownAsThatOfItsLowerBits) {
  for (const Colour offered : {0xFFFFFFFFU, 0x01000000U, 0x7F000001U}) {
    Colour colour = offered;
    EXPECT_FALSE(ShowColor(colour, IDCANCEL));
    EXPECT_EQ(colour, offered);
    EXPECT_TRUE(ShowColor(colour, IDOK));
    EXPECT_EQ(colour & 0xFFFFFFU, offered & 0xFFFFFFU);
  }
}

TEST_F(CommonDialogs, ACancelledFileStays) {
  OpenDialog dialog{.filter = "Pictures (*.tif)|*.tif", .filterIndex = 2, .fileName = "offered.tif"};
  EXPECT_FALSE(Show(L"Open", IDCANCEL, [&] { return desktop.ShowOpen(dialog); }));
  EXPECT_EQ(dialog.fileName, "offered.tif");
  EXPECT_EQ(dialog.filterIndex, 2);
}

}  // namespace
}  // namespace kw::test
