#include <algorithm>
#include <set>

#include "picture/Depth.h"
#include "picture/effects/Effect.h"
#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

using Box = ScriptedDesktop::Box;

class Commands : public EditorTest {
protected:
  // Runs a command on a key's own path: as a click on the bar that has it.
  void Click(const std::string& key) { Form().tbrMoreTools.ButtonClick.Raise(key); }
};

TEST_F(Commands, StandInTheRequiredOrderWithoutDoubles) {
  std::set<std::string_view> keys;
  for (const Dispatcher::Command& row : Dispatcher::Commands()) EXPECT_TRUE(keys.insert(row.key).second) << row.key;
  EXPECT_EQ(Dispatcher::Commands().front().key, "Save");
  EXPECT_EQ(Dispatcher::Commands().back().key, "Open");
}

TEST_F(Commands, PlaceholdersOnlyShowTheirBox) {
  desktop.Expect("Capture");
  desktop.Expect("clear");
  desktop.Expect("copy");
  desktop.Expect("cut");
  desktop.Expect("NoTools");
  desktop.Expect("mnuPasteSelectedArea_Click");
  desktop.Expect("redo");
  desktop.Expect("undo");
  const std::map<std::string, std::string> prompts{{"Clear", "clear"},     {"Cut", "cut"},
                                                   {"Copy", "copy"},       {"Undo", "undo"},
                                                   {"Redo", "redo"},       {"Paste", "mnuPasteSelectedArea_Click"},
                                                   {"Capture", "Capture"}, {"NoTools", "NoTools"}};
  for (const auto& [key, prompt] : prompts) {
    desktop.boxes.clear();
    Click(key);
    EXPECT_EQ(desktop.boxes, std::vector<Box>{(Box{prompt, "", MessageButtons::Ok})}) << key;
  }
}

TEST_F(Commands, AKeyInAnotherCaseOrUnknownIsNotImplemented) {
  desktop.Expect("' not implemented yet ...: ToolBar '", 3);
  for (const char* key : {"save", "", "Merge"}) {
    desktop.boxes.clear();
    Click(key);
    EXPECT_EQ(desktop.boxes,
              (std::vector<Box>{{"ToolBar '" + std::string(key), "' not implemented yet ...", MessageButtons::Ok}}));
  }
}

TEST_F(Commands, EveryBarTracesItsHandlerAndTheDispatcher) {
  desktop.Expect("clear", 7);
  const std::vector<std::pair<ToolBar*, std::string>> bars{{&Form().tbrBasicTools(0), "tbrBasicTools_ButtonClick"},
                                                           {&Form().tbrBasicTools(1), "tbrBasicTools_ButtonClick"},
                                                           {&Form().tbrEditingTools, "tbrEditingTools_ButtonClick"},
                                                           {&Form().tbrFillPattern, "tbrFillPattern_ButtonClick"},
                                                           {&Form().tbrFonts, "tbrFonts_ButtonClick"},
                                                           {&Form().tbrMoreTools, "tbrMoreTools_ButtonClick"},
                                                           {&Form().tbrOpenFile, "tbrOpenFile_ButtonClick"}};
  for (const auto& [bar, name] : bars) {
    ForgetTrace();
    bar->ButtonClick.Raise("Clear");
    EXPECT_EQ(Trace(), (Names{name, "ToolbarButtonClick"}));
  }
}

TEST_F(Commands, EngineCommandsRunInTheBracketOnceWithTheNotice) {
  desktop.Expect("DoPreCommandProcess", 4);
  control->OpenFile(MakeImage("scan.bmp", 30, 40));
  for (const char* key : {"Flip", "Invert", "Blur", "Rotate"}) {
    desktop.boxes.clear();
    ForgetTrace();
    Click(key);
    EXPECT_EQ(desktop.boxes, (std::vector<Box>{{"DoPreCommandProcess", "", MessageButtons::Ok}})) << key;
    const Names trace = Trace();
    EXPECT_EQ(std::count(trace.begin(), trace.end(), "DoPostCommandProcess"), 1) << key;
  }
  EXPECT_TRUE(events.errors.empty());
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default);
}

TEST_F(Commands, AResultLargerThanItsLayerGrowsTheLayer) {
  desktop.Expect("DoPreCommandProcess");
  control->OpenFile(MakeImage("scan.bmp", 30, 40));
  Click("Rotate");
  EXPECT_EQ(Form().TransLayers(1).Width(), 40);
  EXPECT_EQ(Form().TransLayers(1).Height(), 30);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 40);
  EXPECT_EQ(Form().BorderCorner.Left(), 40);
}

