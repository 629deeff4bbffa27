// A user scans with the buttons of the tool bar.

#include "tests/activex/InputFixture.h"
#include "tests/activex/OtherProgram.h"
#include "tests/support/programs/twain/TestScanner.h"
#include "tests/support/programs/twain/TestSheet.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/Soon.h"

namespace kw::test {
namespace {

class InputScan : public InputTest {
protected:
  void SetUp() override {
    OtherProgram::LeaveOnTheClipboard(L"empty");
    InputTest::SetUp();
    ForgetTrace();
  }
  // Clicks the button and answers what comes up.
  std::vector<std::string> BoxesOf(const std::wstring& toolTip) {
    const ToolBarButton button = ButtonOf(toolTip);
    EXPECT_TRUE(button.IsFound() && button.IsEnabled());
    const BoxAnswerer user({AnyBox()});
    hand.ClickAt(button.Middle());
    EXPECT_TRUE(hand.Await([&] { return HasTraced("tbrBasicTools_ButtonClick"); }));
    hand.Pump();
    return user.Boxes();
  }

  TestScanner source;
};

TEST_F(InputScan, TheImageComesFromTheButtonOverTheClipboardToThePasteBox) {
  TestScanner::Order("DEPTH", "1");
  ASSERT_FALSE(ButtonOf(L"Paste").IsEnabled());
  EXPECT_EQ(BoxesOf(L"Acquire Image from Scanner"),
            std::vector<std::string>{"test_activex: mnuPasteSelectedArea_Click"});
  EXPECT_EQ(TestScanner::Trace().substr(0, 2), "OE") << "opened and enabled";
  EXPECT_EQ(BytesOnTheClipboard(), TestSheet(1, 1));
  EXPECT_TRUE(ButtonOf(L"Paste").IsEnabled());
  EXPECT_TRUE(HasTraced("Acquire"));
}

TEST_F(InputScan, TheSourceIsChosenInTheDialogOfTheSourceManager) {
  const std::vector<std::string> boxes = BoxesOf(L"Scanner Setup");
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_TRUE(boxes[0].starts_with("Select Source: ")) << boxes[0];
  EXPECT_TRUE(HasTraced("SelectScanner"));
  EXPECT_FALSE(HasTraced("Acquire"));
}

TEST_F(InputScan, AScanThatFailsShowsNothing) {
  TestScanner::Order("FAILS", "transfer");
  EXPECT_EQ(BoxesOf(L"Acquire Image from Scanner"), std::vector<std::string>{});
  EXPECT_TRUE(BytesOnTheClipboard().empty());
  EXPECT_FALSE(ButtonOf(L"Paste").IsEnabled());
}

TEST_F(InputScan, TheButtonsAreOffWhileTheControlIsNotEditable) {
  control->put_IsEditable(VARIANT_FALSE);
  for (const wchar_t* toolTip : {L"Scanner Setup", L"Acquire Image from Scanner"}) {
    EXPECT_FALSE(ButtonOf(toolTip).IsEnabled());
    hand.ClickAt(ButtonOf(toolTip).Middle());
  }
  hand.Pump();
  EXPECT_FALSE(HasTraced("tbrBasicTools_ButtonClick"));
  EXPECT_EQ(TestScanner::Trace(), "");
}

// The host runs no command by its number while a scan is under way, which waits here until the user cancels it.
TEST_F(InputScan, AVerbIsRefusedMeanwhile) {
  TestScanner::Order("FAILS", "silent");
  HRESULT answer = S_OK;
  const Soon later([&] {
    answer = container.DoVerb(4);
    for (const HWND button : ChildWindows(editor, L"Button")) {
      if (IsWindowVisible(button) != FALSE) PostMessageW(button, BM_CLICK, 0, 0);
    }
  });
  EXPECT_EQ(BoxesOf(L"Acquire Image from Scanner"), std::vector<std::string>{});
  EXPECT_EQ(answer, OLEOBJ_S_CANNOT_DOVERB_NOW);
  EXPECT_TRUE(BytesOnTheClipboard().empty());
}

}  // namespace
}  // namespace kw::test
