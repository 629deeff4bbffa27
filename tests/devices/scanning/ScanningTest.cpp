#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "components/controls/Scanner.h"
#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

using Names = std::vector<std::string>;

// The scanner as a test scripts it, and the calls that it got.
struct Script {
  int drivers = 0;
  Names calls;
  std::function<void()> onSelect;
  // The scan; true when an image lies on the clipboard.
  std::function<bool()> onAcquire;
};

class ScriptedScanner : public ScannerDriver {
public:
  explicit ScriptedScanner(Script& orders) : script(orders) { ++script.drivers; }

  void SelectSource() override {
    script.calls.emplace_back("select");
    if (script.onSelect) script.onSelect();
  }
  bool Acquire() override {
    script.calls.emplace_back("acquire");
    return script.onAcquire && script.onAcquire();
  }
  void CancelAcquisition() override { script.calls.emplace_back("cancel"); }

private:
  Script& script;
};

class Scanning : public EditorTest {
protected:
  Scanning() {
    desktop.scannerMaker = [this] { return std::make_unique<ScriptedScanner>(script); };
    control->OpenFile(MakeImage("scan.bmp"));
    desktop.boxes.clear();
    ForgetTrace();
  }
  void Command(const std::string& key) { Form().tbrMoreTools.ButtonClick.Raise(key); }
  // A scan that has an image.
  bool Deliver() {
    desktop.clipboardFormats.insert(ClipboardDib);
    return true;
  }

  Script script;
};

TEST_F(Scanning, SelectScannerSwitchesOnAndShowsTheSources) {
  EXPECT_FALSE(Form().KWScannerCtl1.IsSwitchedOn());
  Command("SelectScanner");
  EXPECT_TRUE(Form().KWScannerCtl1.IsSwitchedOn());
  EXPECT_EQ(script.calls, Names{"select"});
  EXPECT_EQ(Trace(), (Names{"tbrMoreTools_ButtonClick", "ToolbarButtonClick", "SelectScanner"}));
}

TEST_F(Scanning, TheChoiceOfASourceIsKeptByOneDriver) {
  Command("SelectScanner");
  Command("Acquire");
  Command("Acquire");
  EXPECT_EQ(script.drivers, 1);
  EXPECT_EQ(script.calls, (Names{"select", "acquire", "acquire"}));
}

TEST_F(Scanning, AnImageArrivesAsAPasteWould) {
  desktop.Expect("mnuPasteSelectedArea_Click");
  BasicBar("Paste").SetButtonEnabled("Paste", false);
  bool wasEnabled = true;
  bool wasVisible = false;
  script.onAcquire = [&] {
    wasVisible = Form().kwraScanningStatus.Visible();
    wasEnabled = IsEnabled("Paste");
    return Deliver();
  };
  desktop.whileBoxIsUp = [&](const ScriptedDesktop::Box&) {
    EXPECT_TRUE(IsEnabled("Paste")) << "its state is refreshed before the paste";
    EXPECT_TRUE(Form().kwraScanningStatus.Visible()) << "the panel goes last";
  };
  Command("Acquire");
  EXPECT_TRUE(wasVisible);
  EXPECT_FALSE(wasEnabled);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].prompt, "mnuPasteSelectedArea_Click");
  EXPECT_FALSE(Form().kwraScanningStatus.Visible());
  EXPECT_EQ(Trace(), (Names{"tbrMoreTools_ButtonClick", "ToolbarButtonClick", "Acquire", "tmrWatchClipBoard_Timer",
                            "Get IsEditable", "tbrBasicTools_ButtonClick", "ToolbarButtonClick"}));
}

TEST_F(Scanning, NoImagePastesNothingAndSaysNothing) {
  script.onAcquire = [] { return false; };
  Command("Acquire");
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_TRUE(events.errors.empty());
  EXPECT_FALSE(Form().kwraScanningStatus.Visible());
  EXPECT_EQ(script.calls, Names{"acquire"}) << "no second attempt";
}

TEST_F(Scanning, WithoutAnyScannerNothingHappens) {
  desktop.scannerMaker = {};
  Command("SelectScanner");
  Command("Acquire");
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_TRUE(events.errors.empty());
  EXPECT_FALSE(Form().kwraScanningStatus.Visible());
}

TEST_F(Scanning, AnErrorOfTheScannerIsReportedAndThePanelGoes) {
  desktop.Expect("Critical Error: Error Number : 57");
  desktop.Expect("mnuPasteSelectedArea_Click");
  script.onAcquire = []() -> bool { Raise(ErrorNumber::DeviceIoError); };
  Command("Acquire");
  EXPECT_EQ(events.errors, std::vector<int>{57});
  EXPECT_EQ(desktop.boxes.size(), 1U) << "the report alone";
  EXPECT_FALSE(Form().kwraScanningStatus.Visible());
  control->LetEnabled(true);
  script.onAcquire = [&] { return Deliver(); };
  desktop.boxes.clear();
  Command("Acquire");
  EXPECT_EQ(desktop.boxes.size(), 1U) << "the next scan works";
}

