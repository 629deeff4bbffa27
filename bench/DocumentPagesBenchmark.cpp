// Documents of many pages: what their headers say, joining and splitting them. Joining and splitting wait for the disk
// only where the name says so.

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include <benchmark/benchmark.h>
#include <gif_lib.h>
#include <tiffio.h>

#include "bench/Pages.h"
#include "picture/OpenedPicture.h"
#include "picture/PictureDocument.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

// A folder that is gone when the program ends.
class DocumentFolder {
public:
  DocumentFolder()
      : folder(std::filesystem::temp_directory_path() / ("kwbench" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(folder);
  }
  DocumentFolder(const DocumentFolder&) = delete;
  DocumentFolder& operator=(const DocumentFolder&) = delete;
  ~DocumentFolder() { std::filesystem::remove_all(folder); }
  std::string At(const std::string& name) const { return (folder / name).string(); }

private:
  std::filesystem::path folder;
};

const DocumentFolder& Folder() {
  static const DocumentFolder folder;
  return folder;
}

// A document of that many pages, each of a few lines of text.
std::string Document(std::int32_t pages) {
  std::string path = Folder().At("document" + std::to_string(pages) + ".tif");
  if (std::filesystem::exists(path)) return path;
  MemoryFile page;
  TiffFormat.write(FaxPage(PageHeight / 6), page, {});
  OutputFile file(path, Durability::Passing);
  const auto document = TiffFormat.append(file);
  for (std::int32_t i = 0; i < pages; ++i) document->Append(page);
  file.Commit();
  return path;
}

std::string PagePath(std::int32_t page) { return Folder().At("document_Page_" + std::to_string(page) + ".tif"); }

void Split(std::int32_t pages) {
  PictureDocument engine;
  engine.Load(Document(pages));
  for (std::int32_t page = 1; page <= pages; ++page) {
    engine.SelectPage(page);
    engine.SaveScratch(PagePath(page), {});
  }
}

void Join(std::int32_t pages, Durability durability) {
  OutputFile file(Folder().At("joined.tif"), durability);
  const auto document = TiffFormat.append(file);
  for (std::int32_t page = 1; page <= pages; ++page) {
    PictureDocument engine;
    engine.GetOptions().decodesWhenAsked = true;
    engine.Load(PagePath(page));
    engine.AppendTo(*document);
  }
  file.Commit();
}

void ReadHeaders(benchmark::State& state, const std::string& path) {
  std::uint64_t rows = 0;
  for (auto _ : state) {
    OpenedPicture opened(path, {});
    for (std::int32_t page = 1; page <= opened.source->PageCount(); ++page) {
      rows += opened.source->Header(opened.file, page).size.height;
    }
  }
  benchmark::DoNotOptimize(rows);
}

void ReadHeadersByLibrary(benchmark::State& state, const std::string& path) {
  std::uint64_t rows = 0;
  for (auto _ : state) {
    TIFF* codec = TIFFOpen(path.c_str(), "rm");
    do {
      std::uint32_t height = 0;
      TIFFGetField(codec, TIFFTAG_IMAGELENGTH, &height);
      rows += height;
    } while (TIFFReadDirectory(codec) == 1);
    TIFFClose(codec);
  }
  benchmark::DoNotOptimize(rows);
}

const std::string& Animation() {
  static const std::string path = [] {
    PictureDocument engine;
    engine.Replace(Photograph());
    engine.SaveScratch(Folder().At("photograph.gif"), {});
    return Folder().At("photograph.gif");
  }();
  return path;
}

// The library goes over the coded pixels without decoding them.
void ReadGifByLibrary(benchmark::State& state) {
  for (auto _ : state) {
    int error = 0;
    GifFileType* codec = DGifOpenFileName(Animation().c_str(), &error);
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    while (DGifGetRecordType(codec, &record) == GIF_OK && record != TERMINATE_RECORD_TYPE) {
      int number = 0;
      GifByteType* block = nullptr;
      if (record == EXTENSION_RECORD_TYPE) {
        DGifGetExtension(codec, &number, &block);
        while (block != nullptr) DGifGetExtensionNext(codec, &block);
      } else {
        DGifGetImageDesc(codec);
        DGifGetCode(codec, &number, &block);
        while (block != nullptr) DGifGetCodeNext(codec, &block);
      }
    }
    DGifCloseFile(codec, &error);
  }
}

constexpr std::int32_t JoinedPages = 1000;

void RunSplit(benchmark::State& state) {
  for (auto _ : state) Split(JoinedPages);
}

void RunJoin(benchmark::State& state, Durability durability) {
  Split(JoinedPages);
  for (auto _ : state) Join(JoinedPages, durability);
}

void RunTiffcp(benchmark::State& state) {
  Split(JoinedPages);
  std::string command = "tiffcp";
  for (std::int32_t page = 1; page <= JoinedPages; ++page) command += " '" + PagePath(page) + "'";
  command += " '" + Folder().At("joined.tif") + "'";
  for (auto _ : state) {
    if (std::system(command.c_str()) != 0) state.SkipWithError("tiffcp (package libtiff-tools) did not run");
  }
}

const bool added = [] {
  const auto add = [](const std::string& name, auto run) {
    benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMillisecond)->UseRealTime();
  };
  for (const int pages : {1000, 5000, 32767}) {
    const std::string number = std::to_string(pages);
    add("DocumentInfo/" + number, [=](benchmark::State& state) { ReadHeaders(state, Document(pages)); });
    add("DocumentInfoByLibtiff/" + number,
        [=](benchmark::State& state) { ReadHeadersByLibrary(state, Document(pages)); });
  }
  add("DocumentInfoGif", [](benchmark::State& state) { ReadHeaders(state, Animation()); });
  add("DocumentInfoGifByGiflib", ReadGifByLibrary);
  add("DocumentPagesSplit", RunSplit);
  add("DocumentPagesJoin", [](benchmark::State& state) { RunJoin(state, Durability::Passing); });
  add("DocumentPagesJoinFlushed", [](benchmark::State& state) { RunJoin(state, Durability::Lasting); });
  add("DocumentPagesJoinByTiffcp", RunTiffcp);
  return true;
}();

}  // namespace
}  // namespace kw
