// A control whose container designs the form on which it lies.

#include <filesystem>
#include <functional>
#include <set>

#include "document/PageFiles.h"
#include "tests/support/EditorFixture.h"
#include "tests/support/FormLook.h"

namespace kw::test {
namespace {

const Names LoadingOrder = {"Let Enabled",
                            "Let MaxUndoLevels",
                            "Let IsToolboxVisible",
                            "Get IsEditable",
                            "Let IsOpenButtonVisible",
                            "RedrawToolBars",
                            "Let IsSaveButtonEnabled",
                            "Let IsSaveButtonEnabled",
                            "Get IsToolboxVisible",
                            "Let IsToolboxVisible",
                            "Get IsEditable",
                            "Let IsToAllowChooseColor",
                            "Let IsToSaveAsMultiPageFile",
                            "Let IsToLightenBackImage",
                            "UpdateAndZoom"};

// Counts how often the editor looks at the clipboard.
class WatchedDesktop : public ScriptedDesktop {
public:
  int looks = 0;

  bool ClipboardHasFormat(std::int32_t format) override {
    ++looks;
    return ScriptedDesktop::ClipboardHasFormat(format);
  }
};

// A control in design mode that has not been initialised, and one of the same thread that is at work.
class DesignMode : public EditorTest {
protected:
  DesignMode() : control(std::make_unique<KwEditorLayers>(designer, told)) {
    ForgetTrace();
    control->BeginDesign();
  }

  template <class Type>
  Type Kept(PropertyId property, Type present) {
    return std::get<Type>(control->Designed(property, present));
  }
  // Without a kept value the answer is wrong.
  bool IsKept(PropertyId property, bool value) { return Kept(property, !value) == value; }
  void Run() {
    control->EndDesign();
    control->UserControl_Initialize();
    control->LetDesigned();
  }
  std::set<std::string> FilesButTheTrace() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
      if (entry.path().filename() != "FunctionsInExecution.txt") names.insert(entry.path().filename().string());
    }
    return names;
  }

  WatchedDesktop designer;
  RecordedEvents told;
  std::unique_ptr<KwEditorLayers> control;
};

TEST_F(DesignMode, LeavesEverythingAlone) {
  designer.clipboardFormats = {ClipboardDib};
  int numbers = 0;
  designer.onProcessNumber = [&] { ++numbers; };
  control->Design(PropertyId::IsEditable, false);
  control->Design(PropertyId::SignatureFilePath, MakeImage("sign.bmp"));
  control->Design(PropertyId::BGImage, MakeImage("back.bmp"));
  control->Root().UserResize(700, 500);
  control->Root().UserPaint();
  EXPECT_TRUE(Trace().empty()) << Trace().front();
  EXPECT_TRUE(designer.runningTimers.empty());
  EXPECT_TRUE(designer.timerStarts.empty());
  EXPECT_EQ(designer.looks, 0);
  EXPECT_EQ(numbers, 0) << "it went for the scratch bitmap";
  EXPECT_TRUE(designer.boxes.empty());
  EXPECT_EQ(FilesButTheTrace(), (std::set<std::string>{"back.bmp", "sign.bmp"}));
  control.reset();
  EXPECT_TRUE(Trace().empty()) << Trace().front();
}

TEST_F(DesignMode, LooksAsAfterStartUp) { EXPECT_EQ(LookOf(control->Form()), LookOf(Form())); }

TEST_F(DesignMode, ShowsTheValuesThatItIsGiven) {
  EditorForm& form = control->Form();
  control->Design(PropertyId::IsOpenButtonVisible, true);
  EXPECT_TRUE(form.tbrOpenFile.Visible());
  control->Design(PropertyId::IsToolboxVisible, false);
  EXPECT_FALSE(form.kwraTools.Visible());
  control->Design(PropertyId::IsToolboxVisible, true);
  control->Design(PropertyId::IsEditable, false);
  EXPECT_FALSE(form.kwraTools.Visible());
  EXPECT_FALSE(BarOf(form.tbrBasicTools, "Save").ButtonOf("Save").enabled);
  control->Design(PropertyId::IsEditable, true);
  EXPECT_TRUE(form.kwraTools.Visible()) << "the value was kept";
  control->Design(PropertyId::IsToAllowChooseColor, false);
  EXPECT_FALSE(form.tbrEditingTools.ButtonOf("Chooser").enabled);
}

