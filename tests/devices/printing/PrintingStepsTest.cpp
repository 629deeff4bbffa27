// The pauses in which a cancelled print job ends, and what is put right after them.

#include "tests/devices/printing/PrintingFixture.h"

namespace kw::test {
namespace {

// Before the page, thrice in bringing the page from its file, before and behind the printing.
TEST_F(Printing, PausesBetweenAllStepsOfAPage) {
  Open(3);
  int pauses = 0;
  whileWaiting = [&] { ++pauses; };
  Print(2, 2);
  EXPECT_EQ(pauses, 6);
  pauses = 0;
  Print(1, 1);
  EXPECT_EQ(pauses, 3) << "the page that is shown is not brought from a file";
}

TEST_F(Printing, CancelledInAnyPauseOfItsFirstPageEndsThere) {
  Open(3);
  for (int last = 1; last <= 6; ++last) {
    desktop.printedJobs.clear();
    desktop.endsOfJob = 0;
    int pauses = 0;
    whileWaiting = [&] {
      if (++pauses == last) Form().chkCancelPrinting.UserToggle();
    };
    Print(2, 3);
    EXPECT_EQ(pauses, last);
    EXPECT_EQ(desktop.endsOfJob, 1) << last;
    EXPECT_EQ(desktop.printedJobs.size(), last < 6 ? 0U : 1U) << last;
    EXPECT_FALSE(Form().chkCancelPrinting.Value());
  }
}

TEST_F(Printing, WritesTheCaptionAgainBehindThePage) {
  Open(1);
  desktop.onPrintPicture = [this](const Bitmap&) { Form().lblPrintingStatus.SetCaption("another"); };
  std::string last;
  whileWaiting = [&] { last = Form().lblPrintingStatus.Caption(); };
  Print(1, 1);
  EXPECT_EQ(last, "Printing page 1 of 1");
}

TEST_F(Printing, PaintsNothingForAPageWithoutAFile) {
  desktop.Expect("Critical Error: Error Number : 75");
  desktop.Expect("Critical Error: Error Number : 53");
  std::filesystem::create_directories(ToFilesystemPath(folder.File("scan_Page_2.tif")));
  Open(3);
  control->LetEnabled(true);
  events.errors.clear();
  std::vector<int> painted;
  desktop.onPrintPicture = [&](const Bitmap& picture) { painted.push_back(picture.Width()); };
  Print(1, 3);
  EXPECT_EQ(painted, (std::vector<int>{10, 0, 30})) << "nothing, which leaves the sheet blank";
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::FileNotFound)});
}

TEST_F(Printing, ShowsItsPanelInFrontOfEverything) {
  Open(1);
  bool wasInFront = false;
  whileWaiting = [&] { wasInFront = Form().editor.Children().back() == &Form().kwraPrintingStatus; };
  Print(1, 1);
  EXPECT_TRUE(wasInFront);
}

}  // namespace
}  // namespace kw::test
