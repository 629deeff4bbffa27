// Printing while the user cancels, the printer fails, or something else happens to the document.

#include "tests/devices/printing/PrintingFixture.h"

#include "components/base/Files.h"

namespace kw::test {
namespace {

TEST_F(Printing, CancellingDuringPageThreeOfFiveLeavesTheTwoBefore) {
  Open(5);
  whileWaiting = [&] {
    if (Form().lblPrintingStatus.Caption() == "Printing page 3 of 5") Form().chkCancelPrinting.UserToggle();
  };
  Print(1, 5);
  EXPECT_EQ(Sheets(), (SheetWidths{10, 20}));
  EXPECT_EQ(captions.back(), "Printing page 3 of 5");
  EXPECT_EQ(desktop.newPrinterPages, 2);
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
  EXPECT_EQ(Sheets(), SheetWidths{10});
  EXPECT_EQ(desktop.newPrinterPages, 1);
  EXPECT_EQ(pauses, 2);
  ExpectOver();
}

// A job that is cancelled behind its last page leaves no blank sheet.
TEST_F(Printing, CancellingBehindAPageStartsNoNewOne) {
  Open(5);
  desktop.onPrintPicture = [&](const Bitmap& picture) {
    if (picture.Width() != 20) return;
    whileWaiting = [&] { Form().chkCancelPrinting.UserToggle(); };
  };
  Print(1, 5);
  EXPECT_EQ(Sheets(), (SheetWidths{10, 20}));
  EXPECT_EQ(desktop.newPrinterPages, 1);
  ExpectOver();
}

TEST_F(Printing, TheCancelBoxRunsItsProcedureOnceAtEachClickAndComesUpAgain) {
  ForgetTrace();
  Form().chkCancelPrinting.UserToggle();
  EXPECT_FALSE(Form().chkCancelPrinting.Value());
  EXPECT_EQ(Trace(), std::vector<std::string>{"chkCancel_Click"});
  Form().chkCancelPrinting.UserToggle();
  EXPECT_EQ(Trace(), (std::vector<std::string>{"chkCancel_Click", "chkCancel_Click"}));
}

TEST_F(Printing, APictureThatIsPaintedIsNotChangedByACommandMeanwhile) {
  desktop.Expect("DoPreCommandProcess");
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

TEST_F(Printing, APageWhoseFileIsGoneIsReportedAndItsSheetStaysBlank) {
  desktop.Expect("Critical Error: Error Number : 53");
  Open(4);
  RemoveFileAt(folder.File("scan_Page_3.tif"));
  Print(2, 4);
  EXPECT_EQ(Sheets(), (SheetWidths{20, 0, 40}));
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::FileNotFound)});
  ExpectOver();
}

TEST_F(Printing, APageFileOfGarbageNeverPrintsAnOlderPicture) {
  desktop.Expect("Critical Error: There is not enough memory available to execute this task.");
  Open(4);
  WriteWhole(folder.File("scan_Page_3.tif"), "not a picture");
  Print(2, 3);
  EXPECT_EQ(Sheets(), SheetWidths{20});
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::InvalidPicture)});
}

TEST_F(Printing, WithoutAPrinterTheCommandEndsInTheErrorHandler) {
  desktop.Expect("Critical Error: Error Number : 482");
  Open(2);
  desktop.printerAnswers.emplace_back([](PrinterDialog&) { Raise(ErrorNumber::PrinterError); });
  Print();
  EXPECT_EQ(events.errors, std::vector<int>{482});
  EXPECT_TRUE(captions.empty());
  EXPECT_EQ(desktop.endsOfJob, 0);
}

TEST_F(Printing, APrinterThatRefusesAPageEndsTheLoopAndItsJobOnce) {
  desktop.Expect("Critical Error: Error Number : 482");
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
  desktop.Expect("Critical Error: Error Number : 482");
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
  desktop.Expect("Critical Error: Error Number : 482");
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

TEST_F(Printing, GoesOnWithItsOwnDocumentWhenAnotherIsOpenedInTheDialog) {
  Open(3);
  const std::string other = MakeImage("other.bmp", 77, 7);
  desktop.printerAnswers.emplace_back([&](PrinterDialog& dialog) {
    dialog.fromPage = 1;
    dialog.toPage = 3;
    control->OpenFile(other);
  });
  Print();
  EXPECT_EQ(Sheets(), (SheetWidths{10, 20, 30}));
  EXPECT_EQ(desktop.printersShown[0].document, "scan.tif");
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Printing, ADocumentThatIsNotSplitIsPrintedFromItselfWhenAnotherIsOpenedMeanwhile) {
  Open(3);
  control->OpenFile(MakeImage("letter.bmp", 44, 40));
  // Of a document of the same name, which is another one.
  MakeImage("letter_Page_1.bmp", 55, 40);
  const std::string other = MakeImage("other.bmp", 77, 7);
  whileWaiting = [&] {
    if (control->OpenedDocument().FilePath() != other) control->OpenFile(other);
  };
  Print(1, 1);
  EXPECT_EQ(Sheets(), SheetWidths{44});
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Printing, TheCommandThatEndsTheJobMeanwhileLeavesTheOtherPagesToAnotherOne) {
  // In each pause of the second page.
  for (int turn = 1;; ++turn) {
    desktop.printedJobs.clear();
    captions.clear();
    Open(3);
    int pauses = 0;
    whileWaiting = [&] {
      if (captions.size() == 2 && ++pauses == turn) BasicBar("Print").UserClick("Print");
    };
    Print(1, 3);
    whileWaiting = nullptr;
    if (pauses < turn) {
      EXPECT_GT(turn, 2);
      break;
    }
    std::vector<int> widths;
    for (const auto& job : desktop.printedJobs) {
      for (const Bitmap& sheet : job) widths.push_back(sheet.Width());
    }
    EXPECT_EQ(widths, (SheetWidths{10, 20, 30})) << "pause " << turn;
    EXPECT_EQ(desktop.printedJobs.size(), 2U) << "pause " << turn;
  }
}

TEST_F(Printing, MorePagesThanTheNumbersHoldAreAnOverflow) {
  desktop.Expect("Critical Error: Error Number : 6");
  Open(2);
  Print(1, 40000);
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::Overflow)});
  EXPECT_TRUE(captions.empty());
}

TEST_F(Printing, WithoutADocumentNothingIsPaintedAndTheJobEnds) {
  desktop.Expect("Critical Error: Error Number : 91");
  Choose(1, 1);
  Form().tbrMoreTools.ButtonClick.Raise("PrinterSetup");
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::ObjectVariableNotSet)});
  EXPECT_TRUE(desktop.printedJobs.empty());
  ExpectOver();
}

}  // namespace
}  // namespace kw::test
