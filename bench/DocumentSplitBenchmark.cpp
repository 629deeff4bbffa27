// Splitting a document as the editor does when it opens one, each page to a file of its own, against tiffsplit on the
// same file. Both write to the same disk; the files of the previous round are deleted outside the measured time.
// Neither waits for the disk. DocumentSplitFlushed does, as the editor; it is compared with the bare calls of the file
// system on the bytes of the same pages.

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <tiffio.h>

#include "components/base/SystemFile.h"
#include "picture/File.h"
#include "picture/PictureDocument.h"
#include "picture/Stream.h"
#include "picture/formats/Formats.h"

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

// With `lasting`, each page is on the disk before the next one is written.
void SplitByEngine(benchmark::State& state, bool lasting) {
  const Workplace& place = Place();
  for (auto _ : state) {
    state.PauseTiming();
    place.Clear();
    state.ResumeTiming();
    kw::PictureDocument engine;
    if (!engine.Load(place.Document())) state.SkipWithError(engine.LastLoadError().c_str());
    for (std::int32_t page = engine.PageCount(); page >= 1; --page) {
      engine.SelectPage(page);
      const std::string path = (place.Pages() / ("document_Page_" + std::to_string(page) + ".tif")).string();
      if (lasting)
        engine.Save(path);
      else
        engine.SaveScratch(path, {});
    }
  }
  if (!place.IsComplete()) state.SkipWithError("pages are missing");
}

void DocumentSplitByEngine(benchmark::State& state) { SplitByEngine(state, false); }
BENCHMARK(DocumentSplitByEngine)->Unit(benchmark::kMillisecond)->UseRealTime();

void DocumentSplitFlushed(benchmark::State& state) { SplitByEngine(state, true); }
BENCHMARK(DocumentSplitFlushed)->Unit(benchmark::kMillisecond)->UseRealTime();

std::vector<kw::MemoryFile>& Pages() {
  static std::vector<kw::MemoryFile> pages(PageTotal);
  if (pages.front().Size() == 0) {
    kw::InputFile file(Place().Document());
    const auto source = kw::TiffFormat.open(file, {});
    for (int i = 0; i < PageTotal; ++i) source->Copy(file, i + 1, pages[static_cast<std::size_t>(i)]);
  }
  return pages;
}

// What it takes that a page is there whole or not at all: its bytes, and then its name, are flushed.
bool PutFlushed(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
  const kw::FileSystem& files = kw::FileSystem::Current();
  const std::filesystem::path temporary = path.string() + ".tmp";
  kw::OpenedFile file;
  std::size_t written = 0;
  return files.Open(temporary, kw::FileUse::Create, file) == 0 &&
         files.Write(file.get(), bytes.data(), bytes.size(), written) == 0 && files.Flush(file.get()) == 0 &&
         files.Close(file.release()) == 0 &&
         files.PutInPlace(temporary, path, kw::Existing::Replaced, kw::Durability::Lasting) == 0;
}

void DocumentFlush(benchmark::State& state) {
  const Workplace& place = Place();
  const auto& pages = Pages();
  for (auto _ : state) {
    state.PauseTiming();
    place.Clear();
    state.ResumeTiming();
    for (std::size_t i = 0; i < pages.size(); ++i) {
      if (!PutFlushed(place.Pages() / ("page" + std::to_string(i)), pages[i].Bytes()))
        state.SkipWithError("not written");
    }
  }
  if (!place.IsComplete()) state.SkipWithError("pages are missing");
}
BENCHMARK(DocumentFlush)->Unit(benchmark::kMillisecond)->UseRealTime();

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
