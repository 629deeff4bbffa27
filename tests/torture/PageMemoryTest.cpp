// The memory that a page takes while something is done with it: no more than two copies of it, the one that is shown
// among them. A copy is that of the deepest of the pages before, behind and, as docs/effects.md says, between.

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "components/base/PixelBlock.h"
#include "picture/effects/Effect.h"
#include "tests/support/EditorFixture.h"
#include "tests/torture/FailingMemory.h"

namespace kw::test {
namespace {

// Rows and tables of the threads; the models and texts of the editor.
constexpr double Besides = 0.2;
constexpr std::int64_t Fixed = std::int64_t{1} << 19U;

Bitmap PageOf(int bitsPerPixel) {
  // A4 at 300 dpi, or at 150 dpi.
  const std::int32_t scale = bitsPerPixel == 1 ? 2 : 1;
  Bitmap page(1240 * scale, 1754 * scale, bitsPerPixel);
  for (std::int32_t y = 0; y < page.Height(); ++y) {
    const auto row = page.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = static_cast<std::uint8_t>(y % 40 < 12 && i % 9 < 5 ? i * 7 + static_cast<std::size_t>(y) * 3 : 0xFF);
    }
  }
  return page;
}

std::int64_t SizeOf(const Bitmap& page) {
  if (page.IsEmpty()) return 0;
  return static_cast<std::int64_t>(PixelMemory(page.Width(), page.Height(), page.BitsPerPixel()));
}

// The most that is held during the step: a page that is shown, the block that is spared for the next one, and what the
// step takes beyond them.
template <typename Step>
std::int64_t PeakOf(const Bitmap& shown, const Step& step) {
  const std::int64_t before = SizeOf(shown) + static_cast<std::int64_t>(SparedBytes());
  const HeldMemory memory;
  step();
  return before + memory.Peak();
}

std::string Told(const std::string& what, int bits, std::int64_t peak, std::int64_t copy) {
  return what + " of " + std::to_string(bits) + " bits: " + std::to_string(static_cast<double>(peak) / 1e6) + " MB, " +
         std::to_string(static_cast<double>(peak) / static_cast<double>(copy)) + " copies";
}

void ExpectTwoCopies(const std::string& what, int bits, std::int64_t peak, std::int64_t copy) {
  std::cout << Told(what, bits, peak, copy) << std::endl;
  EXPECT_LE(static_cast<double>(peak - Fixed), (2 + Besides) * static_cast<double>(copy))
      << Told(what, bits, peak, copy);
}

// An effect with its values.
struct EffectRun {
  std::string command;
  std::vector<double> values;
};

// Each effect with what it does by default, and those that work otherwise with other values.
std::vector<EffectRun> EffectRuns() {
  std::vector<EffectRun> runs;
  for (const Effect& effect : Effects()) {
    if (!HoldsSettings(effect)) runs.push_back({std::string(effect.command), StandardValues(effect)});
  }
  runs.push_back({"Blur", {10}});
  runs.push_back({"Resize", {70, 0, 0, 0}});
  runs.push_back({"Resize", {110, 0, 0, 0}});
  runs.push_back({"Rotate", {7}});
  runs.push_back({"Rotate", {180}});
  return runs;
}

class EffectMemory : public testing::TestWithParam<int> {};

// The layer shares the page with the engine until the effect has changed it.
TEST_P(EffectMemory, IsTwoCopiesOfTheLargerPage) {
  const int bits = GetParam();
  const Bitmap shown = PageOf(bits);
  for (const EffectRun& run : EffectRuns()) {
    PictureDocument engine;
    engine.Replace(shown);
    const std::int64_t peak = PeakOf(shown, [&] { engine.Apply(*FindEffect(run.command), run.values); });
    const std::int64_t copy = std::max(SizeOf(shown), SizeOf(engine.Current()));
    // A wide blur keeps many rows of each band.
    const bool isWide = run.command == "Blur" && run.values[0] == 10;
    const std::int64_t beside = isWide ? copy / 2 : 0;
    ExpectTwoCopies(run.command, bits, peak - beside, copy);
  }
}

INSTANTIATE_TEST_SUITE_P(All, EffectMemory, testing::Values(1, 8, 24));

class EditorMemory : public EditorTest, public testing::WithParamInterface<int> {
protected:
  const Bitmap& Shown() { return Form().TransLayers(1).Picture(); }
  std::string WriteTwoPages(int bits) const {
    std::string path = folder.File("document.tif");
    for (int page = 0; page < 2; ++page) {
      PictureDocument maker;
      maker.Replace(PageOf(bits));
      maker.Append(path);
    }
    return path;
  }
};

TEST_P(EditorMemory, OfAPageTurnIsTwoCopies) {
  const int bits = GetParam();
  const std::string path = WriteTwoPages(bits);
  desktop.Allow("");
  control->OpenFile(path);
  Form().PageIndex.SetValue(2);
  const Bitmap& shown = Shown();
  ASSERT_EQ(bits, shown.BitsPerPixel());
  const std::int64_t peak = PeakOf(shown, [&] { Form().PageIndex.SetValue(1); });
  ExpectTwoCopies("Page turn", bits, peak, SizeOf(shown));
}

TEST_P(EditorMemory, OfACommandIsTwoCopiesOfTheLargerPage) {
  const int bits = GetParam();
  PictureDocument maker;
  maker.Replace(PageOf(bits));
  const std::string path = folder.File("page.bmp");
  maker.Save(path);
  desktop.Allow("");
  for (const Effect& effect : Effects()) {
    if (HoldsSettings(effect)) continue;
    // What the effect makes, before the page takes its depth again.
    Bitmap between = PageOf(bits);
    ApplyEffect(effect, between);
    // Unless the effect gives the page its depth in one step.
    const bool isKept = effect.keepingDepth != nullptr && between.BitsPerPixel() != bits;
    const std::int64_t own = SizeOf(PageOf(bits));
    const std::int64_t largest = isKept ? own : std::max(own, SizeOf(between));
    // A smaller page between stands beside the page before and the page behind.
    const std::int64_t beside = !isKept && SizeOf(between) < largest ? SizeOf(between) : 0;
    between = {};
    control->OpenFile(path);
    const std::int64_t peak =
        PeakOf(Shown(), [&] { Form().tbrMoreTools.ButtonClick.Raise(std::string(effect.command)); });
    ExpectTwoCopies(std::string(effect.command), bits, peak - beside, largest);
  }
}

TEST_P(EditorMemory, OfADocumentAndAllThatIsDoneWithItIsTwoCopies) {
  const int bits = GetParam();
  const std::string path = WriteTwoPages(bits);
  desktop.Allow("");
  const std::int64_t copy = SizeOf(PageOf(bits));
  const std::int64_t peak = PeakOf(Bitmap(), [&] {
    control->OpenFile(path);
    for (const std::int32_t page : {2, 1}) Form().PageIndex.SetValue(page);
    for (const char* command : {"Invert", "Dilate", "Sharpen", "HorizontalFlip"}) {
      Form().tbrMoreTools.ButtonClick.Raise(command);
    }
  });
  ASSERT_EQ(copy, SizeOf(Shown()));
  ExpectTwoCopies("A document", bits, peak, copy);
}

INSTANTIATE_TEST_SUITE_P(All, EditorMemory, testing::Values(1, 8, 24));

TEST(PixelBlockMemory, IsFreedBeforeALargerBlockIsRefused) {
  const PixelBlock living = TakePixelBlock(PixelBlock::LeastSpared);
  GiveBack(TakePixelBlock(PixelBlock::LeastSpared));
  ASSERT_EQ(PixelBlock::LeastSpared, SparedBytes());
  {
    const FailingMemory memory(FailingMemory::Failing::FromThenOn, 1);
    EXPECT_EQ(nullptr, TakePixelBlock(2 * PixelBlock::LeastSpared).begin);
    EXPECT_EQ(nullptr, TakeZeroedPixelBlock(2 * PixelBlock::LeastSpared).begin);
  }
  EXPECT_EQ(0U, SparedBytes());
  GiveBack(living);
}

TEST(PixelBlockMemory, IsHadWithoutARequestIfItIsSpared) {
  const PixelBlock living = TakePixelBlock(PixelBlock::LeastSpared);
  GiveBack(TakePixelBlock(PixelBlock::LeastSpared));
  PixelBlock block;
  {
    const FailingMemory memory(FailingMemory::Failing::FromThenOn, 1);
    block = TakePixelBlock(PixelBlock::LeastSpared);
    EXPECT_EQ(0, memory.Requests());
  }
  EXPECT_NE(nullptr, block.begin);
  GiveBack(block);
  GiveBack(living);
}

}  // namespace
}  // namespace kw::test