TEST_F(Commands, AnEngineCommandWithoutAPageIsReportedOnceAndClosesTheBracket) {
  desktop.Expect("DoPreCommandProcess");
  desktop.Expect("Critical Error: Error Number : 91");
  Click("Invert");
  EXPECT_EQ(events.errors, std::vector<int>{91});
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default);
}

TEST_F(Commands, DecreaseBppKeepsItsDepthOnTheLayer) {
  desktop.Expect("DoPreCommandProcess", 2);
  control->OpenFile(MakeImage("scan.bmp"));
  Click("DecreaseBpp");
  EXPECT_EQ(Form().TransLayers(1).Picture().BitsPerPixel(), 8);
  Click("IncreaseBpp");
  EXPECT_EQ(Form().TransLayers(1).Picture().BitsPerPixel(), 24);
}

// Lines on paper, of any depth.
Bitmap Lined(int bitsPerPixel) {
  Bitmap page(90, 50, bitsPerPixel);
  for (std::int32_t y = 0; y < page.Height(); ++y) {
    const auto row = page.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = static_cast<std::uint8_t>(y % 7 < 2 ? i * 31 : 0xFF);
  }
  return page;
}

TEST_F(Commands, AResultIsTheEffectsInTheDepthOfThePage) {
  desktop.Allow("");
  for (const int depth : {1, 8, 24}) {
    PictureDocument maker;
    maker.Replace(Lined(depth));
    const std::string path = folder.File("page" + std::to_string(depth) + ".bmp");
    maker.Save(path);
    for (const Effect& effect : Effects()) {
      const bool changesDepth = effect.command == "IncreaseBpp" || effect.command == "DecreaseBpp";
      if (HoldsSettings(effect) || changesDepth) continue;
      control->OpenFile(path);
      const Bitmap before = Form().TransLayers(1).Picture();
      Bitmap expected = before;
      ApplyEffect(effect, expected);
      Click(std::string(effect.command));
      const Bitmap& result = Form().TransLayers(1).Picture();
      EXPECT_TRUE(SamePicture(ToDepth(expected, depth), result)) << effect.command << " of " << depth << " bits";
      EXPECT_TRUE(result.SharesPixelsWith(control->Engine().Current())) << effect.command;
      EXPECT_TRUE(SamePicture(Lined(depth), before)) << effect.command << " of " << depth << " bits";
    }
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Commands, SignatureAlwaysLeavesNoFillPressed) {
  Form().tbrFillPattern.SetButtonPressed("FillInside", true);
  ForgetTrace();
  Click("Signature");
  EXPECT_TRUE(Form().tbrFillPattern.ButtonOf("NoFillInside").pressed);
  EXPECT_EQ(Trace(), (Names{"tbrMoreTools_ButtonClick", "ToolbarButtonClick", "tbrFillPattern_ButtonClick",
                            "ToolbarButtonClick"}));
}

TEST_F(Commands, StampOnlyPressesItsButton) {
  Click("Stamp");
  EXPECT_TRUE(Form().tbrEditingTools.ButtonOf("Stamp").pressed);
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Commands, EachToolHasItsCursor) {
  desktop.Expect("NoTools");
  control->OpenFile(MakeImage("scan.bmp"));
  control->LetIsToAllowChooseColor(true);
  control->LetSignatureFilePath(MakeImage("sign.bmp"));
  for (const char* key : {"Circle", "Image", "Line", "Rectangle", "Signature"}) {
    Form().tbrEditingTools.UserClick(key);
    EXPECT_EQ(Form().picCanvas.Pointer(), MousePointer::Cross) << key;
  }
  for (const char* key : {"Chooser", "Fill", "Pen", "Rubber", "Stamp", "Text"}) {
    Form().tbrEditingTools.UserClick(key);
    EXPECT_EQ(Form().picCanvas.Pointer(), MousePointer::Custom) << key;
    EXPECT_EQ(Form().picCanvas.PointerIcon(), std::string(key) + ".Ico");
  }
  Form().tbrEditingTools.UserClick("NoTools");
  EXPECT_EQ(Form().picCanvas.Pointer(), MousePointer::Default);
}

TEST_F(Commands, ShowHideToolsTogglesTheToolBox) {
  Click("ShowHideTools");
  EXPECT_FALSE(Form().kwraTools.Visible());
  Click("ShowHideTools");
  EXPECT_TRUE(Form().kwraTools.Visible());
}

TEST_F(Commands, FontSettingsLeavesADocumentAloneThatIsOpenedMeanwhile) {
  const std::string other = MakeImage("other.bmp");
  const float before = Form().TransLayers(1).TextFont().size;
  desktop.fontAnswers.emplace_back([&](Font& font) {
    font.size = before + 20;
    control->OpenFile(other);
  });
  Click("FontSettings");
  EXPECT_EQ(Form().TransLayers(1).TextFont().size, before);
}

TEST_F(Commands, FontSettingsSetsTheCurrentLayersFontAndACancelLeavesIt) {
  Font chosen;
  chosen.name = "Arial";
  chosen.size = 20;
  chosen.italic = true;
  desktop.fontAnswers.emplace_back([&](Font& font) {
    EXPECT_TRUE(font == Font());
    font = chosen;
  });
  Click("FontSettings");
  EXPECT_TRUE(control->LayerRoom().CurrentLayer().TextFont() == chosen);
  Click("FontSettings");
  EXPECT_TRUE(control->LayerRoom().CurrentLayer().TextFont() == chosen);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Commands, OpenAsksAgainUntilTheFileExists) {
  desktop.Expect("File Open Error: File does not exist..");
  const std::string path = MakeImage("scan.bmp");
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = folder.File("none.bmp"); });
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = path; });
  control->OpenFile(MakeImage("earlier.bmp"));
  desktop.boxes.clear();
  Click("Open");
  ASSERT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(desktop.boxes[0], (Box{"File does not exist..\r\nPlease select the filename again..", "File Open Error",
                                   MessageButtons::Ok}));
  EXPECT_EQ(control->OpenedDocument().FirstFilePath(), path);
  for (const OpenDialog& shown : desktop.openShown) {
    EXPECT_EQ(shown.filter,
              "All Supported Graphic Files (*.jpg, *.jpeg, *.bmp, *.tif, *.fmf, *.gif)|"
              "*.jpg; *.jpeg; *.bmp; *.tif; *.fmf; *.gif");
    EXPECT_EQ(shown.filterIndex, 2);
    EXPECT_TRUE(shown.isReadOnlyBoxHidden);
  }
  EXPECT_TRUE(Form().TransLayers(1).HasPicture());
}

