// Every effect on an A4 page of 300 dpi, beside a copy of the page's memory and, if they are installed, OpenCV and
// Leptonica doing the same. The last argument of the benchmarks of ours is the number of threads.

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <string>

#include "picture/Depth.h"
#include "picture/effects/Effect.h"
#include "picture/effects/ParallelRows.h"

#ifdef KW_HAS_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef KW_HAS_LEPTONICA
#include <leptonica/allheaders.h>
#endif

namespace kw {
namespace {

constexpr std::int32_t Width = 2480;
constexpr std::int32_t Height = 3508;

// Light paper with dark marks and the noise of a scanner.
Bitmap Page(int bitsPerPixel) {
  Bitmap page(Width, Height, bitsPerPixel);
  page.SetResolution(300, 300);
  std::minstd_rand random(7);
  for (std::int32_t y = 0; y < Height; ++y) {
    const auto row = page.MutableRow(y);
    if (bitsPerPixel == 1) {
      for (std::uint8_t& byte : row)
        byte = y % 50 < 20 && random() % 3 == 0 ? static_cast<std::uint8_t>(random()) : 255;
    } else {
      for (std::size_t i = 0; i < row.size(); ++i) {
        const unsigned level = y % 50 < 20 && i / 30 % 5 < 2 ? 40U + static_cast<unsigned>(i) % 60 : 225U;
        row[i] = static_cast<std::uint8_t>(level + static_cast<unsigned>(random()) % 24);
      }
    }
  }
  return page;
}

const Bitmap& PageOf(int bitsPerPixel) {
  static const Bitmap colours = Page(24);
  static const Bitmap greys = Page(8);
  static const Bitmap bits = Page(1);
  return bitsPerPixel == 24 ? colours : bitsPerPixel == 8 ? greys : bits;
}

void CopyPage(benchmark::State& state, int bitsPerPixel) {
  const Bitmap& page = PageOf(bitsPerPixel);
  const std::size_t bytes = page.Stride() * static_cast<std::size_t>(Height);
  std::vector<std::uint8_t> copy(bytes);
  for (auto _ : state) {
    std::memcpy(copy.data(), page.Row(0).data(), bytes);
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
}

void RunEffect(benchmark::State& state, const std::string& command, int bitsPerPixel) {
  SetMostThreads(static_cast<unsigned>(state.range(0)));
  const Effect& effect = *FindEffect(command);
  std::vector<double> values;
  for (const Parameter& parameter : effect.parameters) values.push_back(parameter.standard);
  Bitmap own = PageOf(bitsPerPixel);
  own.MutableRow(0);
  for (auto _ : state) {
    // An effect that works in place goes on with its own result; one that makes a new picture begins with the page.
    Bitmap picture = std::move(own);
    ApplyEffect(effect, picture, values);
    benchmark::DoNotOptimize(picture.Row(0).data());
    const bool inPlace = picture.BitsPerPixel() == bitsPerPixel && picture.Width() == Width;
    if (!inPlace) picture = PageOf(bitsPerPixel);
    own = std::move(picture);
  }
  SetMostThreads(0);
}

#ifdef KW_HAS_OPENCV
using Process = void (*)(const cv::Mat& from, cv::Mat& to);

void RunOpenCv(benchmark::State& state, Process process, int bitsPerPixel) {
  cv::setNumThreads(1);
  Bitmap page = PageOf(bitsPerPixel);
  const cv::Mat from(Height, Width, bitsPerPixel == 24 ? CV_8UC3 : CV_8UC1, page.MutableRow(0).data(), page.Stride());
  for (auto _ : state) {
    // As with ours, the result is a new picture.
    cv::Mat to;
    process(from, to);
    benchmark::DoNotOptimize(to.data);
  }
}

void WithKernel(const cv::Mat& from, cv::Mat& to, std::initializer_list<float> weights) {
  cv::filter2D(from, to, -1, cv::Mat_<float>(weights).reshape(1, 3), {-1, -1}, 0, cv::BORDER_REPLICATE);
}

void AddOpenCv() {
  const auto add = [](const char* name, Process process, int bits = 24) {
    benchmark::RegisterBenchmark((std::string("OpenCV/") + name).c_str(), [=](benchmark::State& state) {
      RunOpenCv(state, process, bits);
    })->Unit(benchmark::kMillisecond);
  };
  add("HorizontalFlip", [](const cv::Mat& from, cv::Mat& to) { cv::flip(from, to, 1); });
  add("VerticalFlip", [](const cv::Mat& from, cv::Mat& to) { cv::flip(from, to, 0); });
  add("Rotate", [](const cv::Mat& from, cv::Mat& to) { cv::rotate(from, to, cv::ROTATE_90_CLOCKWISE); });
  add("Invert", [](const cv::Mat& from, cv::Mat& to) { cv::bitwise_not(from, to); });
  add("Contrast", [](const cv::Mat& from, cv::Mat& to) { from.convertTo(to, -1, 1.2, -25.5); });
  add("GrayScale", [](const cv::Mat& from, cv::Mat& to) { cv::cvtColor(from, to, cv::COLOR_BGR2GRAY); });
  add("Blur", [](const cv::Mat& from, cv::Mat& to) {
    cv::GaussianBlur(from, to, {0, 0}, 1.5, 1.5, cv::BORDER_REPLICATE);
  });
  add("Soften", [](const cv::Mat& from, cv::Mat& to) {
    cv::GaussianBlur(from, to, {3, 3}, 0, 0, cv::BORDER_REPLICATE);
  });
  add("Sharpen", [](const cv::Mat& from, cv::Mat& to) { WithKernel(from, to, {0, -1, 0, -1, 5, -1, 0, -1, 0}); });
  add("Emboss", [](const cv::Mat& from, cv::Mat& to) { WithKernel(from, to, {-2, -1, 0, -1, 1, 1, 0, 1, 2}); });
  add("Dilate", [](const cv::Mat& from, cv::Mat& to) { cv::dilate(from, to, cv::Mat()); });
  add("Erode", [](const cv::Mat& from, cv::Mat& to) { cv::erode(from, to, cv::Mat()); });
  add("Resize", [](const cv::Mat& from, cv::Mat& to) { cv::resize(from, to, {}, 0.5, 0.5, cv::INTER_AREA); });
  add(
      "Edge/8",
      [](const cv::Mat& from, cv::Mat& to) {
        cv::Mat across;
        cv::Mat down;
        cv::Sobel(from, across, CV_16S, 1, 0);
        cv::Sobel(from, down, CV_16S, 0, 1);
        cv::convertScaleAbs(across, across);
        cv::convertScaleAbs(down, down);
        cv::addWeighted(across, 0.5, down, 0.5, 0, to);
      },
      8);
  add(
      "Threshold/8",
      [](const cv::Mat& from, cv::Mat& to) { cv::threshold(from, to, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU); },
      8);
}
#else
void AddOpenCv() {}
#endif

#ifdef KW_HAS_LEPTONICA
PIX* ToPix(const Bitmap& page) {
  PIX* const pix = pixCreate(Width, Height, page.BitsPerPixel() == 24 ? 32 : page.BitsPerPixel());
  for (std::int32_t y = 0; y < Height; ++y) {
    for (std::int32_t x = 0; x < Width; ++x) {
      const Rgb c = page.PixelAt(x, y);
      if (page.BitsPerPixel() == 24) {
        pixSetRGBPixel(pix, x, y, c.red, c.green, c.blue);
      } else {
        pixSetPixel(pix, x, y, page.BitsPerPixel() == 1 ? c.red == 0 : c.red);
      }
    }
  }
  return pix;
}

void AddLeptonica() {
  using Process = PIX* (*)(PIX*);
  const auto add = [](const char* name, int bits, Process process) {
    benchmark::RegisterBenchmark((std::string("Leptonica/") + name).c_str(), [=](benchmark::State& state) {
      PIX* page = ToPix(PageOf(bits));
      for (auto _ : state) {
        PIX* result = process(page);
        benchmark::DoNotOptimize(result);
        if (result != page) pixDestroy(&result);
      }
      pixDestroy(&page);
    })->Unit(benchmark::kMillisecond);
  };
  add("Invert/1", 1, [](PIX* page) { return pixInvert(page, page); });
  add("HorizontalFlip/1", 1, [](PIX* page) { return pixFlipLR(page, page); });
  add("Rotate/1", 1, [](PIX* page) { return pixRotate90(page, 1); });
  add("Dilate/1", 1, [](PIX* page) { return pixDilateBrick(nullptr, page, 3, 3); });
  add("Erode/1", 1, [](PIX* page) { return pixErodeBrick(nullptr, page, 3, 3); });
  add("Dither/8", 8, [](PIX* page) { return pixDitherToBinary(page); });
  add("DecreaseBpp/24", 24, [](PIX* page) { return pixMedianCutQuantGeneral(page, 0, 8, 256, 5, 1, 1); });
}
#else
void AddLeptonica() {}
#endif

// The benchmarks are made by name; this runs before main().
const bool added = [] {
  for (const int bits : {24, 8, 1}) {
    benchmark::RegisterBenchmark(("CopyPage/" + std::to_string(bits)).c_str(), [bits](benchmark::State& state) {
      CopyPage(state, bits);
    })->Unit(benchmark::kMillisecond);
    for (const Effect& effect : Effects()) {
      if (effect.procedure == nullptr) continue;
      const std::string command(effect.command);
      benchmark::RegisterBenchmark(("Effect/" + command + "/" + std::to_string(bits)).c_str(),
                                   [=](benchmark::State& state) { RunEffect(state, command, bits); })
          ->Arg(1)
          ->Arg(2)
          ->Unit(benchmark::kMillisecond)
          ->UseRealTime();
    }
  }
  AddOpenCv();
  AddLeptonica();
  return true;
}();

}  // namespace
}  // namespace kw
