// The most memory that loading a page takes, beyond what the program had before, against the page's own pixels. The
// system counts it; if the system cannot be asked, nothing is reported.

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <benchmark/benchmark.h>

#include "picture/PictureDocument.h"

namespace kw {
namespace {

// A line of the system's account of this process, in bytes; 0 if there is none.
double Account(const std::string& name) {
  std::ifstream file("/proc/self/status");
  for (std::string line; std::getline(file, line);) {
    constexpr double kibi = 1024;
    if (line.starts_with(name + ":")) return std::stod(line.substr(name.size() + 1)) * kibi;
  }
  return 0;
}

// From now on the peak is counted anew.
bool ForgetPeak() {
  std::ofstream file("/proc/self/clear_refs");
  return static_cast<bool>(file << "5" << std::flush);
}

// Pages so large that the C library gives their memory back to the system at once.
constexpr std::int32_t SideOfBits = 20000;
constexpr std::int32_t SideOfColours = 6000;

void Load(benchmark::State& state, const std::string& extension, int bitsPerPixel) {
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("kwbench" + std::to_string(std::random_device()()) + extension);
  {
    const std::int32_t side = bitsPerPixel == 1 ? SideOfBits : SideOfColours;
    Bitmap page(side, side, bitsPerPixel);
    for (std::int32_t y = 0; y < side; ++y) {
      const auto row = page.MutableRow(y);
      for (std::size_t i = 0; i < row.size(); ++i) {
        const std::size_t mark = i * 7 + static_cast<std::size_t>(y / 8) * 13;
        row[i] = static_cast<std::uint8_t>(bitsPerPixel == 1 ? (y % 64 < 24 && mark % 5 == 0 ? mark : 0) : mark / 50);
      }
    }
    PictureDocument maker;
    maker.Replace(std::move(page));
    maker.Save(path.string());
  }
  double most = 0;
  double pixels = 0;
  for (auto _ : state) {
    const double before = Account("VmRSS");
    if (before == 0 || !ForgetPeak()) state.SkipWithError("the system does not account for memory");
    PictureDocument engine;
    if (!engine.Load(path.string())) state.SkipWithError(engine.LastLoadError().c_str());
    most = std::max(most, Account("VmHWM") - before);
    pixels = static_cast<double>(engine.Current().Stride()) * engine.Height();
  }
  std::filesystem::remove(path);
  constexpr double mega = 1e6;
  std::array<char, 96> label{};
  std::snprintf(label.data(), label.size(), "%.2f MB for a page of %.2f MB: %.2f", most / mega, pixels / mega,
                most / pixels);
  state.SetLabel(label.data());
}

const bool added = [] {
  for (const std::string extension : {".tif", ".fmf", ".jpg", ".gif", ".bmp"}) {
    for (const int bits : {1, 24}) {
      // These would hold a page of another depth.
      if (bits == 1 && (extension == ".jpg" || extension == ".gif")) continue;
      benchmark::RegisterBenchmark(("Memory/" + extension.substr(1) + "/" + std::to_string(bits)).c_str(),
                                   [=](benchmark::State& state) { Load(state, extension, bits); })
          ->Iterations(1)
          ->Unit(benchmark::kMillisecond);
    }
  }
  return true;
}();

}  // namespace
}  // namespace kw