// The tool box is hidden while the page cannot be edited, but its value is a value of its own.
TEST_F(DesignMode, KeepsValuesWhateverTheirOrder) {
  control->Design(PropertyId::IsEditable, false);
  control->Design(PropertyId::IsToolboxVisible, true);
  EXPECT_TRUE(IsKept(PropertyId::IsToolboxVisible, true));
  EXPECT_TRUE(IsKept(PropertyId::IsEditable, false));
  control->Design(PropertyId::MaxUndoLevels, std::int16_t{3});
  EXPECT_EQ(Kept(PropertyId::MaxUndoLevels, std::int16_t{0}), 5);
  control->Design(PropertyId::MaxUndoLevels, std::int16_t{40});
  EXPECT_EQ(Kept(PropertyId::MaxUndoLevels, std::int16_t{0}), 40);
  EXPECT_EQ(told.properties, (Names{"IsEditable", "IsToolboxVisible", "MaxUndoLevels", "MaxUndoLevels"}))
      << "each is told once";
}

TEST_F(DesignMode, LeavesTheFolderToTheThread) {
  control->Design(PropertyId::AppDir, folder.File("elsewhere\\"));
  EXPECT_EQ(AppDir, folder.Path());
  EXPECT_EQ(Kept(PropertyId::AppDir, std::string()), folder.File("elsewhere\\"));
  RecordedBag bag;
  bag.values["AppDir"] = folder.File("loaded\\");
  control->UserControl_ReadProperties(bag);
  EXPECT_EQ(AppDir, folder.Path());
  EXPECT_EQ(Kept(PropertyId::AppDir, std::string()), folder.File("loaded\\"));
  EditorTest::control->SavePage();
  EXPECT_EQ(Trace(), Names{"SavePage"});
}

TEST_F(DesignMode, PersistsWhatANewControlHas) {
  RecordedBag now;
  control->UserControl_WriteProperties(now);
  RecordedBag then;
  EditorTest::control->UserControl_WriteProperties(then);
  EXPECT_EQ(now.values, then.values);
  EXPECT_EQ(now.written, then.written);
}

TEST_F(DesignMode, LoadsAndSavesTheTenValues) {
  RecordedBag bag;
  bag.values = {{"Enabled", "0"},
                {"MaxUndoLevels", "23"},
                {"IsToolboxVisible", "1"},
                {"IsOpenButtonVisible", "1"},
                {"IsSaveButtonEnabled", "0"},
                {"IsEditable", "0"},
                {"AppDir", folder.File("elsewhere\\")},
                {"IsToAllowChooseColor", "1"},
                {"IsToSaveAsMultiPageFile", "1"},
                {"IsToLightenBackImage", "1"}};
  control->UserControl_ReadProperties(bag);
  EXPECT_TRUE(control->Form().tbrOpenFile.Visible());
  RecordedBag saved;
  control->UserControl_WriteProperties(saved);
  EXPECT_EQ(saved.values, bag.values);
  EXPECT_EQ(told.properties.size(), 10U);
  EXPECT_TRUE(Trace().empty());
}

TEST_F(DesignMode, AnEmptyBagGivesTheDefaults) {
  RecordedBag bag;
  control->UserControl_ReadProperties(bag);
  EXPECT_FALSE(control->Form().kwraTools.Visible());
  RecordedBag saved;
  control->UserControl_WriteProperties(saved);
  EXPECT_TRUE(saved.values.empty());
  EXPECT_EQ(saved.written.size(), 10U);
}

