#include "tests/devices/printing/PrintingFixture.h"

#include <algorithm>
#include <utility>

namespace kw::test {
namespace {

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

TEST_F(Printing, ANewJobDoesNotShowTheCaptionOfTheLastOne) {
  Open(3);
  Print(1, 3);
  std::vector<std::string> shown;
  whileWaiting = [&] { shown.push_back(Form().lblPrintingStatus.Caption()); };
  Print(1, 2);
  ASSERT_FALSE(shown.empty());
  EXPECT_EQ(shown.front(), "");
  EXPECT_EQ(shown.back(), "Printing page 2 of 2");
}

TEST_F(Printing, ItsJobIsCalledByTheDocument) {
  Open(2);
  Print(1, 2);
  EXPECT_EQ(desktop.printersShown[0].document, "scan.tif");
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
  desktop.Expect("DoPreCommandProcess");
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

TEST_F(Printing, ADocumentThatIsNotSplitHasNoSecondPage) {
  desktop.Expect("Critical Error: Error Number : 53");
  control->OpenFile(MakeImage("scan.bmp", 30, 40));
  Print(1, 2);
  EXPECT_EQ(Sheets(), SheetWidths{30});
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::FileNotFound)});
}

TEST_F(Printing, KeepsNoPageThatItRendered) {
  Open(3);
  desktop.onPrintPicture = [this](const Bitmap&) { EXPECT_FALSE(Form().picTempBuffer.Picture().IsEmpty()); };
  Print(2, 3);
  EXPECT_EQ(Sheets(), (SheetWidths{20, 30}));
  EXPECT_TRUE(Form().picTempBuffer.Picture().IsEmpty());
}

TEST_F(Printing, FloatingLayersAreNotPrinted) {
  Open(1);
  TransparentPicture& layer = Form().TransLayers.Load(2);
  layer.SetPicture(Bitmap(5, 5, 24));
  layer.SetVisible(true);
  Print(1, 1);
  EXPECT_EQ(Sheets(), SheetWidths{10});
}

}  // namespace
}  // namespace kw::test
