#include <algorithm>

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

const std::string WorkToDo =
    "Yet to implement : ReCreateUndoFileIndex\r\ntmrWatchClipBoard_Timer\r\nimgUndoBuffer(i).Picture = Nothing\r\n"
    "mnuSelectAll_Click\r\nmnuMergeDown_Click\r\nPrintImageOnSinglePage PicImgBuffer\r\nSavePage\r\n"
    "PicImgBuffer.DrawWidth = sldLineHeight.Value";
const ScriptedDesktop::Box FileError{"Invalid file format..", "File Error", MessageButtons::Ok};

std::string CaptionOf(int pages) { return "Page" + std::string(20, ' ') + "of " + std::to_string(pages); }

using OpenFile = EditorTest;

TEST_F(OpenFile, TracesEachProcedureInItsOrder) {
  const std::string path = MakeImage("scan.bmp");
  ForgetTrace();
  control->OpenFile(path);
  const Names expected{
      "OpenFile",           "UnloadLayerItems", "Let IsFileChanged",    "TransLayers_Change",
      "PageIndex_Change",   "UnloadLayerItems", "DoPostCommandProcess", "TransLayers_Change",  // its height
      "TransLayers_Change",                                                                    // its width
      "TransLayers_Change",                                                                    // its picture
      "UpdateAndZoom",      "picCanvas_Resize", "SetScrollBalValues",   "DoPostCommandProcess",
      "TransLayers_Change", "UpdateAndZoom",
  };
  EXPECT_EQ(Trace(), expected);
}

TEST_F(OpenFile, ShowsTheListOfPendingWorkFirstOnEveryCall) {
  const std::string path = MakeImage("scan.bmp");
  ForgetTrace();
  desktop.whileBoxIsUp = [&](const auto&) {
    EXPECT_EQ(control->OpenedDocument().FilePath(), "");
    EXPECT_TRUE(Trace().empty());
  };
  control->OpenFile(path);
  desktop.whileBoxIsUp = nullptr;
  control->OpenFile(path);
  EXPECT_EQ(desktop.boxes, (std::vector<ScriptedDesktop::Box>{{WorkToDo, "", MessageButtons::Ok},
                                                              {WorkToDo, "", MessageButtons::Ok}}));
}

TEST_F(OpenFile, OfOnePageShowsItWritesNoPageFileAndCountsOnePage) {
  control->OpenFile(MakeImage("scan.bmp", 30, 40));
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 30);
  EXPECT_EQ(Form().TransLayers(1).Width(), 30);
  EXPECT_EQ(Form().TransLayers(1).Height(), 40);
  EXPECT_EQ(Form().lblPageNo.Caption(), CaptionOf(1));
  EXPECT_EQ(Form().lblImageSize.Caption(), "Size: 30 x 40");
  EXPECT_TRUE(events.created.empty());
  EXPECT_EQ(events.changedTo, std::vector<int>{0});
  EXPECT_FALSE(Exists(folder.File("scan_Page_1.bmp")));
  EXPECT_FALSE(IsEnabled("PrevPage"));
  EXPECT_FALSE(IsEnabled("NextPage"));
  EXPECT_EQ(Form().cmbPageNo.ItemCount(), 1);
  EXPECT_EQ(Form().cmbPageNo.Text(), "1");
  EXPECT_TRUE(Form().kwraTools.Enabled());
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(OpenFile, OfThreePagesWritesThePageFilesLastToFirstAndShowsPageOne) {
  const std::string path = MakeDocument("D.tif", 3);
  const std::string before = ReadWhole(path);
  control->OpenFile(path);
  EXPECT_EQ(events.created, (std::vector<RecordedEvents::Page>{{folder.File("D_Page_3.tif"), 3, 3},
                                                               {folder.File("D_Page_2.tif"), 2, 3},
                                                               {folder.File("D_Page_1.tif"), 1, 3}}));
  for (int page = 1; page <= 3; ++page) {
    PictureDocument engine;
    ASSERT_TRUE(engine.Load(folder.File("D_Page_" + std::to_string(page) + ".tif")));
    EXPECT_EQ(engine.PageCount(), 1);
    EXPECT_EQ(engine.Width(), 10 * page);
  }
  EXPECT_EQ(Form().lblPageNo.Caption(), "Page                    of 3");
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
  EXPECT_EQ(events.changedTo, std::vector<int>{1});
  EXPECT_FALSE(IsEnabled("PrevPage"));
  EXPECT_TRUE(IsEnabled("NextPage"));
  EXPECT_EQ(ReadWhole(path), before);
}

