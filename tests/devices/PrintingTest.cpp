#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "components/Files.h"
#include "support/EditorFixture.h"

namespace kw::test {
namespace {

using Captions = std::vector<std::string>;
using SheetWidths = std::vector<int>;

class Printing : public EditorTest {
protected:
  // Opens a document of so many pages, page p 10 p wide and of the grey value p.
  void Open(int pages) {
    path = MakeDocument("scan.tif", pages);
    control->OpenFile(path);
    desktop.boxes.clear();
    desktop.onDoEvents = [this] {
      const std::string caption = Form().lblPrintingStatus.Caption();
      if (Form().kwraPrintingStatus.Visible() && !caption.empty() && (captions.empty() || captions.back() != caption)) {
        captions.push_back(caption);
      }
      if (whileWaiting) whileWaiting();
    };
  }
  // What the user chooses in the next printer dialog.
  void Choose(std::int32_t from, std::int32_t to) {
    desktop.printerAnswers.emplace_back([=](PrinterDialog& dialog) {
      dialog.fromPage = from;
      dialog.toPage = to;
    });
  }
  void Print() { BasicBar("PrinterSetup").UserClick("PrinterSetup"); }
  void Print(std::int32_t from, std::int32_t to) {
    Choose(from, to);
    Print();
  }
  // The widths of the pictures on the sheets of the one job that was ended; 0 for a blank sheet.
  std::vector<int> Sheets() {
    std::vector<int> widths;
    EXPECT_EQ(desktop.printedJobs.size(), 1U);
    if (desktop.printedJobs.empty()) return widths;
    for (const Bitmap& sheet : desktop.printedJobs.back()) widths.push_back(sheet.Width());
    return widths;
  }
  void ExpectOver() {
    EXPECT_FALSE(Form().kwraPrintingStatus.Visible());
    EXPECT_TRUE(desktop.openJob.empty());
    EXPECT_EQ(desktop.endsOfJob, 1);
  }

