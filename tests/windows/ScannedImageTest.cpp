// The control takes an image from the test source through the system's own source manager, as it does for a user.

#include "tests/windows/WholeEditor.h"

#include <gtest/gtest.h>

#include "components/controls/Timer.h"
#include "tests/support/programs/twain/TestScanner.h"
#include "tests/support/programs/twain/TestSheet.h"

namespace kw::test {
namespace {

class ScannedImage : public WholeEditor {
protected:
  ScannedImage() {
    SavePicture(Bitmap(300, 400, 24), folder.File("page.bmp"));
    control->OpenFile(folder.File("page.bmp"));
    TestForm::Pump();
    desktop.boxes.clear();
    EmptyTheClipboard();
  }
  void Acquire() { Form().tbrBasicTools(0).ButtonClick.Raise("Acquire"); }
  // The panel's window stands in the middle of the control's one.
  void ExpectCentred() const {
    const RECT panel = PlaceOf(WindowOf(control->Form().kwraScanningStatus));
    RECT whole = {};
    GetClientRect(window->Handle(), &whole);
    EXPECT_NEAR(panel.left, whole.right - panel.right, 1);
    EXPECT_NEAR(panel.top, whole.bottom - panel.bottom, 1);
    EXPECT_TRUE(ShowsText(control->Form().lblScanningStatus, WindowOf(control->Form().kwraScanningStatus)));
  }

  TestScanner source;
};

TEST_F(ScannedImage, ComesFromTheSourceOverTheClipboardToThePasteCommand) {
  desktop.Expect("mnuPasteSelectedArea_Click");
  TestScanner::Order("DEPTH", "1");
  BarOf(Form().tbrBasicTools, "Paste").SetButtonEnabled("Paste", false);
  Acquire();
  EXPECT_EQ(Form().lblScanningStatus.Caption(), "Scanning.. Please wait");
  EXPECT_EQ(desktop.boxes, std::vector<std::string>{"mnuPasteSelectedArea_Click"});
  EXPECT_EQ(BytesOnTheClipboard(), TestSheet(1, 1));
  EXPECT_TRUE(BarOf(Form().tbrBasicTools, "Paste").ButtonOf("Paste").enabled);
  EXPECT_FALSE(Form().kwraScanningStatus.Visible());
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(ScannedImage, IsWaitedForUntilTheUserCancelsOnThePanel) {
  TestScanner::Order("FAILS", "silent");
  for (const auto& [width, height] : {std::pair{860, 640}, std::pair{520, 400}}) {
    Resize(width, height);
    bool wasVisible = false;
    Timer timer("user", desktop);
    timer.Tick.Connect([&] {
      timer.SetEnabled(false);
      wasVisible = Form().kwraScanningStatus.Visible();
      ExpectCentred();
      PostMessageW(WindowOf(Form().chkCancelScanning), BM_CLICK, 0, 0);
    });
    timer.SetInterval(300);
    timer.SetEnabled(true);
    TestScanner::Trace();
    Acquire();
    EXPECT_TRUE(wasVisible);
    EXPECT_EQ(TestScanner::Trace(), "OEDC");
    EXPECT_FALSE(Form().kwraScanningStatus.Visible());
    EXPECT_FALSE(Form().chkCancelScanning.Value());
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_TRUE(BytesOnTheClipboard().empty());
  }
}

TEST_F(ScannedImage, IsMissedSilentlyWhereTheSourceFails) {
  for (const char* step : {"open", "enable", "transfer", "user cancels", "user closes"}) {
    TestScanner::Order("FAILS", step);
    Acquire();
    EXPECT_TRUE(desktop.boxes.empty()) << step;
    EXPECT_TRUE(events.errors.empty()) << step;
    EXPECT_FALSE(Form().kwraScanningStatus.Visible()) << step;
    EXPECT_TRUE(Form().editor.Enabled());
  }
}

TEST_F(ScannedImage, DoesNotKeepAControlThatIsClosedMeanwhile) {
  TestScanner::Order("FAILS", "silent");
  Timer timer("host", desktop);
  timer.Tick.Connect([&] {
    timer.SetEnabled(false);
    window.reset();
    DestroyWindow(host);
  });
  timer.SetInterval(200);
  timer.SetEnabled(true);
  Acquire();
  EXPECT_EQ(TestScanner::Trace(), "OEDC");
  EXPECT_TRUE(desktop.boxes.empty());
}

}  // namespace
}  // namespace kw::test