TEST_F(OpenFile, OfAFirstPageFileProbesForTheOtherPagesUpToTheFirstGap) {
  for (const char* name : {"D_Page_1.tif", "D_Page_2.tif", "D_Page_4.tif"}) MakeDocument(name, 1);
  control->OpenFile(folder.File("D_Page_1.tif"));
  EXPECT_EQ(Form().PageIndex.Max(), 2);
  EXPECT_EQ(Form().lblPageNo.Caption(), CaptionOf(2));
  EXPECT_EQ(control->OpenedDocument().FilePath(), folder.File("D.tif"));
  EXPECT_EQ(control->OpenedDocument().CurrentPageNo(), 1);
  EXPECT_TRUE(events.created.empty());
  EXPECT_TRUE(Form().TransLayers(1).HasPicture());
}

TEST_F(OpenFile, NamesEveryLaterSplitAfterTheFirstDocumentOfTheControl) {
  control->OpenFile(MakeDocument("first.tif", 2));
  control->OpenFile(MakeDocument("second.tif", 3));
  EXPECT_EQ(events.created.back().path, folder.File("first_Page_1.tif"));
  EXPECT_FALSE(Exists(folder.File("second_Page_1.tif")));
  EXPECT_EQ(control->OpenedDocument().FirstFilePath(), folder.File("first.tif"));
  EXPECT_EQ(control->OpenedDocument().FilePath(), folder.File("first.tif"));
}

TEST_F(OpenFile, StartsTheDefaultToolsTimerAfresh) {
  desktop.FireTimer(Form().tmrDefaultToolsSelection);
  Form().tbrEditingTools.SetButtonPressed("Line", true);
  control->OpenFile(MakeImage("scan.bmp"));
  ASSERT_TRUE(desktop.FireTimer(Form().tmrDefaultToolsSelection));
  EXPECT_TRUE(Form().tbrEditingTools.ButtonOf("Text").pressed);
}

TEST_F(OpenFile, RestartsTheDefaultToolsTimerThatIsRunning) {
  ASSERT_TRUE(desktop.runningTimers.contains(&Form().tmrDefaultToolsSelection));
  const int starts = desktop.timerStarts["tmrDefaultToolsSelection"];
  control->OpenFile(MakeImage("scan.bmp"));
  EXPECT_EQ(desktop.timerStarts["tmrDefaultToolsSelection"], starts + 1);
  EXPECT_TRUE(desktop.runningTimers.contains(&Form().tmrDefaultToolsSelection));
}

TEST_F(OpenFile, KeepsTheDepthOfEachPage) {
  desktop.Expect("DoPreCommandProcess");
  const std::string path = folder.File("D.fmf");
  for (const int depth : {24, 8, 1}) {
    PictureDocument engine;
    engine.Replace(Bitmap(30, 20, depth));
    engine.Append(path);
  }
  control->OpenFile(path);
  EXPECT_EQ(Form().TransLayers(1).Picture().BitsPerPixel(), 24);
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(Form().TransLayers(1).Picture().BitsPerPixel(), 8);
  Form().PageIndex.SetValue(3);
  EXPECT_EQ(Form().TransLayers(1).Picture().BitsPerPixel(), 1);
  // Also for what a command makes of it.
  Form().tbrMoreTools.ButtonClick.Raise("Soften");
  EXPECT_EQ(Form().TransLayers(1).Picture().BitsPerPixel(), 1);
}

