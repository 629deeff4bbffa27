#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class Persistence : public EditorTest {
protected:
  // Each property that is kept, but for IsEditable, which decides on others.
  void ChangeEverything() {
    control->LetEnabled(false);
    control->LetMaxUndoLevels(12);
    control->LetIsToolboxVisible(true);
    control->LetIsOpenButtonVisible(true);
    control->LetIsSaveButtonEnabled(false);
    control->LetIsToAllowChooseColor(true);
    control->LetIsToSaveAsMultiPageFile(true);
    control->LetIsToLightenBackImage(true);
  }
};

TEST_F(Persistence, AnEmptyBagGivesTheDefaults) {
  ChangeEverything();
  control->LetIsEditable(false);
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
  EXPECT_FALSE(control->GetIsToAllowChooseColor());
  EXPECT_FALSE(control->GetIsToSaveAsMultiPageFile());
  EXPECT_FALSE(control->GetIsToLightenBackImage());
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

TEST_F(Persistence, WritesWhatTheGetProceduresGive) {
  ForgetTrace();
  RecordedBag bag;
  control->UserControl_WriteProperties(bag);
  EXPECT_EQ(Trace(),
            (Names{"UserControl_WriteProperties", "Get Enabled", "Get MaxUndoLevels", "Get IsToolboxVisible",
                   "Get IsOpenButtonVisible", "Get IsToAllowChooseColor", "Get IsSaveButtonEnabled", "Get IsEditable",
                   "Get IsToSaveAsMultiPageFile", "Get AppDir", "Get IsToLightenBackImage"}));
}

TEST_F(Persistence, KnowsWhichPropertiesItKeeps) {
  using enum PropertyId;
  for (const PropertyId kept :
       {Enabled, MaxUndoLevels, IsToolboxVisible, IsOpenButtonVisible, IsToAllowChooseColor, IsSaveButtonEnabled,
        IsEditable, IsToSaveAsMultiPageFile, PropertyId::AppDir, IsToLightenBackImage})
    EXPECT_TRUE(KwEditorLayers::IsPersisted(kept)) << RowNameOf(kept);
  for (const PropertyId other : {IsFileChanged, IsToShowBackImage, SignatureFilePath, BGImage, PropertyId{0}})
    EXPECT_FALSE(KwEditorLayers::IsPersisted(other)) << RowNameOf(other);
}

// IsEditable comes after IsSaveButtonEnabled and enables every button.
TEST_F(Persistence, ReadingEnablesTheButtonsThatIsEditableSwitches) {
  RecordedBag bag;
  bag.values = {{"AppDir", AppDir}, {"IsSaveButtonEnabled", "0"}};
  for (const char* key : {"Save", "PrevPage", "ShowHideBackImage"}) BasicBar(key).SetButtonEnabled(key, false);
  control->UserControl_ReadProperties(bag);
  EXPECT_FALSE(control->GetIsSaveButtonEnabled());
  for (const char* key : {"Save", "PrevPage", "ShowHideBackImage"}) EXPECT_TRUE(IsEnabled(key)) << key;
  bag.values["IsEditable"] = "0";
  bag.values["IsSaveButtonEnabled"] = "1";
  control->UserControl_ReadProperties(bag);
  EXPECT_FALSE(IsEnabled("Save"));
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
  ChangeEverything();
  RecordedBag bag;
  control->UserControl_WriteProperties(bag);
  KwEditorLayers second(desktop, events);
  second.UserControl_Initialize();
  second.UserControl_ReadProperties(bag);
  EXPECT_FALSE(second.GetEnabled());
  EXPECT_EQ(second.GetMaxUndoLevels(), 12);
  EXPECT_TRUE(second.GetIsToolboxVisible());
  EXPECT_TRUE(second.GetIsOpenButtonVisible());
  EXPECT_FALSE(second.GetIsSaveButtonEnabled());
  EXPECT_TRUE(second.GetIsToAllowChooseColor());
  EXPECT_TRUE(second.GetIsToSaveAsMultiPageFile());
  EXPECT_TRUE(second.GetIsToLightenBackImage());
  EXPECT_EQ(second.GetAppDir(), folder.Path());
}

}  // namespace
}  // namespace kw::test
