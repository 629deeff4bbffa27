// Whole commands, as who works at the command line compares them: kwpic beside vips and GraphicsMagick on the same
// files of A4 at 300 dpi, with the same compression and quality of the result. The files lie in memory where the
// system offers that, because kwpic waits for the disk and the others do not.

#include <array>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/BareCodecs.h"
#include "bench/Pages.h"
#include "picture/File.h"
#include "picture/PictureDocument.h"

namespace kw {
namespace {

class CommandFolder {
public:
  CommandFolder() {
    const std::filesystem::path memory = "/dev/shm";
    path = (is_directory(memory) ? memory : std::filesystem::temp_directory_path()) /
           ("kwbench-commands" + std::to_string(std::random_device()()));
    create_directories(path);
    PictureDocument engine;
    engine.Replace(Photograph());
    // Without restart markers, as most programs write it.
    OutputFile photograph((path / "in.jpg").string(), Durability::Passing);
    CodeJpegBare(Photograph(), {}, photograph);
    photograph.Commit();
    engine.SaveScratch((path / "in.tif").string(), {});
  }
  CommandFolder(const CommandFolder&) = delete;
  CommandFolder& operator=(const CommandFolder&) = delete;
  ~CommandFolder() { remove_all(path); }

  std::filesystem::path path;
};

// Each runs in the folder; what a program cannot do is empty.
struct CommandRow {
  const char* name;
  const char* ours;
  const char* vips;
  const char* graphicsMagick;
};

constexpr std::array<CommandRow, 5> Rows{{
    {"JpegBlur", "apply Blur in.jpg out.jpg --Sigma 1.5", "vips gaussblur in.jpg vips.jpg[Q=90] 1.5",
     "gm convert in.jpg -blur 0x1.5 -quality 90 -sampling-factor 1x1 gm.jpg"},
    {"JpegHalf", "apply Resize in.jpg out.jpg --Percent 50", "vipsthumbnail in.jpg -s 1240x1754 -o vips.jpg[Q=90]",
     "gm convert in.jpg -resize 50% -quality 90 -sampling-factor 1x1 gm.jpg"},
    {"JpegToBmp", "convert in.jpg out.bmp", "", "gm convert in.jpg gm.bmp"},
    {"TiffRotate", "apply Rotate in.tif out.tif --Angle 90",
     "vips rot in.tif vips.tif[compression=lzw,predictor=horizontal] d90",
     "gm convert in.tif -rotate 90 -compress LZW gm.tif"},
    {"TiffBlur", "apply Blur in.tif out.tif --Sigma 1.5",
     "vips gaussblur in.tif vips.tif[compression=lzw,predictor=horizontal] 1.5",
     "gm convert in.tif -blur 0x1.5 -compress LZW gm.tif"},
}};

void RunCommand(benchmark::State& state, const std::string& command) {
  static const CommandFolder folder;
  const std::string line = "cd '" + folder.path.string() + "' && " + command + " >/dev/null 2>&1";
  for (auto _ : state) {
    if (std::system(line.c_str()) != 0) {
      state.SkipWithError("it did not run");
      break;
    }
  }
}

const bool added = [] {
  const auto add = [](const std::string& name, const std::string& command) {
    benchmark::RegisterBenchmark(name.c_str(), [command](benchmark::State& state) { RunCommand(state, command); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
  };
  for (const CommandRow& row : Rows) {
    const std::string name = row.name;
    add("Command/" + name, "'" KW_KWPIC "' " + std::string(row.ours));
    if (*row.vips != 0) add("CommandByVips/" + name, row.vips);
    add("CommandByGraphicsMagick/" + name, row.graphicsMagick);
  }
  return true;
}();

}  // namespace
}  // namespace kw