TEST_F(OpenFile, UnloadsFloatingLayersAndMarkersAndReturnsToThePageLayer) {
  control->OpenFile(MakeImage("scan.bmp"));
  Form().TransLayers.Load(2);
  Form().TransLayers.Load(3);
  Form().point1.Load(1);
  control->LayerRoom().SetCurrentLayer(3);
  control->OpenFile(MakeImage("scan.bmp"));
  EXPECT_EQ(Form().TransLayers.Count(), 2);
  EXPECT_EQ(Form().point1.Count(), 1);
  EXPECT_EQ(control->LayerRoom().CurrentLayerIndex(), 1);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(OpenFile, ResetsScrollingAndTheChangedState) {
  control->OpenFile(MakeImage("large.bmp", 2000, 2000));
  control->LetIsFileChanged(true);
  Form().vScroll.UserSetValue(100);
  Form().hScroll.UserSetValue(100);
  control->OpenFile(MakeImage("scan.bmp", 2000, 2000));
  EXPECT_EQ(Form().vScroll.Value(), 0);
  EXPECT_EQ(Form().picCanvas.Top(), 0);
  EXPECT_EQ(Form().picCanvas.Left(), 0);
  EXPECT_FALSE(control->m_IsFileChanged);
  EXPECT_FALSE(IsEnabled("Save"));
}

TEST_F(OpenFile, RecognisesTheFormatByContent) {
  const std::string path = MakeImage("scan.bmp");
  std::filesystem::rename(ToFilesystemPath(path), ToFilesystemPath(folder.File("scan.jpg")));
  control->OpenFile(folder.File("scan.jpg"));
  EXPECT_TRUE(Form().TransLayers(1).HasPicture());
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(OpenFile, TakesUnicodeAndLongPaths) {
  // One folder at a time: the library's create_directories does not end for a path with the long-path prefix.
  std::vector<std::string> made;
  std::string deep = folder.File(
      "Gr\xC3\xBC\xC3\x9F"
      "e \xE6\x96\x87\xE6\x9B\xB8");
  for (int i = 0; i < 6; ++i) {
    std::filesystem::create_directory(ToFilesystemPath(deep));
    made.push_back(deep);
    deep += "\\" + std::string(50, static_cast<char>('a' + i));
  }
  std::filesystem::create_directory(ToFilesystemPath(deep));
  made.push_back(deep);
  const std::string path = deep + "\\\xD1\x81\xD0\xBA\xD0\xB0\xD0\xBD.tif";
  WriteWhole(path, GreyTiff(2));
  control->OpenFile(path);
  ASSERT_EQ(events.created.size(), 2U);
  EXPECT_EQ(events.created[1].path, deep + "\\\xD1\x81\xD0\xBA\xD0\xB0\xD0\xBD_Page_1.tif");
  EXPECT_TRUE(Form().TransLayers(1).HasPicture());
  for (const char* page : {"", "_Page_1", "_Page_2"}) {
    RemoveFileAt(deep + "\\\xD1\x81\xD0\xBA\xD0\xB0\xD0\xBD" + page + ".tif");
  }
  std::reverse(made.begin(), made.end());
  for (const std::string& one : made) std::filesystem::remove(ToFilesystemPath(one));
}

using BadFile = EditorTest;

TEST_F(BadFile, OfEveryKindGivesTheFileErrorAndTheNextFileOpens) {
  desktop.Expect("File Error: Invalid file format..", 7);
  const std::string good = MakeImage("good.bmp");
  WriteWhole(folder.File("empty.tif"), "");
  WriteWhole(folder.File("text.tif"), "this is no image");
  WriteWhole(folder.File("cut.tif"), GreyTiff(3).substr(0, 60));
  WriteWhole(folder.File("cut.bmp"), ReadWhole(good).substr(0, 30));
  std::filesystem::create_directories(ToFilesystemPath(folder.File("folder.tif")));
  for (const char* name : {"missing.tif", "empty.tif", "text.tif", "cut.tif", "cut.bmp", "folder.tif", ""}) {
    desktop.boxes.clear();
    control->OpenFile(folder.File(name));
    ASSERT_EQ(desktop.boxes.size(), 2U) << name;
    EXPECT_EQ(desktop.boxes[1], FileError) << name;
    EXPECT_FALSE(control->GetIsEditable());
    EXPECT_FALSE(Form().TransLayers(1).HasPicture());
    EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default);
    control->LetIsEditable(true);
    control->OpenFile(good);
    EXPECT_TRUE(Form().TransLayers(1).HasPicture());
  }
  EXPECT_TRUE(events.errors.empty());
  EXPECT_TRUE(events.created.empty());
}

TEST_F(BadFile, OfSeveralPagesWhoseFirstCannotBeDecodedAsAPageFile) {
  desktop.Expect("File Error: Invalid file format..");
  WriteWhole(folder.File("D_Page_1.tif"), TiffWithoutFirstPage());
  control->OpenFile(folder.File("D_Page_1.tif"));
  EXPECT_EQ(desktop.boxes.back(), FileError);
  EXPECT_TRUE(events.errors.empty());
  EXPECT_TRUE(control->GetEnabled());
  EXPECT_FALSE(control->GetIsEditable());
  EXPECT_FALSE(Form().TransLayers(1).HasPicture());
}

TEST_F(BadFile, OfSeveralPagesWhoseFirstCannotBeDecodedWhenThePageIsTurned) {
  desktop.Expect("File Error: Invalid file format..");
  control->OpenFile(MakeDocument("D.tif", 2));
  WriteWhole(folder.File("D_Page_2.tif"), TiffWithoutFirstPage());
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(desktop.boxes.back(), FileError);
  EXPECT_TRUE(events.errors.empty());
  EXPECT_FALSE(control->GetIsEditable());
}

TEST_F(BadFile, APathWithoutADotReachesTheErrorTrapWhenPagesNeedNames) {
  desktop.Expect("Critical Error: Error Number : 5");
  desktop.Expect("File Error: Invalid file format..");
  const std::string path = folder.File("scan");
  if (path.find('.') != std::string::npos) GTEST_SKIP() << "the temporary folder has a dot in its name";
  WriteWhole(path, GreyTiff(2));
  control->OpenFile(path);
  EXPECT_EQ(events.errors, std::vector<int>{5});
  EXPECT_FALSE(Form().editor.Enabled());
  EXPECT_EQ(desktop.boxes.back(), FileError);
}

TEST_F(BadFile, AFolderThatCannotBeWrittenIsReportedOnceAndNoPageFileIsAnnounced) {
  desktop.Expect("Critical Error: Error Number : 75");
  desktop.Expect("File Error: Invalid file format..");
  std::filesystem::create_directories(ToFilesystemPath(folder.File("D_Page_2.tif")));
  std::filesystem::create_directories(ToFilesystemPath(folder.File("D_Page_1.tif")));
  control->OpenFile(MakeDocument("D.tif", 2));
  EXPECT_EQ(events.errors.size(), 1U);
  EXPECT_TRUE(events.created.empty());
}

TEST_F(BadFile, APageFileThatCannotBeWrittenIsReportedWithTheSystemsOwnCode) {
  desktop.Expect("File Error: Invalid file format..", 2);
  desktop.Expect("Critical Error: Error Number : 76");
  control->OpenFile(folder.File("missing\\first.tif"));
  control->OpenFile(MakeDocument("D.tif", 2));
  ASSERT_EQ(events.errors, std::vector<int>{76});
  EXPECT_NE(events.errorTexts[0].find("\r\nLastDllError : "), std::string::npos);
  EXPECT_EQ(events.errorTexts[0].find("\r\nLastDllError : 0\r\n"), std::string::npos);
}

using Paging = EditorTest;

TEST_F(Paging, ByTheButtonsStaysWithinTheDocument) {
  control->OpenFile(MakeDocument("D.tif", 3));
  events.changedTo.clear();
  ToolBar& bar = BasicBar("NextPage");
  bar.UserClick("NextPage");
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 20);
  EXPECT_TRUE(IsEnabled("PrevPage"));
  EXPECT_TRUE(IsEnabled("NextPage"));
  bar.UserClick("NextPage");
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 30);
  EXPECT_FALSE(IsEnabled("NextPage"));
  bar.UserClick("NextPage");
  bar.UserClick("PrevPage");
  EXPECT_EQ(events.changedTo, (std::vector<int>{2, 3, 2}));
  EXPECT_EQ(Form().cmbPageNo.Text(), "2");
  EXPECT_EQ(control->OpenedDocument().CurrentPageNo(), 2);
}

