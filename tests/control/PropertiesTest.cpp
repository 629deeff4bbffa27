#include "support/EditorFixture.h"

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

TEST_F(Properties, EveryLetNotifiesTheContainer) {
  events.properties.clear();
  control->LetEnabled(true);
  control->LetMaxUndoLevels(9);
  control->LetIsToShowBackImage(true);
  control->LetAppDir(AppDir);
  EXPECT_EQ(events.properties, (Names{"Enabled", "MaxUndoLevels", "IsToShowBackImage", "AppDir"}));
}

TEST_F(Properties, AppDirIsThatOfTheThread) {
  KwEditorLayers second(desktop, events);
  second.LetAppDir(folder.File("other"));
  EXPECT_EQ(control->GetAppDir(), folder.File("other"));
}

using Persistence = EditorTest;

TEST_F(Persistence, AnEmptyBagGivesTheDefaults) {
  RecordedBag bag;
  control->UserControl_ReadProperties(bag);
  EXPECT_EQ(bag.read,
            (Names{"Enabled", "MaxUndoLevels", "IsToolboxVisible", "IsOpenButtonVisible", "IsSaveButtonEnabled",
                   "IsEditable", "AppDir", "IsToAllowChooseColor", "IsToSaveAsMultiPageFile", "IsToLightenBackImage"}));
  EXPECT_EQ(AppDir, "");
  AppDir = folder.Path();
  EXPECT_TRUE(control->GetEnabled());
  EXPECT_EQ(control->GetMaxUndoLevels(), 5);
  EXPECT_FALSE(Form().kwraTools.Visible());
  EXPECT_FALSE(control->GetIsOpenButtonVisible());
  EXPECT_TRUE(control->GetIsSaveButtonEnabled());
  EXPECT_TRUE(IsEnabled("Save"));
  EXPECT_TRUE(control->GetIsEditable());
  std::error_code ignored;
  std::filesystem::remove("FunctionsInExecution.txt", ignored);  // what was traced while AppDir was empty
}

TEST_F(Persistence, WritesInAnOrderOfItsOwn) {
  RecordedBag bag;
  control->UserControl_WriteProperties(bag);
  EXPECT_EQ(bag.written,
            (Names{"Enabled", "MaxUndoLevels", "IsToolboxVisible", "IsOpenButtonVisible", "IsToAllowChooseColor",
                   "IsSaveButtonEnabled", "IsEditable", "IsToSaveAsMultiPageFile", "AppDir", "IsToLightenBackImage"}));
}

TEST_F(Persistence, GoesThroughThePropertyProceduresButStoresAppDirDirectly) {
  RecordedBag bag;
  bag.values["AppDir"] = AppDir;
  ForgetTrace();
  control->UserControl_ReadProperties(bag);
  EXPECT_EQ(Trace(), (Names{"UserControl_ReadProperties", "Let Enabled", "Let MaxUndoLevels", "Let IsToolboxVisible",
                            "Get IsEditable", "Let IsOpenButtonVisible", "RedrawToolBars", "Let IsSaveButtonEnabled",
                            "Let IsSaveButtonEnabled", "Get IsToolboxVisible", "Let IsToolboxVisible", "Get IsEditable",
                            "Let IsToAllowChooseColor", "Let IsToSaveAsMultiPageFile", "Let IsToLightenBackImage",
                            "UpdateAndZoom"}));
}

TEST_F(Persistence, WhatWasWrittenIsReadBack) {
  control->LetEnabled(false);
  control->LetMaxUndoLevels(12);
  control->LetIsToolboxVisible(true);
  control->LetIsOpenButtonVisible(true);
  control->LetIsToAllowChooseColor(true);
  control->LetIsToSaveAsMultiPageFile(true);
  control->LetIsToLightenBackImage(true);
  RecordedBag bag;
  control->UserControl_WriteProperties(bag);
  KwEditorLayers second(desktop, events);
  second.UserControl_Initialize();
  second.UserControl_ReadProperties(bag);
  EXPECT_FALSE(second.GetEnabled());
  EXPECT_EQ(second.GetMaxUndoLevels(), 12);
  EXPECT_TRUE(second.GetIsToolboxVisible());
  EXPECT_TRUE(second.GetIsOpenButtonVisible());
  EXPECT_TRUE(second.GetIsToAllowChooseColor());
  EXPECT_TRUE(second.GetIsToSaveAsMultiPageFile());
  EXPECT_TRUE(second.GetIsToLightenBackImage());
  EXPECT_EQ(second.GetAppDir(), folder.Path());
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

TEST_F(Signature, GoesThroughTheScratchBitmapWhichIsDeleted) {
  control->LetSignatureFilePath(MakeImage("sign.bmp", 12, 7));
  EXPECT_EQ(control->SignatureImage().Width(), 12);
  EXPECT_EQ(control->SignatureImage().Height(), 7);
  EXPECT_FALSE(Exists(folder.File("tmp1234.bmp")));
}

TEST_F(Signature, MindsNoScratchBitmapThatIsGoneAlready) {
  desktop.pictureLoader = [load = desktop.pictureLoader](const std::string& path) {
    Bitmap picture = load(path);
    if (path.ends_with("tmp1234.bmp")) RemoveFileAt(path);
    return picture;
  };
  control->LetSignatureFilePath(MakeImage("sign.bmp", 12, 7));
  EXPECT_FALSE(Exists(folder.File("tmp1234.bmp")));
  EXPECT_EQ(control->SignatureImage().Width(), 12);
  EXPECT_TRUE(Form().tbrEditingTools.ButtonOf("Signature").enabled);
  EXPECT_TRUE(desktop.boxes.empty());
}

using Background = EditorTest;

TEST_F(Background, OfABlankPathOrABadFileClearsThePictureAndDisablesItsButton) {
  const std::string bad = folder.File("bad.tif");
  WriteWhole(bad, "II*");
  for (const std::string& path : {std::string(" "), bad, folder.File("missing.tif")}) {
    control->LetBGImage(MakeImage("back.bmp"));
    ASSERT_TRUE(IsEnabled("ShowHideBackImage"));
    control->LetBGImage(path);
    EXPECT_FALSE(Form().TransBackImage.HasPicture());
    EXPECT_FALSE(Form().TransBackImage.Visible());
    EXPECT_FALSE(IsEnabled("ShowHideBackImage"));
  }
  EXPECT_TRUE(desktop.boxes.empty());
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
