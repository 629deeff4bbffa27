// Every effect on an A4 page of 300 dpi, beside a copy of the page's memory and, if they are installed, OpenCV and
// Leptonica doing the same. The last argument of the benchmarks of ours is the number of threads.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/EffectPages.h"
#include "bench/Pages.h"
#include "picture/PictureDocument.h"
#include "picture/effects/Effect.h"
#include "picture/effects/ParallelRows.h"

#ifdef KW_HAS_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef KW_HAS_LEPTONICA
#include "bench/Leptonica.h"
#endif

namespace kw {
namespace {

void Copy(benchmark::State& state, const Bitmap& page) {
  const std::size_t bytes = page.Stride() * static_cast<std::size_t>(page.Height());
  std::vector<std::uint8_t> copy(bytes);
  for (auto _ : state) {
    std::memcpy(copy.data(), page.Row(0).data(), bytes);
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
}

void RunEffect(benchmark::State& state, const Effect& effect, const std::vector<double>& values, const Bitmap& page) {
  SetMostThreads(static_cast<unsigned>(state.range(0)));
  Bitmap own = page;
  own.MutableRow(0);
  for (auto _ : state) {
    // An effect that works in place goes on with its own result; one that makes a new picture begins with the page.
    Bitmap picture = std::move(own);
    ApplyEffect(effect, picture, values);
    benchmark::DoNotOptimize(picture.Row(0).data());
    const bool inPlace = picture.BitsPerPixel() == page.BitsPerPixel() && picture.Width() == page.Width();
    if (!inPlace) picture = page;
    own = std::move(picture);
  }
  SetMostThreads(0);
}

benchmark::internal::Benchmark* AddEffect(const std::string& name, const Effect& effect, std::vector<double> values,
                                          int bits) {
  return benchmark::RegisterBenchmark(("Effect/" + name + "/" + std::to_string(bits)).c_str(),
                                      [&effect, values = std::move(values), bits](benchmark::State& state) {
                                        RunEffect(state, effect, values, PageOf(bits));
                                      })
      ->Arg(1)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
}

void AddEffects() {
  for (const int bits : {24, 32, 8, 4, 1}) {
    benchmark::RegisterBenchmark(("CopyPage/" + std::to_string(bits)).c_str(), [bits](benchmark::State& state) {
      Copy(state, PageOf(bits));
    })->Unit(benchmark::kMillisecond);
    for (const Effect& effect : Effects()) {
      if (effect.procedure == nullptr) continue;
      auto* const added = AddEffect(std::string(effect.command), effect, StandardValues(effect), bits);
      // The other depths are cut into bands as this one is.
      for (unsigned threads = 2; bits == 24 && threads <= std::min(16U, std::thread::hardware_concurrency());
           threads *= 2) {
        added->Arg(threads);
      }
    }
  }
  AddEffect("BlurWide", *FindEffect("Blur"), {10}, 24);
  AddEffect("RotateFreely", *FindEffect("Rotate"), {7}, 24);
}

// Real scans: the first pages of the documents in the folder that KW_BENCH_SAMPLES names.
void AddSamples() {
  const char* const folder = std::getenv("KW_BENCH_SAMPLES");
  if (folder == nullptr) return;
  std::error_code missing;
  for (const auto& file : std::filesystem::directory_iterator(folder, missing)) {
    PictureDocument document;
    if (!file.is_regular_file() || !document.Load(file.path().string())) continue;
    const auto page = std::make_shared<const Bitmap>(document.Current());
    const std::string name = "Sample/" + file.path().stem().string() + "/";
    benchmark::RegisterBenchmark((name + "CopyPage").c_str(), [page](benchmark::State& state) {
      Copy(state, *page);
    })->Unit(benchmark::kMillisecond);
    for (const Effect& effect : Effects()) {
      if (effect.procedure == nullptr) continue;
      benchmark::RegisterBenchmark(
          (name + std::string(effect.command)).c_str(),
          [&effect, page](benchmark::State& state) { RunEffect(state, effect, StandardValues(effect), *page); })
          ->Arg(1)
          ->Unit(benchmark::kMillisecond)
          ->UseRealTime();
    }
  }
}

#ifdef KW_HAS_OPENCV
using Process = void (*)(const cv::Mat& from, cv::Mat& to);

void RunOpenCv(benchmark::State& state, Process process, int bitsPerPixel) {
  cv::setNumThreads(1);
  Bitmap page = PageOf(bitsPerPixel);
  const cv::Mat from(PageHeight, PageWidth, bitsPerPixel == 24 ? CV_8UC3 : CV_8UC1, page.MutableRow(0).data(),
                     page.Stride());
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
  add("BlurWide", [](const cv::Mat& from, cv::Mat& to) {
    cv::GaussianBlur(from, to, {0, 0}, 10, 10, cv::BORDER_REPLICATE);
  });
  add("RotateFreely", [](const cv::Mat& from, cv::Mat& to) {
    // The page that holds the rotated one, as ours makes it.
    constexpr double radians = 7 * 3.14159265358979323846 / 180;
    const double across = std::cos(radians);
    const double along = std::sin(radians);
    const cv::Size size(static_cast<int>(std::ceil(PageWidth * across + PageHeight * along)),
                        static_cast<int>(std::ceil(PageWidth * along + PageHeight * across)));
    cv::Mat turn = cv::getRotationMatrix2D({(PageWidth - 1) / 2.0F, (PageHeight - 1) / 2.0F}, -7, 1);
    turn.at<double>(0, 2) += (size.width - PageWidth) / 2.0;
    turn.at<double>(1, 2) += (size.height - PageHeight) / 2.0;
    cv::warpAffine(from, to, turn, size, cv::INTER_LINEAR, cv::BORDER_CONSTANT, cv::Scalar(255, 255, 255));
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
void AddLeptonica() {
  using Operation = PIX* (*)(PIX*);
  const auto add = [](const char* name, int bits, Operation operation) {
    benchmark::RegisterBenchmark((std::string("Leptonica/") + name).c_str(), [=](benchmark::State& state) {
      PIX* page = leptonica::ToPix(PageOf(bits));
      for (auto _ : state) {
        PIX* result = operation(page);
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
  add("Dither/8", 8, leptonica::Dithered);
  add("DecreaseBpp/24", 24, leptonica::To256Colours);
}
#else
void AddLeptonica() {}
#endif

// The benchmarks are made by name; this runs before main().
const bool added = [] {
  AddEffects();
  AddSamples();
  AddOpenCv();
  AddLeptonica();
  return true;
}();

}  // namespace
}  // namespace kw