TEST_F(Paging, PastEitherEndDoesNothing) {
  control->OpenFile(MakeDocument("D.tif", 2));
  events.changedTo.clear();
  for (const int page : {0, -1, -32768}) Form().PageIndex.SetValue(page);
  BasicBar("PrevPage").ButtonClick.Raise("PrevPage");
  EXPECT_TRUE(events.changedTo.empty());
  for (const int page : {2, 3, 32767}) Form().PageIndex.SetValue(page);
  BasicBar("NextPage").ButtonClick.Raise("NextPage");
  EXPECT_EQ(events.changedTo, std::vector<int>{2});
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Paging, ByTheListChangesThePageAndTheSamePageAgainDoesNothing) {
  control->OpenFile(MakeDocument("D.tif", 3));
  events.changedTo.clear();
  ForgetTrace();
  Form().cmbPageNo.UserChoose(3);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 30);
  const Names trace = Trace();
  ASSERT_GT(trace.size(), 2U);
  EXPECT_EQ(trace[0], "cmbPageNo_Click");
  EXPECT_EQ(trace[1], "PageIndex_Change");
  ForgetTrace();
  Form().cmbPageNo.UserChoose(3);
  EXPECT_EQ(events.changedTo, std::vector<int>{3});
  EXPECT_EQ(Trace(), Names{"cmbPageNo_Click"});
}

