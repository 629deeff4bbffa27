#include <algorithm>
#include <thread>

#include "tests/support/EditorFixture.h"
#include "tests/support/Errors.h"

namespace kw::test {
namespace {

using Properties = EditorTest;

TEST_F(Properties, MaxUndoLevelsIsAtLeastFive) {
  for (const auto& [given, stored] :
       std::map<int, int>{{3, 5}, {5, 5}, {0, 5}, {-3, 5}, {6, 6}, {50, 50}, {32767, 32767}}) {
    control->LetMaxUndoLevels(static_cast<std::int16_t>(given));
    EXPECT_EQ(control->GetMaxUndoLevels(), stored);
  }
}

TEST_F(Properties, ToolboxStaysHiddenWhileNotEditable) {
  control->LetIsEditable(false);
  EXPECT_FALSE(control->GetIsToolboxVisible());
  control->LetIsToolboxVisible(true);
  EXPECT_FALSE(Form().kwraTools.Visible());
  control->LetIsEditable(true);
  control->LetIsToolboxVisible(true);
  EXPECT_TRUE(Form().kwraTools.Visible());
}

TEST_F(Properties, IsFileChangedEnablesSaveExactlyWhenTrue) {
  control->LetIsFileChanged(true);
  EXPECT_TRUE(IsEnabled("Save"));
  EXPECT_TRUE(control->m_IsFileChanged);
  control->LetIsFileChanged(false);
  EXPECT_FALSE(IsEnabled("Save"));
}

TEST_F(Properties, TheMemberBehindIsFileChangedHasNoSideEffect) {
  control->LetIsFileChanged(false);
  control->m_IsFileChanged = true;
  EXPECT_FALSE(IsEnabled("Save"));
  EXPECT_TRUE(control->GetIsFileChanged());
}

TEST_F(Properties, IsEditableSwitchesEveryButtonButUndoAndRedoTheCanvasAndTheViewport) {
  for (const bool value : {false, true}) {
    control->LetIsEditable(value);
    for (const char* key : {"Save", "Print", "PrinterSetup", "Clear", "Cut", "Copy", "Paste", "ZoomIn", "ZoomOut",
                            "ShowHideTools", "ShowHideBackImage", "PrevPage", "NextPage"}) {
      EXPECT_EQ(IsEnabled(key), value) << key;
    }
    EXPECT_FALSE(IsEnabled("Undo"));
    EXPECT_FALSE(IsEnabled("Redo"));
    EXPECT_EQ(Form().picCanvas.Enabled(), value);
    EXPECT_EQ(Form().picFrame.Enabled(), value);
  }
}

TEST_F(Properties, IsEditableAndThePageSwitchTheViewportAndTheLastOneDecides) {
  EXPECT_TRUE(Form().picFrame.Enabled()) << "without a page";
  control->LetIsEditable(false);
  control->OpenFile(MakeImage("scan.bmp"));
  EXPECT_TRUE(Form().picFrame.Enabled());
  EXPECT_FALSE(Form().picCanvas.Enabled());
}

TEST_F(Properties, IsToAllowChooseColorSwitchesItsFrameAndTwoTools) {
  for (const bool value : {false, true}) {
    control->LetIsToAllowChooseColor(value);
    EXPECT_EQ(control->GetIsToAllowChooseColor(), value);
    EXPECT_EQ(Form().kwraChooseColorTool.Enabled(), value);
    EXPECT_EQ(Form().tbrEditingTools.ButtonOf("Chooser").enabled, value);
    EXPECT_EQ(Form().tbrEditingTools.ButtonOf("Fill").enabled, value);
  }
}

TEST_F(Properties, EveryPropertyTracesItsOwnNameButTwoThatTraceANeighbours) {
  struct Case {
    Names expected;
    std::function<void()> call;
  };
  KwEditorLayers& c = *control;
  const std::vector<Case> cases{
      {{"Get Enabled"}, [&] { c.GetEnabled(); }},
      {{"Let Enabled"}, [&] { c.LetEnabled(true); }},
      {{"Get IsToShowBackImage"}, [&] { c.GetIsToShowBackImage(); }},
      {{"Let IsToolboxVisible", "UpdateAndZoom"}, [&] { c.LetIsToShowBackImage(true); }},
      {{"Get IsFileChanged"}, [&] { c.GetIsFileChanged(); }},
      {{"Let IsFileChanged"}, [&] { c.LetIsFileChanged(true); }},
      {{"Get IsToLightenBackImage"}, [&] { c.GetIsToLightenBackImage(); }},
      {{"Let IsToLightenBackImage", "UpdateAndZoom"}, [&] { c.LetIsToLightenBackImage(true); }},
      {{"Get IsToolboxVisible"}, [&] { c.GetIsToolboxVisible(); }},
      {{"Let IsToolboxVisible", "Get IsEditable"}, [&] { c.LetIsToolboxVisible(true); }},
      {{"Let SignatureFilePath"}, [&] { c.LetSignatureFilePath(""); }},
      {{"Let BackGroundImage"}, [&] { c.LetBGImage(""); }},
      {{"Get IsOpenButtonVisible"}, [&] { c.GetIsOpenButtonVisible(); }},
      {{"Let IsOpenButtonVisible", "RedrawToolBars"}, [&] { c.LetIsOpenButtonVisible(true); }},
      {{"Get IsToSaveAsMultiPageFile"}, [&] { c.GetIsToSaveAsMultiPageFile(); }},
      {{"Let IsToSaveAsMultiPageFile"}, [&] { c.LetIsToSaveAsMultiPageFile(true); }},
      {{"Get IsToAllowChooseColor"}, [&] { c.GetIsToAllowChooseColor(); }},
      {{"Let IsToAllowChooseColor"}, [&] { c.LetIsToAllowChooseColor(true); }},
      {{"Get MaxUndoLevels"}, [&] { c.GetMaxUndoLevels(); }},
      {{"Let MaxUndoLevels"}, [&] { c.LetMaxUndoLevels(7); }},
      {{"Get IsEditable"}, [&] { c.GetIsEditable(); }},
      {{"Let IsSaveButtonEnabled", "Get IsToolboxVisible", "Let IsToolboxVisible", "Get IsEditable"},
       [&] { c.LetIsEditable(true); }},
      {{"Get IsSaveButtonEnabled"}, [&] { c.GetIsSaveButtonEnabled(); }},
      {{"Let IsSaveButtonEnabled"}, [&] { c.LetIsSaveButtonEnabled(true); }},
      {{"Get AppDir"}, [&] { c.GetAppDir(); }},
      {{"Let AppDir"}, [&] { c.LetAppDir(AppDir); }},
      {{"SavePage"}, [&] { c.SavePage(); }},
  };
  for (const Case& one : cases) {
    ForgetTrace();
    one.call();
    EXPECT_EQ(Trace(), one.expected);
  }
}

TEST_F(Properties, EveryLetNotifiesTheContainerOnceItHasTakenEffect) {
  struct Case {
    std::string name;
    std::function<void()> let;
    std::function<bool()> isInEffect;
  };
  KwEditorLayers& c = *control;
  EditorForm& form = Form();
  const std::string picture = MakeImage("picture.bmp");
  const auto isRebuilt = [&] { return std::ranges::count(Trace(), "UpdateAndZoom") == 1; };
  c.LetIsToLightenBackImage(false);
  c.LetIsSaveButtonEnabled(false);
  const std::vector<Case> cases{
      {"MaxUndoLevels", [&] { c.LetMaxUndoLevels(9); }, [&] { return c.GetMaxUndoLevels() == 9; }},
      {"BGImage", [&] { c.LetBGImage(picture); },
       [&] { return isRebuilt() && form.TransBackImage.HasPicture() && IsEnabled("ShowHideBackImage"); }},
      {"IsToShowBackImage", [&] { c.LetIsToShowBackImage(true); },
       [&] { return isRebuilt() && form.TransBackImage.Visible() && c.GetIsToShowBackImage(); }},
      {"IsToLightenBackImage", [&] { c.LetIsToLightenBackImage(true); },
       [&] { return isRebuilt() && form.TransBackImage.IsLightened() && c.GetIsToLightenBackImage(); }},
      {"SignatureFilePath", [&] { c.LetSignatureFilePath(picture); },
       [&] { return form.tbrEditingTools.ButtonOf("Signature").enabled && !c.SignatureImage().IsEmpty(); }},
      {"IsFileChanged", [&] { c.LetIsFileChanged(true); }, [&] { return IsEnabled("Save") && c.m_IsFileChanged; }},
      {"IsSaveButtonEnabled", [&] { c.LetIsSaveButtonEnabled(false); },
       [&] { return !IsEnabled("Save") && !c.GetIsSaveButtonEnabled(); }},
      {"IsOpenButtonVisible", [&] { c.LetIsOpenButtonVisible(true); },
       [&] { return form.tbrOpenFile.Visible() && form.tbrBasicTools(0).Left() > form.tbrOpenFile.Left(); }},
      {"IsToSaveAsMultiPageFile", [&] { c.LetIsToSaveAsMultiPageFile(true); },
       [&] { return c.GetIsToSaveAsMultiPageFile(); }},
      {"IsToAllowChooseColor", [&] { c.LetIsToAllowChooseColor(false); },
       [&] { return !form.kwraChooseColorTool.Enabled() && !form.tbrEditingTools.ButtonOf("Fill").enabled; }},
      {"IsToolboxVisible", [&] { c.LetIsToolboxVisible(false); }, [&] { return !form.kwraTools.Visible(); }},
      {"IsEditable", [&] { c.LetIsEditable(false); },
       [&] { return !form.picFrame.Enabled() && events.properties.size() == 2; }},  // the tool box came before
      {"Enabled", [&] { c.LetEnabled(false); }, [&] { return !form.editor.Enabled(); }},
      {"AppDir", [&] { c.LetAppDir(folder.File("other")); }, [&] { return AppDir == folder.File("other"); }},
  };
  for (const Case& one : cases) {
    bool isInEffect = false;
    events.properties.clear();
    ForgetTrace();
    events.onEvent = [&](const std::string&) { isInEffect = one.isInEffect(); };
    one.let();
    events.onEvent = nullptr;
    EXPECT_TRUE(isInEffect) << one.name;
    EXPECT_EQ(std::ranges::count(events.properties, one.name), 1) << one.name;
    EXPECT_TRUE(!events.properties.empty() && events.properties.back() == one.name) << one.name;
  }
}

TEST_F(Properties, AppDirIsThatOfTheThread) {
  KwEditorLayers second(desktop, events);
  second.LetAppDir(folder.File("other"));
  EXPECT_EQ(control->GetAppDir(), folder.File("other"));
  std::string first = "not asked";
  std::string own;
  std::thread([&] {
    first = AppDir;
    AppDir = folder.Path();
    ScriptedDesktop otherDesktop;
    RecordedEvents otherEvents;
    KwEditorLayers other(otherDesktop, otherEvents);
    other.LetAppDir(folder.File("elsewhere"));
    own = other.GetAppDir();
  }).join();
  EXPECT_EQ(first, "");
  EXPECT_EQ(own, folder.File("elsewhere"));
  EXPECT_EQ(control->GetAppDir(), folder.File("other"));
}

using Signature = EditorTest;

TEST_F(Signature, OfABlankPathDisablesItsTool) {
  control->LetSignatureFilePath(MakeImage("sign.bmp"));
  ASSERT_TRUE(Form().tbrEditingTools.ButtonOf("Signature").enabled);
  control->LetSignatureFilePath("   ");
  EXPECT_FALSE(Form().tbrEditingTools.ButtonOf("Signature").enabled);
  EXPECT_TRUE(control->SignatureImage().IsEmpty());
}

TEST_F(Signature, OfAFileThatIsNoImageOnlyDisablesItsTool) {
  const std::string path = folder.File("sign.bmp");
  WriteWhole(path, "no image");
  control->LetSignatureFilePath(path);
  control->LetSignatureFilePath(folder.File("missing.bmp"));
  EXPECT_FALSE(Form().tbrEditingTools.ButtonOf("Signature").enabled);
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Signature, OfSeveralPagesWhoseFirstCannotBeDecodedOnlyDisablesItsTool) {
  const std::string path = folder.File("sign.tif");
  WriteWhole(path, TiffWithoutFirstPage());
  control->LetSignatureFilePath(MakeImage("former.bmp"));
  control->LetSignatureFilePath(path);
  EXPECT_FALSE(Form().tbrEditingTools.ButtonOf("Signature").enabled);
  EXPECT_TRUE(control->SignatureImage().IsEmpty());
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Signature, GoesThroughTheScratchBitmapWhichIsDeleted) {
  control->LetSignatureFilePath(MakeImage("sign.bmp", 12, 7));
  EXPECT_EQ(control->SignatureImage().Width(), 12);
  EXPECT_EQ(control->SignatureImage().Height(), 7);
  EXPECT_FALSE(Exists(folder.File("tmp1234.bmp")));
}

TEST_F(Signature, WhoseScratchBitmapIsGoneIsAnErrorAndIsTaken) {
  desktop.Expect("Critical Error: Error Number : 53");
  // While it is there, it is asked for to look at it and to remove it.
  desktop.onProcessNumber = [this, asked = 0]() mutable {
    const std::string scratch = folder.File("tmp1234.bmp");
    if (Exists(scratch) && ++asked == 2) RemoveFileAt(scratch);
  };
  control->LetSignatureFilePath(MakeImage("sign.bmp", 12, 7));
  EXPECT_EQ(events.errors, std::vector<int>{53});
  EXPECT_EQ(control->SignatureImage().Width(), 12);
  EXPECT_TRUE(Form().tbrEditingTools.ButtonOf("Signature").enabled);
}

TEST_F(Signature, ThatCannotBeWrittenToTheScratchBitmapIsNone) {
  desktop.Expect("Critical Error: Error Number : 75");
  control->LetSignatureFilePath(MakeImage("former.bmp"));
  std::filesystem::create_directory(ToFilesystemPath(folder.File("tmp1234.bmp")));
  control->LetSignatureFilePath(MakeImage("sign.bmp"));
  EXPECT_EQ(events.errors.size(), 1U);
  EXPECT_TRUE(control->SignatureImage().IsEmpty());
  EXPECT_FALSE(Form().tbrEditingTools.ButtonOf("Signature").enabled);
}

TEST_F(Signature, WhoseErrorCannotBeReportedLeavesTheCall) {
  desktop.Expect("Critical Error: Error Number : 75");
  control->LetSignatureFilePath(MakeImage("former.bmp", 12, 7));
  std::filesystem::create_directory(ToFilesystemPath(folder.File("tmp1234.bmp")));
  events.properties.clear();
  desktop.whileBoxIsUp = [&](const auto&) { AppDir = folder.File("missing\\"); };
  EXPECT_EQ(ErrorOf([&] { control->LetSignatureFilePath(MakeImage("sign.bmp")); }), 76);
  EXPECT_EQ(desktop.boxes.size(), 1U);
  EXPECT_TRUE(events.properties.empty());
  EXPECT_EQ(control->SignatureImage().Width(), 12);
}

using Background = EditorTest;

TEST_F(Background, OfABlankPathOrABadFileClearsThePictureAndDisablesItsButton) {
  const std::string bad = folder.File("bad.tif");
  WriteWhole(bad, "II*");
  const std::string unreadable = folder.File("unreadable.tif");
  WriteWhole(unreadable, TiffWithoutFirstPage());
  for (const std::string& path : {std::string(" "), bad, unreadable, folder.File("missing.tif")}) {
    control->LetBGImage(MakeImage("back.bmp"));
    ASSERT_TRUE(IsEnabled("ShowHideBackImage"));
    control->LetBGImage(path);
    EXPECT_FALSE(Form().TransBackImage.HasPicture());
    EXPECT_FALSE(Form().TransBackImage.Visible());
    EXPECT_FALSE(IsEnabled("ShowHideBackImage"));
  }
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Background, ThatCannotBeWrittenToTheScratchBitmapLeavesTheFormerOne) {
  desktop.Expect("Critical Error: Error Number : 75");
  control->LetIsToShowBackImage(true);
  control->LetBGImage(MakeImage("former.bmp", 30, 20));
  std::filesystem::remove(ToFilesystemPath(folder.File("tmp1234.bmp")));
  std::filesystem::create_directory(ToFilesystemPath(folder.File("tmp1234.bmp")));
  control->LetBGImage(MakeImage("back.bmp", 50, 40));
  EXPECT_EQ(events.errors.size(), 1U);
  EXPECT_EQ(Form().TransBackImage.Picture().Width(), 30);
  EXPECT_EQ(Form().TransBackImage.Width(), 30);
  EXPECT_TRUE(Form().TransBackImage.Visible());
  EXPECT_TRUE(IsEnabled("ShowHideBackImage"));
}

TEST_F(Background, IsLightenedAsItsPropertySays) {
  const std::string path = MakeImage("back.bmp");
  ForgetTrace();
  control->LetBGImage(path);
  const Names trace = Trace();
  ASSERT_GE(trace.size(), 3U);
  EXPECT_EQ(Names(trace.begin(), trace.begin() + 3),
            (Names{"Let BackGroundImage", "Get IsToLightenBackImage", "UpdateAndZoom"}));
}

TEST_F(Background, ThatIsTakenAwayLeavesTheCanvasAsItIsUntilTheNextRebuild) {
  control->LetIsToShowBackImage(true);
  control->LetBGImage(MakeImage("back.bmp", 500, 300));
  ForgetTrace();
  control->LetBGImage("");
  EXPECT_EQ(Trace(), Names{"Let BackGroundImage"});
  EXPECT_EQ(Form().picCanvas.Width(), 502);
  control->ZoomRoom().UpdateAndZoom();
  EXPECT_LT(Form().picCanvas.Width(), 502);
}

TEST_F(Background, IsShownWhileIsToShowBackImageIsTrueAndLightenedOnDemand) {
  control->LetIsToLightenBackImage(true);
  control->LetBGImage(MakeImage("back.bmp", 500, 300));
  EXPECT_FALSE(Form().TransBackImage.Visible());
  EXPECT_TRUE(Form().TransBackImage.IsLightened());
  control->LetIsToShowBackImage(true);
  EXPECT_TRUE(Form().TransBackImage.Visible());
  EXPECT_EQ(Form().picCanvas.Width(), 502);
  EXPECT_EQ(Form().BorderCorner.Left(), 500);
  EXPECT_EQ(Form().BorderCorner.Top(), 300);
}

}  // namespace
}  // namespace kw::test