  std::string path;
  Captions captions;
  std::function<void()> whileWaiting;
};

TEST_F(Printing, OffersEveryPageOnce) {
  Open(5);
  Print();
  ASSERT_EQ(desktop.printersShown.size(), 1U);
  const PrinterDialog& shown = desktop.printersShown[0];
  EXPECT_EQ(shown.firstPage, 1);
  EXPECT_EQ(shown.lastPage, 5);
  EXPECT_EQ(shown.fromPage, 1);
  EXPECT_EQ(shown.toPage, 5);
  EXPECT_EQ(shown.copies, 1);
}

TEST_F(Printing, ACancelledDialogPrintsNothing) {
  Open(5);
  bool wasShown = false;
  whileWaiting = [&] { wasShown = true; };
  Print();
  EXPECT_FALSE(wasShown);
  EXPECT_FALSE(Form().kwraPrintingStatus.Visible());
  EXPECT_EQ(desktop.endsOfJob, 0);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Printing, ARangeThatIsNotGreaterThanZeroEndsTheCommand) {
  Open(5);
  Print(0, 3);
  Print(1, 0);
  Print(-1, 2);
  EXPECT_TRUE(captions.empty());
  EXPECT_EQ(desktop.endsOfJob, 0);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Printing, PrintsTheWholeDocumentInOrder) {
  Open(5);
  Print(1, 5);
  EXPECT_EQ(Sheets(), (SheetWidths{10, 20, 30, 40, 50}));
  EXPECT_EQ(desktop.newPrinterPages, 4);
  ExpectOver();
}

TEST_F(Printing, PagesTwoToFourCountFromOneToThree) {
  Open(5);
  Print(2, 4);
  EXPECT_EQ(captions, (Captions{"Printing page 1 of 3", "Printing page 2 of 3", "Printing page 3 of 3"}));
  EXPECT_EQ(Sheets(), (SheetWidths{20, 30, 40}));
  ExpectOver();
}

TEST_F(Printing, OnePageAsksForNoNewPage) {
  Open(5);
  Print(3, 3);
  EXPECT_EQ(Sheets(), SheetWidths{30});
  EXPECT_EQ(desktop.newPrinterPages, 0);
  ExpectOver();
}

TEST_F(Printing, ARangeThatRunsBackwardsPrintsNothing) {
  Open(5);
  Print(4, 2);
  EXPECT_TRUE(desktop.printedJobs.empty());
  ExpectOver();
}

TEST_F(Printing, CancellingDuringPageThreeOfFiveLeavesTheTwoBefore) {
  Open(5);
  whileWaiting = [&] {
    if (Form().lblPrintingStatus.Caption() == "Printing page 3 of 5") Form().chkCancelPrinting.UserToggle();
  };
  Print(1, 5);
  const std::vector<int> sheets = Sheets();
  ASSERT_GE(sheets.size(), 2U);
  EXPECT_EQ((SheetWidths{sheets[0], sheets[1]}), (SheetWidths{10, 20}));
  EXPECT_EQ(captions.back(), "Printing page 3 of 5");
  EXPECT_LE(desktop.newPrinterPages, 2);
  EXPECT_FALSE(Form().chkCancelPrinting.Value());
  ExpectOver();
}

TEST_F(Printing, CancellingWhilePageTwoIsRenderedKeepsItOffThePaper) {
  Open(5);
  int pauses = 0;
  whileWaiting = [&] {
    if (Form().lblPrintingStatus.Caption() == "Printing page 2 of 5" && ++pauses == 2) {
      Form().chkCancelPrinting.UserToggle();
    }
  };
  Print(1, 5);
  EXPECT_EQ(desktop.printedJobs[0][0].Width(), 10);
  EXPECT_EQ(desktop.newPrinterPages, 1);
  EXPECT_TRUE(desktop.printedJobs[0].size() == 1 || desktop.printedJobs[0][1].IsEmpty());
  EXPECT_EQ(pauses, 2);
  ExpectOver();
}

TEST_F(Printing, TheCancelBoxTracesItsNameAndComesUpAgain) {
  ForgetTrace();
  Form().chkCancelPrinting.UserToggle();
  EXPECT_FALSE(Form().chkCancelPrinting.Value());
  for (const std::string& name : Trace()) EXPECT_EQ(name, "chkCancel_Click");
  EXPECT_FALSE(Trace().empty());
}

TEST_F(Printing, ShowsItsPanelInTheMiddleAtAnySize) {
  Open(2);
  RaisedArea& panel = Form().kwraPrintingStatus;
  for (const auto& [width, height] : {std::pair{860.0F, 640.0F}, std::pair{500.0F, 301.0F}, std::pair{100.0F, 50.0F}}) {
    Form().editor.UserResize(width, height);
    float left = 0;
    float top = 0;
    bool wasVisible = false;
    whileWaiting = [&] {
      wasVisible = panel.Visible();
      left = panel.Left();
      top = panel.Top();
    };
    Print(1, 1);
    EXPECT_TRUE(wasVisible);
    EXPECT_EQ(left, (width - panel.Width()) / 2);
    EXPECT_EQ(top, (height - panel.Height()) / 2);
  }
}

TEST_F(Printing, TheShownPageIsPrintedAsItsCommandsLeftIt) {
  Open(3);
  Form().PageIndex.SetValue(2);
  Form().tbrMoreTools.ButtonClick.Raise("Invert");
  Print(1, 3);
  ASSERT_EQ(desktop.printedJobs.size(), 1U);
  EXPECT_EQ(desktop.printedJobs[0][0].PixelAt(0, 0), (Rgb{1, 1, 1}));
  EXPECT_EQ(desktop.printedJobs[0][1].PixelAt(0, 0), (Rgb{253, 253, 253}));
  EXPECT_EQ(desktop.printedJobs[0][2].PixelAt(0, 0), (Rgb{3, 3, 3}));
}

TEST_F(Printing, TheShownPagePrintsLikeItsPageFile) {
  Open(3);
  Print(1, 3);
  Form().PageIndex.SetValue(3);
  Print(1, 3);
  ASSERT_EQ(desktop.printedJobs.size(), 2U);
  for (std::size_t page = 0; page < 3; ++page) {
    EXPECT_TRUE(SamePicture(desktop.printedJobs[0][page], desktop.printedJobs[1][page])) << page;
  }
}

TEST_F(Printing, PagesKeepTheirOwnDepthAndTheirResolution) {
  Bitmap bilevel(64, 32, 1);
  bilevel.SetResolution(200, 200);
  SavePicture(bilevel, folder.File("paper_Page_1.tif"));
  Bitmap colour(48, 32, 24);
  colour.SetResolution(300, 150);
  colour.MutableRow(5)[7] = 200;
  SavePicture(colour, folder.File("paper_Page_2.tif"));
  control->OpenFile(folder.File("paper_Page_1.tif"));
  Print(1, 2);
  ASSERT_EQ(desktop.printedJobs.size(), 1U);
  const auto& sheets = desktop.printedJobs[0];
  ASSERT_EQ(sheets.size(), 2U);
  EXPECT_TRUE(SamePicture(sheets[0], bilevel));
  EXPECT_TRUE(SamePicture(sheets[1], colour));
  EXPECT_NEAR(sheets[0].HorizontalResolution(), 200, 0.1);
  EXPECT_NEAR(sheets[1].HorizontalResolution(), 300, 0.1);
  EXPECT_NEAR(sheets[1].VerticalResolution(), 150, 0.1);
}

TEST_F(Printing, WhatIsTransparentIsPaper) {
  Bitmap picture(20, 10, 32);
  for (std::int32_t y = 0; y < picture.Height(); ++y)
    std::ranges::fill(picture.MutableRow(y).subspan(40), std::uint8_t{0xFF});
  for (const char* page : {"clear_Page_1.bmp", "clear_Page_2.bmp"}) SavePicture(picture, folder.File(page));
  control->OpenFile(folder.File("clear_Page_1.bmp"));
  ASSERT_EQ(control->Engine().Current().BitsPerPixel(), 32);
  ASSERT_EQ(control->Engine().Current().Row(0)[3], 0) << "transparent black";
  Print(1, 2);
  ASSERT_EQ(Sheets(), (SheetWidths{20, 20}));
  for (const Bitmap& sheet : desktop.printedJobs[0]) {
    EXPECT_EQ(sheet.BitsPerPixel(), 24);
    EXPECT_EQ(sheet.PixelAt(0, 0), (Rgb{255, 255, 255}));
  }
}

TEST_F(Printing, APictureThatIsPaintedIsNotChangedByACommandMeanwhile) {
  Open(1);
  Rgb before;
  Rgb behind;
  desktop.onPrintPicture = [&](const Bitmap& picture) {
    before = picture.PixelAt(0, 0);
    Form().tbrMoreTools.ButtonClick.Raise("Invert");
    behind = picture.PixelAt(0, 0);
  };
  Print(1, 1);
  EXPECT_EQ(before, (Rgb{1, 1, 1}));
  EXPECT_EQ(behind, before);
  EXPECT_EQ(control->Engine().Current().PixelAt(0, 0), (Rgb{254, 254, 254}));
}

TEST_F(Printing, TheOnlyPageOfADocumentThatIsNotSplitIsPageOne) {
  control->OpenFile(MakeImage("scan.bmp", 30, 40));
  desktop.printerAnswers.emplace_back([](PrinterDialog& dialog) {
    dialog.fromPage = 1;  // what the system's dialog makes of it
    dialog.toPage = 1;
  });
  Print();
  EXPECT_EQ(desktop.printersShown[0].lastPage, 0);
  EXPECT_EQ(Sheets(), SheetWidths{30});
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Printing, FloatingLayersAreNotPrinted) {
  Open(1);
  TransparentPicture& layer = Form().TransLayers.Load(2);
  layer.SetPicture(Bitmap(5, 5, 24));
  layer.SetVisible(true);
  Print(1, 1);
  EXPECT_EQ(Sheets(), SheetWidths{10});
}

TEST_F(Printing, APageWhoseFileIsGoneIsReportedAndItsSheetStaysBlank) {
  Open(4);
  RemoveFileAt(folder.File("scan_Page_3.tif"));
  Print(2, 4);
  EXPECT_EQ(Sheets(), (SheetWidths{20, 0, 40}));
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::FileNotFound)});
  ExpectOver();
}