TEST_F(Scanning, AnErrorOfTheSourceDialogIsReported) {
  desktop.Expect("Critical Error: Error Number : 57");
  script.onSelect = [] { Raise(ErrorNumber::DeviceIoError); };
  Command("SelectScanner");
  EXPECT_EQ(events.errors, std::vector<int>{57});
}

TEST_F(Scanning, ThePanelGoesEvenIfAnErrorCannotBeReported) {
  desktop.Expect("Critical Error: Error Number : 57");
  script.onAcquire = [&]() -> bool {
    AppDir = folder.File("no such folder\\");
    Raise(ErrorNumber::DeviceIoError);
  };
  Command("Acquire");
  AppDir = folder.Path();
  EXPECT_FALSE(Form().kwraScanningStatus.Visible());
}

TEST_F(Scanning, CancelReachesTheScannerAndHidesThePanel) {
  script.onAcquire = [&] {
    ForgetTrace();
    Form().chkCancelScanning.UserToggle();
    EXPECT_FALSE(Form().kwraScanningStatus.Visible());
    EXPECT_FALSE(Form().chkCancelScanning.Value());
    EXPECT_EQ(Trace(), Names{"chkCancelScanning_Click"});
    return false;
  };
  Command("Acquire");
  EXPECT_EQ(script.calls, (Names{"acquire", "cancel"})) << "one click cancels once";
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Scanning, CancelWithoutAScanIsHarmless) {
  Form().chkCancelScanning.UserToggle();
  EXPECT_TRUE(script.calls.empty());
  EXPECT_FALSE(Form().chkCancelScanning.Value());
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Scanning, ASecondScanMeanwhileDoesNothing) {
  desktop.Expect("mnuPasteSelectedArea_Click");
  script.onAcquire = [&] {
    Command("Acquire");
    Command("SelectScanner");
    Form().KWScannerCtl1.SwitchOn(false);
    EXPECT_FALSE(Form().KWScannerCtl1.Acquire());
    EXPECT_TRUE(Form().kwraScanningStatus.Visible());
    return Deliver();
  };
  Command("Acquire");
  EXPECT_EQ(script.calls, Names{"acquire"});
  EXPECT_EQ(desktop.boxes.size(), 1U);
}

TEST_F(Scanning, ThePanelIsInTheMiddleAtAnySize) {
  RaisedArea& panel = Form().kwraScanningStatus;
  EXPECT_EQ(Form().lblScanningStatus.Caption(), "Scanning.. Please wait");
  EXPECT_TRUE(Form().chkCancelScanning.IsButton());
  float left = 0;
  float top = 0;
  script.onAcquire = [&] {
    left = panel.Left();
    top = panel.Top();
    return false;
  };
  for (const auto& [width, height] : {std::pair{860.0F, 640.0F}, std::pair{500.0F, 301.0F}, std::pair{100.0F, 50.0F}}) {
    Form().editor.UserResize(width, height);
    Command("Acquire");
    EXPECT_EQ(left, (width - panel.Width()) / 2);
    EXPECT_EQ(top, (height - panel.Height()) / 2);
  }
  EXPECT_EQ(script.calls.size(), 3U);
}

// A view that lacks memory to hide what it shows.
class UnhideableView final : public View {
public:
  explicit UnhideableView(Control& shown) : model(shown) { model.AttachView(this); }
  UnhideableView(const UnhideableView&) = delete;
  UnhideableView& operator=(const UnhideableView&) = delete;
  ~UnhideableView() override { model.DetachView(); }
  void Changed(Aspect aspect) override {
    if (aspect == Aspect::Visibility && !model.Visible()) throw std::bad_alloc();
  }

private:
  Control& model;
};

TEST_F(Scanning, APanelThatCannotBeHiddenIsReported) {
  desktop.Expect("Critical Error: Error Number : 7");
  {
    const UnhideableView view(Form().kwraScanningStatus);
    Command("Acquire");
  }
  ASSERT_EQ(events.errors.size(), 1U);
  EXPECT_EQ(events.errors[0], 7);
  EXPECT_FALSE(Form().kwraScanningStatus.Visible());
  control->LetEnabled(true);
  desktop.Expect("mnuPasteSelectedArea_Click");
  script.onAcquire = [&] { return Deliver(); };
  Command("Acquire");
  EXPECT_EQ(script.calls, (Names{"acquire", "acquire"}));
}

// What leaves the procedure does not end the process, either.
TEST_F(Scanning, APanelThatCannotBeHiddenWhenTheReportFailsIsLeft) {
  desktop.Allow("Critical Error");
  const UnhideableView view(Form().kwraScanningStatus);
  script.onAcquire = [&]() -> bool {
    AppDir = folder.File("none/");
    Raise(ErrorNumber::InternalError);
  };
  Command("Acquire");
  EXPECT_FALSE(Form().kwraScanningStatus.Visible());
  AppDir = folder.File("");
  control->LetEnabled(true);
  script.onAcquire = nullptr;
  Command("Acquire");
  EXPECT_EQ(script.calls, (Names{"acquire", "acquire"}));
}

}  // namespace
}  // namespace kw::test