TEST_F(Paging, TheOnlyPageChosenAgainDoesNothing) {
  control->OpenFile(MakeImage("scan.bmp"));
  events.changedTo.clear();
  Form().cmbPageNo.UserChoose(1);
  EXPECT_TRUE(events.changedTo.empty());
  EXPECT_EQ(desktop.boxes.size(), 1U);
}

TEST_F(Paging, AfterEditingShowsNoPrompt) {
  control->OpenFile(MakeDocument("D.tif", 2));
  control->LetIsSaveButtonEnabled(true);
  control->LetIsFileChanged(true);
  desktop.boxes.clear();
  BasicBar("NextPage").UserClick("NextPage");
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_EQ(control->OpenedDocument().CurrentPageNo(), 2);
}

TEST_F(Paging, DisablesUndoAndRedo) {
  control->OpenFile(MakeDocument("D.tif", 2));
  for (const char* key : {"Undo", "Redo"}) BasicBar(key).SetButtonEnabled(key, true);
  Form().PageIndex.SetValue(2);
  for (const char* key : {"Undo", "Redo"}) EXPECT_FALSE(IsEnabled(key)) << key;
}

TEST_F(Paging, ToAPageThatIsGoneKeepsTheNewPageNumberAndGivesTheFileError) {
  desktop.Expect("File Error: Invalid file format..");
  control->OpenFile(MakeDocument("D.tif", 3));
  RemoveFileAt(folder.File("D_Page_2.tif"));
  BasicBar("NextPage").UserClick("NextPage");
  EXPECT_EQ(desktop.boxes.back(), FileError);
  EXPECT_EQ(control->OpenedDocument().CurrentPageNo(), 2);
  EXPECT_EQ(Form().cmbPageNo.Text(), "2");
  EXPECT_FALSE(control->GetIsEditable());
}

TEST_F(Paging, DropsFloatingLayersAndRestoresTheView) {
  control->OpenFile(MakeDocument("D.tif", 2));
  Form().TransLayers.Load(2);
  control->LayerRoom().SetCurrentLayer(2);
  BasicBar("NextPage").UserClick("NextPage");
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  EXPECT_EQ(control->LayerRoom().CurrentLayerIndex(), 1);
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Paging, MayBeDoneFromTheEventOfAPageChange) {
  control->OpenFile(MakeDocument("D.tif", 3));
  events.onPageChanged = [&] {
    events.onPageChanged = nullptr;
    Form().PageIndex.SetValue(3);
  };
  BasicBar("NextPage").UserClick("NextPage");
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 30);
  EXPECT_TRUE(events.errors.empty());
}

}  // namespace
}  // namespace kw::test
