// The commands through the real tool bars of a control in a container: found by their tool tips, pressed with the
// mouse, with the boxes and dialogs that come up answered.

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/activex/CommandFixture.h"
#include "tests/support/CommandScene.h"

namespace kw::test {
namespace {

class ToolBarCommands : public CommandTest {
protected:
  void RunAll(Way way);
};

void ToolBarCommands::RunAll(Way way) {
  // Tested elsewhere; the dialog of "SelectScanner" is the source manager's, which does not always have the host's
  // window as its owner.
  const Names apart{"PrinterSetup", "FontSettings", "Open", "Undo", "Redo", "SelectScanner"};
  int count = 0;
  for (const CommandCase& row : CommandCases()) {
    if (row.bar.empty() || std::ranges::find(apart, row.key) != apart.end()) continue;
    SCOPED_TRACE(row.key);
    ++count;
    SetScene();
    for (const CommandCase& other : CommandCases()) {
      if (other.key == row.insteadOf) Button(other.toolTip).Click();
    }
    const State before = Look();
    ASSERT_EQ(before.at("page"), "2");
    ASSERT_EQ(before.at(row.key), "on");
    Names boxes = Run(row.toolTip, {}, way);
    Names trace{row.bar + "_ButtonClick", "ToolbarButtonClick"};
    trace.insert(trace.end(), row.trace.begin(), row.trace.end());
    EXPECT_EQ(Trace(), trace);
    if (!row.dialog.empty() && !boxes.empty()) {
      EXPECT_EQ(boxes.back().substr(0, boxes.back().find(':')), row.dialog);
      boxes.pop_back();
    }
    Names expected;
    for (const CommandBox& box : row.boxes) expected.push_back(ShownAs(box));
    EXPECT_EQ(boxes, expected);
    EXPECT_EQ(Differences(Look(), After(row, before)), Names{});
    if (row.operations.empty()) continue;
    const Bitmap written = LoadPicture(ScratchBitmap());
    EXPECT_TRUE(SamePicture(written, AfterOperations(row.operations)));
  }
  EXPECT_EQ(count, 43);
}

TEST_F(ToolBarCommands, DoWhatTheirRowsSayWhenTheirButtonsAreClicked) { RunAll(&ToolBarButton::Click); }
TEST_F(ToolBarCommands, DoWhatTheirRowsSayWhenTheirButtonsCommandsArePosted) { RunAll(&ToolBarButton::Post); }

TEST_F(ToolBarCommands, OfADisabledButtonDoNotRun) {
  for (const char* toolTip : {"Undo", "Redo"}) {
    EXPECT_TRUE(Button(toolTip).IsShown());
    EXPECT_FALSE(Button(toolTip).IsEnabled());
    for (const Way way : {&ToolBarButton::Click, &ToolBarButton::Post}) {
      EXPECT_EQ(Run(toolTip, {}, way), Names{});
      EXPECT_EQ(Trace(), Names{});
    }
  }
  control->put_IsEditable(VARIANT_FALSE);
  for (const char* toolTip : {"Save File", "Clear", "Zoom In", "Next Page"}) {
    for (const Way way : {&ToolBarButton::Click, &ToolBarButton::Post}) {
      EXPECT_EQ(Run(toolTip, {}, way), Names{});
      EXPECT_EQ(Trace(), Names{});
    }
  }
}

}  // namespace
}  // namespace kw::test
