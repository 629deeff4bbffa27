#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

class SelectionMenu : public LayersTest {
protected:
  void ExpectToTrace(Menu& entry, const Names& names, const Names& prompts) {
    desktop.boxes.clear();
    ForgetTrace();
    entry.UserChoose();
    EXPECT_EQ(Trace(), names) << entry.Name();
    ASSERT_EQ(desktop.boxes.size(), prompts.size()) << entry.Name();
    for (std::size_t i = 0; i < prompts.size(); ++i) EXPECT_EQ(desktop.boxes[i].prompt, prompts[i]);
  }
};

TEST_F(SelectionMenu, ItsEntriesRunTheirCommandsUnderTheirTraceNames) {
  desktop.Expect("copy");
  desktop.Expect("cut");
  desktop.Expect("mnuPasteSelectedArea_Click");
  desktop.clipboardFormats = {8};
  Form().editor.UserPaint();
  ExpectToTrace(Form().mnuCopySelectedArea, {"ToolbarButtonClick"}, {"copy"});
  ExpectToTrace(Form().mnuCutSelectedArea, {"ToolbarButtonClick"}, {"cut"});
  ExpectToTrace(Form().mnuMergeDown, {"mnuMergeDown_Click"}, {});
  ExpectToTrace(Form().mnuPasteSelectedArea, {"mnuPasteSelectedArea_Click", "ToolbarButtonClick"},
                {"mnuPasteSelectedArea_Click"});
  ExpectToTrace(Form().mnuSelectAll, {"mnuSelectAll_Click"}, {});
}

TEST_F(SelectionMenu, TheWatchWritesBothPasteEntriesAtEachTick) {
  desktop.clipboardFormats = {8};
  ForgetTrace();
  ASSERT_TRUE(desktop.FireTimer(Form().tmrWatchClipBoard));
  EXPECT_EQ(Trace(), (Names{"tmrWatchClipBoard_Timer", "Get IsEditable"}));
  EXPECT_TRUE(IsEnabled("Paste"));
  EXPECT_TRUE(Form().mnuPasteSelectedArea.Enabled());
  BasicBar("Paste").SetButtonEnabled("Paste", false);
  desktop.FireTimer(Form().tmrWatchClipBoard);
  EXPECT_TRUE(IsEnabled("Paste")) << "written again although nothing changed";
  desktop.clipboardFormats = {};
  desktop.FireTimer(Form().tmrWatchClipBoard);
  EXPECT_FALSE(IsEnabled("Paste"));
  EXPECT_FALSE(Form().mnuPasteSelectedArea.Enabled());
}

}  // namespace
}  // namespace kw::test
