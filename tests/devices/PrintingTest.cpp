#include <gtest/gtest.h>

#include <string>
#include <vector>

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
  // The printer's page that is painted on now, from 1.
  std::size_t SheetsPainted() const { return desktop.openJob.size(); }
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

}  // namespace
}  // namespace kw::test