TEST_F(Commands, OpenCancelledIsTheDialogsErrorInTheSharedHandlerAndTheTailSetsThePointer) {
  desktop.Expect("Critical Error: Error Number : 32755");
  const std::string path = MakeImage("scan.bmp");
  control->OpenFile(path);
  Form().tbrEditingTools.UserClick("Line");
  desktop.boxes.clear();
  ForgetTrace();
  Form().tbrOpenFile.SetVisible(true);
  Form().tbrOpenFile.UserClick("Open");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].title, "Critical Error");
  EXPECT_EQ(desktop.boxes[0].prompt.rfind("Error Number : 32755\r\nError Description : ", 0), 0U);
  EXPECT_EQ(events.errors, std::vector<int>{32755});
  EXPECT_EQ(events.errorTexts, Names{desktop.boxes[0].prompt});
  const Names trace = Trace();
  ASSERT_GT(trace.size(), 3U);
  EXPECT_EQ(trace[0], "tbrOpenFile_ButtonClick");
  EXPECT_EQ(trace[1], "ToolbarButtonClick");
  EXPECT_EQ(trace[2], "");
  EXPECT_EQ(trace[3], std::string(80, '*'));
  // The handler disables the control; the command's tail still gives the canvas the pointer of the tool.
  EXPECT_FALSE(Form().editor.Enabled());
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::NoDrop);
  EXPECT_EQ(Form().picFrame.Pointer(), MousePointer::NoDrop);
  EXPECT_EQ(Form().picCanvas.Pointer(), MousePointer::Cross);
  // The document stays, and cancelling again is not told a second time.
  EXPECT_EQ(control->OpenedDocument().FilePath(), path);
  EXPECT_TRUE(Form().TransLayers(1).HasPicture());
  Click("Open");
  EXPECT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(events.errors.size(), 1U);
}

TEST_F(Commands, OpenCancelledAfterANameThatDoesNotExistIsTheSameError) {
  desktop.Expect("File Open Error: File does not exist..");
  desktop.Expect("Critical Error: Error Number : 32755");
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = folder.File("none.bmp"); });
  Click("Open");
  EXPECT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(desktop.openShown.size(), 2U);
  EXPECT_EQ(events.errors, std::vector<int>{32755});
  EXPECT_EQ(control->OpenedDocument().FirstFilePath(), "");
}