TEST_F(Printing, APageFileOfGarbageNeverPrintsAnOlderPicture) {
  Open(4);
  WriteWhole(folder.File("scan_Page_3.tif"), "not a picture");
  Print(2, 3);
  EXPECT_EQ(Sheets(), SheetWidths{20});
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::InvalidPicture)});
}

TEST_F(Printing, WithoutAPrinterTheCommandEndsInTheErrorHandler) {
  Open(2);
  desktop.printerAnswers.emplace_back([](PrinterDialog&) { Raise(ErrorNumber::PrinterError); });
  Print();
  EXPECT_EQ(events.errors, std::vector<int>{482});
  EXPECT_TRUE(captions.empty());
  EXPECT_EQ(desktop.endsOfJob, 0);
}

TEST_F(Printing, APrinterThatRefusesAPageEndsTheLoopAndItsJobOnce) {
  Open(5);
  desktop.onPrintPicture = [](const Bitmap& picture) {
    if (picture.Width() == 30) Raise(ErrorNumber::PrinterError);
  };
  Print(1, 5);
  EXPECT_EQ(captions.back(), "Printing page 3 of 5");
  EXPECT_EQ(events.errors, std::vector<int>{482});
  ExpectOver();
}

TEST_F(Printing, AJobThatCannotBeEndedIsReportedAndThePanelHidden) {
  Open(2);
  desktop.onEndPrintJob = [] { Raise(ErrorNumber::PrinterError); };
  Print(1, 2);
  EXPECT_EQ(events.errors, std::vector<int>{482});
  ExpectOver();
  control->LetEnabled(true);
  desktop.onEndPrintJob = {};
  Print(1, 2);
  EXPECT_EQ(desktop.printedJobs.size(), 2U) << "the control is usable again";
}

