// Pictures on the paper of the system's PostScript driver.

#include "windows/WindowsDesktop.h"

#include <gtest/gtest.h>
#include <winspool.h>

#include <algorithm>
#include <cstdlib>

#include "components/base/RunTimeError.h"
#include "tests/support/Errors.h"
#include "tests/windows/ImportPatch.h"
#include "tests/windows/TestPrinter.h"
#include "windows/printing/Printer.h"

namespace kw::test {
namespace {

Bitmap Black(std::int32_t width, std::int32_t height, double dotsAcross, double dotsDown) {
  Bitmap picture(width, height, 1);
  picture.SetResolution(dotsAcross, dotsDown);
  return picture;
}

bool IsDark(Rgb pixel) { return pixel.red < 128; }

// The place of what is dark on a sheet.
RECT DarkPart(const Bitmap& sheet) {
  RECT part = {sheet.Width(), sheet.Height(), 0, 0};
  for (std::int32_t y = 0; y < sheet.Height(); ++y) {
    for (std::int32_t x = 0; x < sheet.Width(); ++x) {
      if (!IsDark(sheet.PixelAt(x, y))) continue;
      part = {std::min<LONG>(part.left, x), std::min<LONG>(part.top, y), std::max<LONG>(part.right, x + 1),
              std::max<LONG>(part.bottom, y + 1)};
    }
  }
  return part;
}

// The part that a picture of so many hundredths of an inch takes from the corner of the printable area on.
void ExpectDark(const Bitmap& sheet, int width, int height) {
  const RECT part = DarkPart(sheet);
  constexpr int corner = TestPrinter::Margin;
  EXPECT_EQ(part.left, corner);
  EXPECT_EQ(part.top, corner);
  EXPECT_NEAR(part.right, corner + width, 1);
  EXPECT_NEAR(part.bottom, corner + height, 1);
}

class PrintedPicture : public testing::Test {
protected:
  Bitmap SheetOf(const Bitmap& picture) {
    desktop.PrintPicture(picture);
    desktop.EndPrintJob();
    const std::vector<Bitmap> sheets = printer.Sheets();
    EXPECT_EQ(sheets.size(), 1U);
    return sheets.empty() ? Bitmap(1, 1, 24) : sheets[0];
  }