TEST_F(Commands, OpenNamesTheFirstDocumentAlsoWhereOpeningItFails) {
  desktop.Expect("Critical Error: Error Number : 76");
  const std::string path = MakeImage("scan.bmp");
  control->OpenFile(MakeImage("earlier.bmp"));
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = path; });
  // Where nothing can be traced, the report of that leaves OpenFile.
  desktop.whileBoxIsUp = [&](const auto&) { AppDir = folder.File("missing\\"); };
  Click("Open");
  desktop.whileBoxIsUp = nullptr;
  AppDir = folder.Path();
  EXPECT_FALSE(Form().editor.Enabled());
  EXPECT_EQ(control->OpenedDocument().FirstFilePath(), path);
}

TEST_F(Commands, AReportThatFailsEndsTheCommand) {
  desktop.Expect("DoPreCommandProcess", 2);
  desktop.Expect("Critical Error: Error Number : 91", 2);
  desktop.Expect("Critical Error: Error Number : 7");
  desktop.Expect("Critical Error: Error Number : 32755");
  Form().tbrEditingTools.SetButtonPressed("Line", true);
  desktop.fontAnswers.emplace_back([](Font&) { Raise(ErrorNumber::OutOfMemory); });
  for (const char* key : {"Invert", "IncreaseBpp", "FontSettings", "Open"}) {
    control->LetEnabled(true);
    ForgetTrace();
    // The control is created without a page, and the open dialog is cancelled.
    desktop.whileBoxIsUp = [&](const auto& box) {
      if (box.title == "Critical Error") AppDir = folder.File("missing\\");
    };
    Click(key);
    AppDir = folder.Path();
    EXPECT_FALSE(Form().editor.Enabled()) << key;
    EXPECT_EQ(Form().picCanvas.Pointer(), MousePointer::NoDrop) << key;
    const Names trace = Trace();
    EXPECT_EQ(std::ranges::count(trace, "DoPostCommandProcess"), 0) << key;
  }
}

TEST_F(Commands, AFontThatIsNotInstalledIsKeptAsItsName) {
  Font unknown;
  unknown.name = "No Such Font";
  unknown.size = 30;
  for (int i = 0; i < 2; ++i) desktop.fontAnswers.emplace_back([&](Font& font) { font = unknown; });
  Click("FontSettings");
  Click("FontSettings");
  EXPECT_TRUE(desktop.fontsShown.at(1) == unknown);
  EXPECT_TRUE(control->LayerRoom().CurrentLayer().TextFont() == unknown);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Commands, AFontDialogThatFailsLeavesTheFontAndIsOver) {
  desktop.Expect("Critical Error: Error Number : 7");
  desktop.fontAnswers.emplace_back([&](Font& font) {
    font.name = "Half chosen";
    EXPECT_TRUE(control->CommandRoom().IsFontDialogUp());
    Raise(ErrorNumber::OutOfMemory);
  });
  Click("FontSettings");
  EXPECT_EQ(events.errors, std::vector<int>{7});
  EXPECT_TRUE(control->LayerRoom().CurrentLayer().TextFont() == Font());
  EXPECT_FALSE(control->CommandRoom().IsFontDialogUp());
}

TEST_F(Commands, APageBeyondTheSixteenBitsIsAnOverflowAndNoTurn) {
  desktop.Expect("File Error: Invalid file format..");
  desktop.Expect("Critical Error: Error Number : 6");
  control->OpenFile(MakeDocument("D.tif", 2));
  Form().PageIndex.SetMax(32767);
  Form().PageIndex.SetValue(32767);
  events.changedTo.clear();
  BasicBar("NextPage").ButtonClick.Raise("NextPage");
  EXPECT_EQ(events.errors, std::vector<int>{6});
  EXPECT_EQ(Form().PageIndex.Value(), 32767);
  EXPECT_TRUE(events.changedTo.empty());
}

TEST_F(Commands, PrintEndsThePrintersJob) {
  desktop.PrintPicture(Bitmap(1, 1, 1));
  Click("Print");
  EXPECT_EQ(desktop.printedJobs.size(), 1U);
  EXPECT_TRUE(desktop.openJob.empty());
}

}  // namespace
}  // namespace kw::test
