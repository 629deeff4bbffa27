#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/EditorFixture.h"

namespace kw::test {

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
  // The user's choice in the next printer dialog.
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

}  // namespace kw::test