  TestPrinter printer;
  windows::WindowsDesktop desktop;
};

TEST_F(PrintedPicture, HasItsTrueSizeInInches) { ExpectDark(SheetOf(Black(200, 100, 200, 200)), 100, 50); }

TEST_F(PrintedPicture, HasItsTrueSizeWherePixelsAreNotSquare) {
  ExpectDark(SheetOf(Black(300, 100, 300, 100)), 100, 100);
}

TEST_F(PrintedPicture, WithoutAResolutionHasThatOfTheScreen) { ExpectDark(SheetOf(Black(192, 96, 0, 0)), 200, 100); }

TEST_F(PrintedPicture, ThatIsTooWideIsReducedInItsProportions) {
  ExpectDark(SheetOf(Black(3000, 1500, 200, 200)), 800, 400);
}

TEST_F(PrintedPicture, ThatIsTooHighIsReducedInItsProportions) {
  ExpectDark(SheetOf(Black(500, 4200, 100, 100)), 125, 1050);
}

// Sent with 24 bits, the page would take more than ten times as much.
TEST_F(PrintedPicture, OfOneBitGoesToTheDriverAsOneBit) {
  desktop.PrintPicture(Black(1600, 2000, 200, 200));
  desktop.EndPrintJob();
  constexpr std::size_t rows = std::size_t{1600} / 8 * 2000;
  EXPECT_LT(printer.Job().size(), 2 * rows + 100'000) << "two digits for each byte";
}

TEST_F(PrintedPicture, OfManyBandsHasNoSeams) {
  Bitmap picture(1600, 2000, 24);  // ten megabytes
  picture.SetResolution(200, 200);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = static_cast<std::uint8_t>(i % 3 == 0 ? y / 8 : i / 20);
  }
  const Bitmap sheet = SheetOf(picture);
  int worst = 0;
  for (std::int32_t y = 0; y < 1000; ++y) {
    for (std::int32_t x = 0; x < 800; ++x) {
      const Rgb printed = sheet.PixelAt(x + TestPrinter::Margin, y + TestPrinter::Margin);
      const Rgb sent = picture.PixelAt(2 * x, 2 * y);
      worst = std::max({worst, std::abs(printed.red - sent.red), std::abs(printed.green - sent.green),
                        std::abs(printed.blue - sent.blue)});
    }
  }
  EXPECT_LE(worst, 2);
}

TEST_F(PrintedPicture, StandsOnThePageThatItIsPaintedOn) {
  desktop.PrintPicture(Black(100, 100, 100, 100));
  desktop.NewPrinterPage();
  desktop.PrintPicture({});
  desktop.NewPrinterPage();
  desktop.NewPrinterPage();
  desktop.PrintPicture(Black(300, 100, 100, 100));
  desktop.NewPrinterPage();
  desktop.EndPrintJob();
  EXPECT_EQ(printer.PageCount(), 3) << "the last page has nothing on it";
  const std::vector<Bitmap> sheets = printer.Sheets();
  ASSERT_EQ(sheets.size(), 3U);
  ExpectDark(sheets[0], 100, 100);
  EXPECT_EQ(DarkPart(sheets[1]).right, 0) << "blank";
  ExpectDark(sheets[2], 300, 100);
}

TEST_F(PrintedPicture, AJobThatCannotBeWrittenIsAnErrorAndTheNextJobIsNot) {
  constexpr auto printerError = static_cast<std::int32_t>(ErrorNumber::PrinterError);
  printer.Break();
  const std::int32_t painting = ErrorOf([&] { desktop.PrintPicture(Black(100, 100, 100, 100)); });
  const std::int32_t ending = ErrorOf([&] { desktop.EndPrintJob(); });
  EXPECT_TRUE(painting == printerError || ending == printerError) << painting << ' ' << ending;
  EXPECT_EQ(ErrorOf([&] { desktop.EndPrintJob(); }), 0) << "no job is left open";
  printer.Mend();
  desktop.PrintPicture(Black(100, 100, 100, 100));
  desktop.EndPrintJob();
  EXPECT_EQ(printer.PageCount(), 1);
}

int WINAPI RefuseToEnd(HDC /*device*/) { return SP_ERROR; }

TEST_F(PrintedPicture, ADeviceIsNotKeptWhereTheJobBeforeItCannotBeEnded) {
  windows::Printer one;
  one.PrintPicture(Black(100, 100, 100, 100));
  const HDC chosen = CreateCompatibleDC(nullptr);
  {
    const ImportPatch patch(GetModuleHandleW(nullptr), "EndDoc", &RefuseToEnd);
    EXPECT_EQ(ErrorOf([&] { one.Use(chosen); }), static_cast<std::int32_t>(ErrorNumber::PrinterError));
  }
  EXPECT_EQ(GetObjectType(chosen), 0U) << "the device is still there";
}

TEST(WithoutAPrinter, PrintingIsAPrinterErrorAndEndingAJobIsNone) {
  DWORD length = 0;
  GetDefaultPrinterW(nullptr, &length);
  if (length != 0) GTEST_SKIP() << "this machine has a printer";
  windows::WindowsDesktop desktop;
  constexpr auto printerError = static_cast<std::int32_t>(ErrorNumber::PrinterError);
  PrinterDialog dialog;
  EXPECT_EQ(ErrorOf([&] { desktop.ShowPrinter(dialog); }), printerError);
  EXPECT_EQ(ErrorOf([&] { desktop.PrintPicture(Black(10, 10, 100, 100)); }), printerError);
  EXPECT_EQ(ErrorOf([&] { desktop.NewPrinterPage(); }), 0) << "no page is open";
  EXPECT_EQ(ErrorOf([&] { desktop.EndPrintJob(); }), 0);
}

}  // namespace
}  // namespace kw::test
