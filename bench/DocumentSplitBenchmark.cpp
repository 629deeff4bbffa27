// Writing each page of a document to a file of its own, against tiffsplit on the same file. Both write to the same
// disk; the files of the previous round are deleted outside the measured time.

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include <benchmark/benchmark.h>
#include <tiffio.h>

#include "picture/PictureDocument.h"

namespace {

constexpr int PageTotal = 100;
constexpr std::uint32_t PageWidth = 2480;
constexpr std::uint32_t PageHeight = 3508;

// Rows of letter-like marks on a white page of A4 at 300 dots per inch, coded with CCITT G4.
void WritePage(TIFF* codec, std::mt19937& random) {
  TIFFSetField(codec, TIFFTAG_IMAGEWIDTH, PageWidth);
  TIFFSetField(codec, TIFFTAG_IMAGELENGTH, PageHeight);
  TIFFSetField(codec, TIFFTAG_BITSPERSAMPLE, 1);
  TIFFSetField(codec, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(codec, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
  TIFFSetField(codec, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(codec, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
  TIFFSetField(codec, TIFFTAG_ROWSPERSTRIP, PageHeight);
  TIFFSetField(codec, TIFFTAG_XRESOLUTION, 300.0);
  TIFFSetField(codec, TIFFTAG_YRESOLUTION, 300.0);
  TIFFSetField(codec, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
  constexpr std::uint32_t lineHeight = 60;
  constexpr std::uint32_t letterHeight = 36;
  constexpr std::uint32_t margin = 200;
  std::vector<unsigned char> row(PageWidth / 8);
  for (std::uint32_t y = 0; y < PageHeight; ++y) {
    const bool writing = y > margin && y < PageHeight - margin && y % lineHeight < letterHeight;
    if (!writing) {
      row.assign(row.size(), 0);
    } else if (y % 6 == 0) {
      for (std::size_t x = 25; x < row.size() - 25; ++x) {
        if (x % 4 == 3) {
          row[x] = 0;
          continue;
        }
        const auto bits = random();
        row[x] = static_cast<unsigned char>(bits & random());
      }
    }
    TIFFWriteScanline(codec, row.data(), y, 0);
  }
  TIFFWriteDirectory(codec);
}

class Workplace {
public:
  Workplace() : folder(std::filesystem::temp_directory_path() / ("kwbench" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(folder);
    TIFF* codec = TIFFOpen(Document().c_str(), "w");
    std::mt19937 random(1);
    for (int page = 0; page < PageTotal; ++page) WritePage(codec, random);
    TIFFClose(codec);
  }
  ~Workplace() { std::filesystem::remove_all(folder); }

  std::string Document() const { return (folder / "document.tif").string(); }
  std::filesystem::path Pages() const { return folder / "pages"; }

  // An empty folder for the pages.
  void Clear() const {
    std::filesystem::remove_all(Pages());
    std::filesystem::create_directories(Pages());
  }

  // Whether the last round wrote every page.
  bool IsComplete() const {
    const std::filesystem::directory_iterator files(Pages());
    return std::distance(begin(files), end(files)) == PageTotal;
  }

  std::filesystem::path folder;
};

const Workplace& Place() {
  static const Workplace place;
  return place;
}

// Each page is written to a file by `save`.
template <class SavePage>
void SplitDocument(benchmark::State& state, SavePage&& save) {
  const Workplace& place = Place();
  for (auto _ : state) {
    state.PauseTiming();
    place.Clear();
    state.ResumeTiming();
    kw::PictureDocument engine;
    if (!engine.Load(place.Document())) state.SkipWithError(engine.LastLoadError().c_str());
    for (std::int32_t page = engine.PageCount(); page >= 1; --page) {
      engine.SelectPage(page);
      save(engine, (place.Pages() / ("document_Page_" + std::to_string(page) + ".tif")).string());
    }
  }
  if (!place.IsComplete()) state.SkipWithError("pages are missing");
}

// As tiffsplit, nothing waits until the disk has the pages.
void DocumentSplitByEngine(benchmark::State& state) {
  SplitDocument(state, [](kw::PictureDocument& engine, const std::string& path) { engine.SaveScratch(path, {}); });
}
BENCHMARK(DocumentSplitByEngine)->Unit(benchmark::kMillisecond)->UseRealTime();

void DocumentSplitFlushed(benchmark::State& state) {
  SplitDocument(state, [](kw::PictureDocument& engine, const std::string& path) { engine.Save(path); });
}
BENCHMARK(DocumentSplitFlushed)->Unit(benchmark::kMillisecond)->UseRealTime();

void DocumentSplitByTiffsplit(benchmark::State& state) {
  const Workplace& place = Place();
  const std::string command = "tiffsplit '" + place.Document() + "' '" + (place.Pages() / "page").string() + "'";
  for (auto _ : state) {
    state.PauseTiming();
    place.Clear();
    state.ResumeTiming();
    if (std::system(command.c_str()) != 0) state.SkipWithError("tiffsplit (package libtiff-tools) did not run");
  }
  if (!place.IsComplete()) state.SkipWithError("pages are missing");
}
BENCHMARK(DocumentSplitByTiffsplit)->Unit(benchmark::kMillisecond)->UseRealTime();

// Decoding one page, for comparison.
void DocumentPageDecode(benchmark::State& state) {
  kw::PictureDocument engine;
  if (!engine.Load(Place().Document())) state.SkipWithError(engine.LastLoadError().c_str());
  std::int32_t page = 0;
  for (auto _ : state) {
    engine.SelectPage(page % PageTotal + 1);
    benchmark::DoNotOptimize(engine.Width());
    ++page;
  }
}
BENCHMARK(DocumentPageDecode)->Unit(benchmark::kMillisecond);

}  // namespace