class BrokenBag final : public RecordedBag {
public:
  std::int16_t ReadInteger(const std::string& /*key*/, std::int16_t /*otherwise*/) override {
    Raise(ErrorNumber::TypeMismatch);
  }
};

TEST_F(DesignMode, AValueOfNoUseIsLeftOutWithoutAReport) {
  BrokenBag bag;
  bag.values["IsOpenButtonVisible"] = "1";
  control->UserControl_ReadProperties(bag);
  EXPECT_EQ(Kept(PropertyId::MaxUndoLevels, std::int16_t{5}), 5);
  EXPECT_TRUE(IsKept(PropertyId::IsOpenButtonVisible, true));
  EXPECT_TRUE(designer.boxes.empty());
  EXPECT_TRUE(told.errors.empty());
  EXPECT_TRUE(control->GetEnabled());
}

TEST_F(DesignMode, RunTimeBeginsWithStartUpAndTheValuesInTheOrderOfLoading) {
  RecordedBag bag;
  bag.values["AppDir"] = folder.Path();
  control->UserControl_ReadProperties(bag);
  Run();
  const Names trace = Trace();
  ASSERT_GT(trace.size(), LoadingOrder.size());
  EXPECT_EQ(trace[3], "UserControl_Initialize");
  EXPECT_EQ(Names(trace.end() - std::ssize(LoadingOrder), trace.end()), LoadingOrder);
  // The start-up itself is that of every control.
  const Names startUp(trace.begin(), trace.end() - std::ssize(LoadingOrder));
  ForgetTrace();
  KwEditorLayers usual(desktop, events);
  usual.UserControl_Initialize();
  EXPECT_EQ(startUp, Trace());
}

TEST_F(DesignMode, OnlyWhatWasGivenIsAssignedAtRunTime) {
  control->Design(PropertyId::IsFileChanged, true);
  control->Design(PropertyId::IsToLightenBackImage, true);
  control->Design(PropertyId::BGImage, std::string());
  control->Design(PropertyId::IsOpenButtonVisible, true);
  Run();
  const Names trace = Trace();
  const Names expected = {"Let IsOpenButtonVisible", "RedrawToolBars",    "Let IsToLightenBackImage",
                          "UpdateAndZoom",           "Let IsFileChanged", "Let BackGroundImage"};
  ASSERT_GT(trace.size(), expected.size());
  EXPECT_EQ(Names(trace.end() - std::ssize(expected), trace.end()), expected);
  ForgetTrace();
  control->LetDesigned();
  EXPECT_TRUE(Trace().empty()) << "once";
}

TEST_F(DesignMode, RunTimeHasTheVariablesValue) {
  control->Design(PropertyId::IsFileChanged, false);
  control->m_IsFileChanged = true;
  Run();
  EXPECT_TRUE(control->GetIsFileChanged());
}

// Whatever the values were in between.
TEST_F(DesignMode, RunTimeIsThatOfAControlThatWasLoaded) {
  control->Design(PropertyId::Enabled, false);
  control->Design(PropertyId::IsEditable, false);
  control->Design(PropertyId::IsSaveButtonEnabled, false);
  control->Design(PropertyId::IsToAllowChooseColor, false);
  control->Design(PropertyId::IsToLightenBackImage, true);
  RecordedBag bag;
  bag.values = {{"AppDir", folder.Path()}, {"IsToolboxVisible", "1"}, {"IsOpenButtonVisible", "1"}};
  control->UserControl_ReadProperties(bag);
  Run();
  KwEditorLayers usual(desktop, events);
  usual.UserControl_Initialize();
  usual.UserControl_ReadProperties(bag);
  EXPECT_EQ(NewLines(LookOf(usual.Form()), LookOf(control->Form())), Lines());
  EXPECT_EQ(NewLines(LookOf(control->Form()), LookOf(usual.Form())), Lines());
  EXPECT_EQ(designer.runningTimers.size(), 2U);
  EXPECT_EQ(designer.timerStarts,
            (std::map<std::string, int>{{"tmrWatchClipBoard", 1}, {"tmrDefaultToolsSelection", 1}}));
}

