// The control prints documents through the system's PostScript driver, as it does for a user.

#include "tests/windows/WholeEditor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <thread>

#include "tests/windows/TestPrinter.h"

namespace kw::test {
namespace {

// What the user does in the printer dialog.
class DialogUser {
public:
  // Presses OK; before that asks for these pages unless `from` is 0, and then for all where that is wanted.
  DialogUser(int from, int to, bool all)
      : thread([from, to, all] {
          for (int i = 0; i < 1000; ++i) {
            Sleep(10);
            const HWND dialog = FindWindowW(L"#32770", nullptr);
            if (dialog == nullptr || IsWindowVisible(dialog) == FALSE) continue;
            if (from != 0) {
              SendDlgItemMessageW(dialog, PagesButton, BM_CLICK, 0, 0);
              SetDlgItemInt(dialog, FromField, static_cast<UINT>(from), FALSE);
              SetDlgItemInt(dialog, ToField, static_cast<UINT>(to), FALSE);
            }
            if (all) SendDlgItemMessageW(dialog, AllButton, BM_CLICK, 0, 0);
            PostMessageW(dialog, WM_COMMAND, IDOK, 0);
            return;
          }
        }) {}
  DialogUser(const DialogUser&) = delete;
  DialogUser& operator=(const DialogUser&) = delete;
  ~DialogUser() { thread.join(); }

private:
  // Of the system's dialog.
  static constexpr int AllButton = 0x0420;
  static constexpr int PagesButton = 0x0422;
  static constexpr int FromField = 0x0480;
  static constexpr int ToField = 0x0481;
  std::thread thread;
};

// A page of 7 by 9 inches at 100 dots per inch: lines and dots, and as many bars as its number says.
Bitmap Page(int number, int bitsPerPixel) {
  constexpr std::int32_t width = 700;
  constexpr std::int32_t height = 900;
  Bitmap page(width, height, bitsPerPixel);
  page.SetResolution(100, 100);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = page.MutableRow(y);
    for (std::int32_t x = 0; x < width; ++x) {
      const bool isBar = y > 40 && y < 100 && x > 30 && (x - 30) % 60 < 30 && (x - 30) / 60 < number;
      const bool isLine = (x + 2 * y) % 173 < 2 || (y % 41 == 0 && x < 600);
      const bool isDot = y > 500 && x % 7 == number && y % 5 == 1;
      const bool isDark = isBar || isLine || isDot;
      const auto at = static_cast<std::size_t>(x);
      if (bitsPerPixel == 1) {
        if (!isDark) row[at / 8] = static_cast<std::uint8_t>(row[at / 8] | (0x80U >> (at % 8)));
      } else if (bitsPerPixel == 8) {
        row[at] = static_cast<std::uint8_t>(isDark ? 20 : 155 + x / 7);
      } else {
        row[3 * at] = static_cast<std::uint8_t>(isDark ? 200 : 255 - y / 9);
        row[3 * at + 1] = static_cast<std::uint8_t>(isDark ? 20 : 255 - x / 7);
        row[3 * at + 2] = static_cast<std::uint8_t>(isDark ? 20 : 240);
      }
    }
  }
  return page;
}

int DepthOf(int page) { return page == 3 ? 8 : page == 4 ? 24 : 1; }

int Difference(Rgb a, Rgb b) {
  return std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

class PrintedDocument : public WholeEditor {
protected:
  // Pages of one document that was split before.
  void OpenFivePages() {
    for (int page = 1; page <= 5; ++page) {
      SavePicture(Page(page, DepthOf(page)), folder.File("paper_Page_" + std::to_string(page) + ".tif"));
    }
    control->OpenFile(folder.File("paper_Page_1.tif"));
  }
  void Print(int from, int to, bool all = false) {
    const DialogUser user(from, to, all);
    BarOf(control->Form().tbrBasicTools, "PrinterSetup").UserClick("PrinterSetup");
  }

  // The sheet shows that page in its true size from the corner of the printable area on, and nothing else.
  static void ExpectPage(const Bitmap& sheet, const Bitmap& page) {
    ASSERT_EQ(sheet.Width(), TestPrinter::PaperWidth);
    ASSERT_EQ(sheet.Height(), TestPrinter::PaperHeight);
    std::int64_t sum = 0;
    int different = 0;
    for (std::int32_t y = 0; y < sheet.Height(); ++y) {
      for (std::int32_t x = 0; x < sheet.Width(); ++x) {
        const std::int32_t pageX = x - TestPrinter::Margin;
        const std::int32_t pageY = y - TestPrinter::Margin;
        const bool isInside = pageX >= 0 && pageY >= 0 && pageX < page.Width() && pageY < page.Height();
        const int off = Difference(sheet.PixelAt(x, y), isInside ? page.PixelAt(pageX, pageY) : Rgb{255, 255, 255});
        sum += off;
        if (off > 16) ++different;
      }
    }
    const double pixels = double{TestPrinter::PaperWidth} * TestPrinter::PaperHeight;
    EXPECT_LT(different / pixels, LargestShareOfDifferentPixels);
    EXPECT_LT(static_cast<double>(sum) / pixels, LargestMeanDifference);
    RecordProperty("different", different);
    RecordProperty("mean", std::to_string(static_cast<double>(sum) / pixels));
  }

  // Of pixels that differ by more than 16 of 255, and of all pixels in the mean.
  static constexpr double LargestShareOfDifferentPixels = 0.0002;
  static constexpr double LargestMeanDifference = 0.05;

  TestPrinter printer;
};

TEST_F(PrintedDocument, HasEveryPageAsItsFileShowsIt) {
  OpenFivePages();
  Print(0, 0);
  EXPECT_TRUE(events.errorTexts.empty());
  EXPECT_EQ(printer.PageCount(), 5);
  const std::vector<Bitmap> sheets = printer.Sheets();
  ASSERT_EQ(sheets.size(), 5U);
  for (int page = 1; page <= 5; ++page) {
    SCOPED_TRACE(page);
    ExpectPage(sheets[static_cast<std::size_t>(page - 1)], Page(page, DepthOf(page)));
  }
}

TEST_F(PrintedDocument, HasOnlyTheChosenPages) {
  OpenFivePages();
  Print(2, 4);
  EXPECT_EQ(printer.PageCount(), 3);
  const std::vector<Bitmap> sheets = printer.Sheets();
  ASSERT_EQ(sheets.size(), 3U);
  for (int page = 2; page <= 4; ++page) {
    SCOPED_TRACE(page);
    ExpectPage(sheets[static_cast<std::size_t>(page - 2)], Page(page, DepthOf(page)));
  }
}

TEST_F(PrintedDocument, HasEveryPageAgainWhenTheUserChoosesAll) {
  OpenFivePages();
  Print(2, 4, true);
  EXPECT_EQ(printer.PageCount(), 5);
}

TEST_F(PrintedDocument, IsCalledByItsFileInThePrintersQueue) {
  OpenFivePages();
  Print(1, 1);
  EXPECT_NE(printer.Job().find("paper.tif"), std::string::npos) << printer.Job().substr(0, 400);
}

TEST_F(PrintedDocument, IsTalkedOfOnThePanelInTheMiddleOfTheControl) {
  OpenFivePages();
  EditorForm& form = control->Form();
  std::vector<std::string> captions;
  bool isShown = false;
  desktop.beforeEvents = [&] {
    const std::string caption = form.lblPrintingStatus.Caption();
    if (caption.empty() || (!captions.empty() && captions.back() == caption)) return;
    captions.push_back(caption);
    const HWND panel = WindowOf(form.kwraPrintingStatus);
    EXPECT_TRUE(IsWindowVisible(panel));
    const RECT place = PlaceOf(panel);
    RECT whole = {};
    GetClientRect(window->Handle(), &whole);
    EXPECT_NEAR(place.left, whole.right - place.right, 1);
    EXPECT_NEAR(place.top, whole.bottom - place.bottom, 1);
    isShown = isShown || ShowsText(form.lblPrintingStatus, panel);
  };
  Print(2, 4);
  EXPECT_EQ(captions,
            (std::vector<std::string>{"Printing page 1 of 3", "Printing page 2 of 3", "Printing page 3 of 3"}));
  EXPECT_TRUE(isShown);
}

TEST_F(PrintedDocument, EndsWithThePagesBeforeTheOneThatTheUserCancelled) {
  OpenFivePages();
  EditorForm& form = control->Form();
  desktop.beforeEvents = [&] {
    if (form.lblPrintingStatus.Caption() == "Printing page 3 of 5") {
      PostMessageW(WindowOf(form.chkCancelPrinting), BM_CLICK, 0, 0);
    }
  };
  Print(1, 5);
  EXPECT_FALSE(form.kwraPrintingStatus.Visible());
  EXPECT_FALSE(form.chkCancelPrinting.Value());
  EXPECT_EQ(printer.PageCount(), 2);
  const std::vector<Bitmap> sheets = printer.Sheets();
  ASSERT_EQ(sheets.size(), 2U);
  ExpectPage(sheets[1], Page(2, 1));
}

}  // namespace
}  // namespace kw::test
