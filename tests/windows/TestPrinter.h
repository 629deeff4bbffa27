#pragma once

#include <string>
#include <vector>

#include "components/base/Bitmap.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::test {

// While it lives there is one printer, the default one: the system's PostScript driver at 300 dots per inch, on letter
// paper with margins of a quarter of an inch, whose jobs become a file.
class TestPrinter {
public:
  static constexpr int PaperWidth = 850;  // at Resolution
  static constexpr int PaperHeight = 1100;
  static constexpr int Margin = 25;
  static constexpr int Resolution = 100;  // of Sheets()

  TestPrinter();
  TestPrinter(const TestPrinter&) = delete;
  TestPrinter& operator=(const TestPrinter&) = delete;
  ~TestPrinter();

  // Until it is mended no job can be written: its name is taken by a folder.
  void Break() const;
  void Mend() const;
  // The whole job.
  std::string Job() const;
  // The pages that the job has by its own count; 0 without a job.
  int PageCount() const;
  // The sheets of paper, as an interpreter of PostScript that has nothing to do with the driver shows them.
  std::vector<Bitmap> Sheets();

private:
  TemporaryFolder folder;
  std::string job;
};

}  // namespace kw::test