TEST_F(DesignMode, PicturesAreLoadedAtRunTime) {
  control->Design(PropertyId::BGImage, MakeImage("back.bmp"));
  control->Design(PropertyId::SignatureFilePath, MakeImage("sign.bmp"));
  EXPECT_FALSE(control->Form().TransBackImage.HasPicture());
  Run();
  EXPECT_TRUE(control->Form().TransBackImage.HasPicture());
  EXPECT_TRUE(BarOf(control->Form().tbrBasicTools, "ShowHideBackImage").ButtonOf("ShowHideBackImage").enabled);
}

TEST_F(DesignMode, RunTimeMayBeginInsideANotification) {
  bool isFirst = true;
  told.onEvent = [&](const std::string&) {
    if (std::exchange(isFirst, false)) Run();
  };
  control->Design(PropertyId::IsOpenButtonVisible, true);
  EXPECT_FALSE(control->IsDesigned());
  EXPECT_TRUE(control->GetIsOpenButtonVisible());
}

// A control that is at work when its container begins to design.
class DesignAtWork : public EditorTest {};

TEST_F(DesignAtWork, TimersAndTraceRestUntilRunTime) {
  ASSERT_EQ(desktop.runningTimers.size(), 2U);
  ForgetTrace();
  control->BeginDesign();
  EXPECT_TRUE(desktop.runningTimers.empty());
  Form().tmrDefaultToolsSelection.Fire();  // its message waited
  Form().tmrMoveLayer.SetInterval(50);
  Form().tmrMoveLayer.SetEnabled(true);
  EXPECT_TRUE(desktop.runningTimers.empty());
  control->Design(PropertyId::MaxUndoLevels, std::int16_t{9});
  Form().editor.UserPaint();
  EXPECT_TRUE(Trace().empty()) << Trace().front();
  Form().tmrMoveLayer.SetEnabled(false);
  control->EndDesign();
  control->LetDesigned();
  EXPECT_EQ(desktop.runningTimers.size(), 2U);
  EXPECT_EQ(Trace(), Names{"Let MaxUndoLevels"});
  EXPECT_TRUE(desktop.FireTimer(Form().tmrDefaultToolsSelection));
  EXPECT_TRUE(Form().tbrEditingTools.ButtonOf("Text").pressed);
}

TEST_F(DesignAtWork, KeepsItsPage) {
  control->OpenFile(MakeDocument("D.tif", 2));
  control->BeginDesign();
  control->Design(PropertyId::IsEditable, false);
  control->Design(PropertyId::IsEditable, true);
  control->EndDesign();
  control->LetDesigned();
  EXPECT_TRUE(control->LayerRoom().HasPage());
  EXPECT_EQ(control->OpenedDocument().CurrentPageNo(), 1);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(DesignAtWork, AnErrorIsNotReported) {
  desktop.Expect("File Error: Invalid file format..");
  control->BeginDesign();
  std::filesystem::remove_all(folder.Native());
  control->SavePage();
  control->OpenFile(folder.File("missing.tif"));
  EXPECT_TRUE(control->GetEnabled());
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(DesignAtWork, ShutDownRemovesItsFilesInSilence) {
  control->OpenFile(MakeDocument("D.tif", 1));
  const std::string scratch = GetTempImagePath(desktop);
  ASSERT_TRUE(Exists(scratch));
  ForgetTrace();
  control->BeginDesign();
  control->UserControl_Terminate();
  EXPECT_FALSE(Exists(scratch));
  EXPECT_TRUE(Trace().empty());
}

}  // namespace
}  // namespace kw::test