TEST_F(Printing, EndsTheJobOnceEvenIfAnErrorCannotBeReported) {
  Open(3);
  desktop.onPrintPicture = [&](const Bitmap& picture) {
    if (picture.Width() != 20) return;
    AppDir = folder.File("no such folder\\");
    Raise(ErrorNumber::PrinterError);
  };
  Print(1, 3);
  AppDir = folder.Path();
  EXPECT_EQ(Sheets(), SheetWidths{10});
  ExpectOver();
}

TEST_F(Printing, RunsOnlyOnceAtATime) {
  Open(2);
  bool hasAsked = false;
  whileWaiting = [&] {
    if (hasAsked) return;
    hasAsked = true;
    Print(1, 2);
  };
  Print(1, 2);
  EXPECT_EQ(desktop.printersShown.size(), 1U);
  EXPECT_EQ(Sheets(), (SheetWidths{10, 20}));
}

TEST_F(Printing, AScratchPictureThatIsOverwrittenMeanwhileIsNotPrinted) {
  Open(4);
  const std::string other = MakeImage("other.bmp", 77, 7);
  whileWaiting = [&] { control->LetBGImage(other); };
  Print(1, 4);
  EXPECT_EQ(Sheets(), (SheetWidths{10, 20, 30, 40}));
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Printing, GoesOnWithItsOwnDocumentWhenAnotherIsOpenedMeanwhile) {
  Open(3);
  const std::string other = MakeImage("other.bmp", 77, 7);
  whileWaiting = [&] {
    if (captions.size() == 2 && control->OpenedDocument().FilePath() != other) control->OpenFile(other);
  };
  Print(1, 3);
  EXPECT_EQ(Sheets(), (SheetWidths{10, 20, 30}));
}

TEST_F(Printing, MorePagesThanTheNumbersHoldAreAnOverflow) {
  Open(2);
  Print(1, 40000);
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::Overflow)});
  EXPECT_TRUE(captions.empty());
}

TEST_F(Printing, WithoutADocumentNothingIsPaintedAndTheJobEnds) {
  Choose(1, 1);
  Form().tbrMoreTools.ButtonClick.Raise("PrinterSetup");
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::ObjectVariableNotSet)});
  EXPECT_TRUE(desktop.printedJobs.empty());
  ExpectOver();
}

}  // namespace
}  // namespace kw::test
