#include <array>
#include <string>

#include "picture/effects/DepthEffects.h"
#include "picture/effects/Effect.h"
#include "picture/effects/FilterEffects.h"
#include "picture/effects/Flip.h"
#include "picture/effects/Morphology.h"
#include "picture/effects/Pixels.h"
#include "picture/effects/PointEffects.h"
#include "picture/effects/Resize.h"
#include "picture/effects/Rotate.h"

namespace kw {
namespace {

constexpr std::string_view Kernels[] = {"Lanczos", "Bicubic"};

// name, least, greatest, default, whole numbers only, unit, meaning of 0, names of the numbers
constexpr Parameter Angle[] = {{"Angle", -360, 360, 90, false, "degrees"}};
constexpr Parameter BlurSigma[] = {{"Sigma", 0, 50, 0, false, "pixels", "1.5, in 1 bit 0.8"}};
constexpr Parameter Brightness[] = {{"Percent", 0, 100, 10, false, "%"}};
constexpr Parameter Contrasting[] = {{"Percent", -100, 300, 20, false, "%"}};
constexpr Parameter Tint[] = {{"Hue", 0, 360, 30, false, "degrees"}, {"Strength", 0, 100, 50, false, "%"}};
constexpr Parameter Relief[] = {{"Percent", 0, 400, 100, false, "%"}};
constexpr Parameter Sharpness[] = {{"Percent", 0, 400, 100, false, "%"}};
constexpr std::string_view InProportion = "in proportion";
constexpr Parameter Size[] = {{"Percent", 1, 1000, 50, false, "%"},
                              {"Width", 0, 100000, 0, true, "pixels", InProportion},
                              {"Height", 0, 100000, 0, true, "pixels", InProportion},
                              {"Kernel", 0, 1, 0, true, {}, {}, Kernels}};
constexpr Parameter Level[] = {{"Level", 0, 255, 0, true, {}, "found automatically"}};

constexpr std::string_view Same = "as before";
constexpr std::string_view Filtered = "1, 4 and 8: 8 where the palette is grey, else 24; 24 and 32 as before";
constexpr std::string_view OneBit = "1";

constexpr std::size_t EffectCount = 22;

std::array<Effect, EffectCount> Rows(std::span<const Parameter> all) {
  return {{
      {"Blur", Blur, BlurSigma, Filtered, false, MemoryInValues},
      {"Colorize", Colorize, Tint, Same, true},
      {"Contrast", Contrast, Contrasting, Same, false},
      {"Darken", Darken, Brightness, Same, false},
      {"DecreaseBpp", DecreaseBpp, {}, "the next below among 32, 24, 8, 4, 1", false},
      {"Dilate",
       Dilate,
       {},
       "1 as before; 4 and 8: 8 where the palette is grey, else 24; 24 and 32 as before",
       false,
       MemoryOfSpread},
      {"Dither", Dither, {}, OneBit, false},
      {"Edge", Edge, {}, Filtered, false, MemoryInValues},
      {"Emboss", Emboss, Relief, Filtered, false, MemoryInValues},
      {"Erode",
       Erode,
       {},
       "1 as before; 4 and 8: 8 where the palette is grey, else 24; 24 and 32 as before",
       false,
       MemoryOfSpread},
      {"GrayScale", GrayScale, {}, "24: 8; others as before", false},
      {"HorizontalFlip", HorizontalFlip, {}, Same, false, nullptr, true},
      {"IncreaseBpp", IncreaseBpp, {}, "the next above among 1, 4, 8, 24, 32", false, MemoryOfIncrease},
      {"Invert", Invert, {}, Same, false},
      {"Lighten", Lighten, Brightness, Same, false},
      {"Option", nullptr, all, Same, true},
      {"Resize", Resize, Size, Filtered, true, MemoryOfResize, true},
      {"Rotate", Rotate, Angle,
       "as before at multiples of 90 degrees; else 1, 4 and 8: 8 where the palette is grey, else 24", true,
       MemoryOfRotate, true},
      {"Sharpen", Sharpen, Sharpness, Filtered, false, MemoryInValues},
      {"Soften", Soften, {}, Filtered, false, MemoryInValues},
      {"Threshold", Threshold, Level, OneBit, true, nullptr, false, FindLevel},
      {"VerticalFlip", VerticalFlip, {}, Same, false, nullptr, true},
  }};
}

// The table and what its row "Option" refers to: each parameter of the others, named <command><parameter>.
struct Table {
  std::array<Effect, EffectCount> rows;
  std::vector<std::string> names;
  std::vector<Parameter> all;

  Table() : rows(Rows({})) {
    for (const Effect& row : rows) {
      for (const Parameter& parameter : row.parameters) {
        names.push_back(std::string(row.command).append(parameter.name));
        all.push_back(parameter);
      }
    }
    for (std::size_t i = 0; i < all.size(); ++i) all[i].name = names[i];
    rows = Rows(all);
  }
};

}  // namespace

std::span<const Effect> Effects() {
  static const Table table;
  return table.rows;
}

}  // namespace kw
