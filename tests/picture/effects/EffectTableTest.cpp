#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <map>
#include <set>
#include <string>

#include "picture/PictureDocument.h"
#include "picture/effects/Effect.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();

TEST(EffectTable, HoldsEveryCommand) {
  const std::set<std::string_view> commands{
      "Blur",   "Colorize", "Contrast",  "Darken", "DecreaseBpp", "Dilate",      "Dither", "Edge",
      "Emboss", "Erode",    "GrayScale", "Invert", "IncreaseBpp", "Option",      "Resize", "HorizontalFlip",
      "Rotate", "Lighten",  "Sharpen",   "Soften", "Threshold",   "VerticalFlip"};
  std::set<std::string_view> rows;
  for (const Effect& effect : Effects()) rows.insert(effect.command);
  EXPECT_EQ(commands, rows);
  EXPECT_EQ(commands.size(), Effects().size());
  for (const std::string_view command : commands) EXPECT_EQ(command, FindEffect(command)->command);
  EXPECT_EQ(nullptr, FindEffect("blur"));
  EXPECT_EQ(nullptr, FindEffect(""));
}

TEST(EffectTable, DefaultsAreInRange) {
  for (const Effect& effect : Effects())
    EXPECT_NO_THROW(RequireInRange(effect, StandardValues(effect))) << effect.command;
}

TEST(EffectTable, RangesAndDefaultsAreTheDocumentedOnes) {
  struct Documented {
    const char* name;
    double least;
    double greatest;
    double standard;
    bool whole;
  };
  const Documented documented[] = {
      {"BlurSigma", 0, 50, 0, false},          {"ColorizeHue", 0, 360, 30, false},
      {"ColorizeStrength", 0, 100, 50, false}, {"ContrastPercent", -100, 300, 20, false},
      {"DarkenPercent", 0, 100, 10, false},    {"EmbossPercent", 0, 400, 100, false},
      {"LightenPercent", 0, 100, 10, false},   {"ResizePercent", 1, 1000, 50, false},
      {"ResizeWidth", 0, 100000, 0, true},     {"ResizeHeight", 0, 100000, 0, true},
      {"ResizeKernel", 0, 1, 0, true},         {"RotateAngle", -360, 360, 90, false},
      {"SharpenPercent", 0, 400, 100, false},  {"ThresholdLevel", 0, 255, 0, true},
  };
  const Effect& option = *FindEffect("Option");
  ASSERT_EQ(std::size(documented), option.parameters.size());
  for (std::size_t i = 0; i < option.parameters.size(); ++i) {
    const Parameter& parameter = option.parameters[i];
    EXPECT_EQ(documented[i].name, parameter.name);
    EXPECT_EQ(documented[i].least, parameter.least) << parameter.name;
    EXPECT_EQ(documented[i].greatest, parameter.greatest) << parameter.name;
    EXPECT_EQ(documented[i].standard, parameter.standard) << parameter.name;
    EXPECT_EQ(documented[i].standard, StandardValues(option)[i]) << parameter.name;
    EXPECT_EQ(documented[i].whole, parameter.whole) << parameter.name;
  }
}

// The column is for readers; each of its texts is a rule.
TEST(EffectTable, DepthOfTheResultIsTheOneThatTheTableTells) {
  const auto filtered = [](int depth, bool grey) { return depth > 8 ? depth : grey ? 8 : 24; };
  const std::map<std::string_view, std::function<int(int, bool)>> rules{
      {"as before", [](int depth, bool) { return depth; }},
      {"1", [](int, bool) { return 1; }},
      {"24: 8; others as before", [](int depth, bool) { return depth == 24 ? 8 : depth; }},
      {"1, 4 and 8: 8 where the palette is grey, else 24; 24 and 32 as before", filtered},
      {"1 as before; 4 and 8: 8 where the palette is grey, else 24; 24 and 32 as before",
       [&](int depth, bool grey) { return depth == 1 ? 1 : filtered(depth, grey); }},
      {"the next below among 32, 24, 8, 4, 1",
       [](int depth, bool) {
         return depth == 32 ? 24 : depth == 24 ? 8 : depth == 8 ? 4 : 1;
       }},
      {"the next above among 1, 4, 8, 24, 32",
       [](int depth, bool) {
         return depth == 1 ? 4 : depth == 4 ? 8 : depth == 8 ? 24 : 32;
       }},
  };
  constexpr std::string_view turned =
      "as before at multiples of 90 degrees; else 1, 4 and 8: 8 where the palette is grey, else 24";
  for (const Effect& effect : Effects()) {
    for (const int depth : {1, 4, 8, 24, 32}) {
      for (const bool grey : {false, true}) {
        const Bitmap before = Noise(23, 11, depth, !grey);
        const auto depthOf = [&](std::span<const double> values) {
          Bitmap picture = before;
          ApplyEffect(effect, picture, values);
          return picture.BitsPerPixel();
        };
        if (effect.resultingDepth == turned) {
          EXPECT_EQ(depth, depthOf(std::vector{180.0}));
          EXPECT_EQ(filtered(depth, grey), depthOf(std::vector{30.0}));
        } else {
          ASSERT_TRUE(rules.contains(effect.resultingDepth)) << effect.resultingDepth;
          EXPECT_EQ(rules.at(effect.resultingDepth)(depth, grey), depthOf(StandardValues(effect)))
              << effect.command << ' ' << depth;
        }
      }
    }
  }
}

TEST(EffectTable, OptionHoldsTheParametersOfAllOthers) {
  std::set<std::string> names;
  for (const Effect& effect : Effects()) {
    if (effect.command == "Option") continue;
    for (const Parameter& parameter : effect.parameters) {
      names.insert(std::string(effect.command).append(parameter.name));
    }
  }
  std::set<std::string> held;
  for (const Parameter& parameter : FindEffect("Option")->parameters) held.insert(std::string(parameter.name));
  EXPECT_EQ(names, held);
  EXPECT_EQ(names.size(), FindEffect("Option")->parameters.size());
}

// The ends of the ranges work, beyond them nothing does and the picture stays.
TEST(EffectTable, RangesAreKept) {
  for (const Effect& effect : Effects()) {
    for (std::size_t i = 0; i < effect.parameters.size(); ++i) {
      const Parameter& parameter = effect.parameters[i];
      const auto run = [&](double value) {
        Bitmap picture = Noise(9, 5, 24);
        const Bitmap before = picture;
        auto values = StandardValues(effect);
        // The other side would follow in proportion, beyond what there is memory for.
        if (effect.command == "Resize" && (i == 1 || i == 2)) values[3 - i] = 1;
        values[i] = value;
        const std::int32_t error = ErrorOf([&] { ApplyEffect(effect, picture, values); });
        EXPECT_TRUE(error == 0 || SamePicture(before, picture)) << effect.command;
        return error;
      };
      const std::string name = std::string(effect.command).append(parameter.name);
      EXPECT_EQ(0, run(parameter.least)) << name;
      EXPECT_EQ(0, run(parameter.greatest)) << name;
      for (const double bad : {parameter.least - 0.01, parameter.greatest + 0.01, NoNumber,
                               std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), run(bad)) << name << ' ' << bad;
      }
      if (parameter.whole) {
        EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), run(parameter.least + 0.5)) << name;
      }
    }
  }
}

TEST(EffectTable, WrongNumberOfValues) {
  Bitmap picture = Noise(9, 5, 24);
  for (const Effect& effect : Effects()) {
    auto values = StandardValues(effect);
    values.push_back(1);
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] { ApplyEffect(effect, picture, values); }));
  }
}

TEST(EffectTable, NoPicture) {
  for (const Effect& effect : Effects()) {
    Bitmap picture;
    EXPECT_EQ(NumberOf(ErrorNumber::ObjectVariableNotSet), ErrorOf([&] { ApplyEffect(effect, picture); }))
        << effect.command;
  }
}

TEST(EffectTable, TooLargeAResult) {
  Bitmap picture(200'000'000, 1, 1);
  const Bitmap before = picture;
  EXPECT_EQ(NumberOf(ErrorNumber::OutOfMemory), ErrorOf([&] {
              ApplyEffect(*FindEffect("Resize"), picture, std::vector{1000.0, 0.0, 0.0, 0.0});
            }));
  EXPECT_TRUE(SamePicture(before, picture));
}

// A copy that shares pixels with the picture does not change with it.
TEST(EffectTable, CopiesStay) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    for (const Effect& effect : Effects()) {
      Bitmap picture = Noise(23, 11, depth);
      const Bitmap copy = picture;
      ApplyEffect(effect, picture);
      EXPECT_TRUE(SamePicture(Noise(23, 11, depth), copy)) << effect.command << ' ' << depth;
    }
  }
}

TEST(EffectTable, ResolutionStays) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    for (const Effect& effect : Effects()) {
      Bitmap picture = Noise(23, 11, depth);
      picture.SetResolution(200, 100);
      ApplyEffect(effect, picture);
      const bool turned = effect.command == "Rotate";
      EXPECT_EQ(turned ? 100 : 200, picture.HorizontalResolution()) << effect.command << ' ' << depth;
      EXPECT_EQ(turned ? 200 : 100, picture.VerticalResolution()) << effect.command << ' ' << depth;
    }
  }
}

TEST(EffectSettings, OptionSetsWhatTheOthersUse) {
  EffectSettings settings;
  const Effect& option = *FindEffect("Option");
  const auto standing = settings.ValuesOf(option);
  std::vector<double> values(standing.begin(), standing.end());
  EXPECT_EQ(StandardValues(option), values);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (option.parameters[i].name == "BlurSigma") values[i] = 3;
    if (option.parameters[i].name == "RotateAngle") values[i] = 180;
  }
  settings.Set(option, values);
  EXPECT_EQ(3, settings.ValuesOf(*FindEffect("Blur"))[0]);
  EXPECT_EQ(180, settings.ValuesOf(*FindEffect("Rotate"))[0]);
  EXPECT_EQ(50, settings.ValuesOf(*FindEffect("Resize"))[0]);
}

TEST(EffectSettings, BadValuesChangeNothing) {
  EffectSettings settings;
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] {
              settings.Set(*FindEffect("Resize"), std::vector{70.0, 3.0, -1.0, 0.0});
            }));
  EXPECT_EQ(50, settings.ValuesOf(*FindEffect("Resize"))[0]);
  settings.Set(*FindEffect("Resize"), std::vector{70.0, 3.0, 1.0, 1.0});
  EXPECT_EQ(70, settings.ValuesOf(*FindEffect("Resize"))[0]);
}

class DocumentEffects : public ScratchTest {
protected:
  DocumentEffects() { document.Replace(before); }
  Bitmap before = Noise(40, 30, 24);
  PictureDocument document;
};

TEST_F(DocumentEffects, RunWithTheirValues) {
  for (const Effect& effect : Effects()) {
    document.Replace(before);
    document.Apply(effect, StandardValues(effect));
    Bitmap expected = before;
    ApplyEffect(effect, expected);
    EXPECT_TRUE(SamePicture(expected, document.Current())) << effect.command;
    EXPECT_EQ(expected.Width(), document.Width());
    EXPECT_EQ(expected.BitsPerPixel(), document.BitsPerPixel());
  }
}

TEST_F(DocumentEffects, LeaveAPictureThatNoLongerComesFromItsFile) {
  const std::string path = At("page.bmp");
  document.Save(path);
  ASSERT_TRUE(document.Load(path));
  const Effect& option = *FindEffect("Option");
  document.Apply(option, StandardValues(option));
  EXPECT_TRUE(document.IsLoadedFrom(path)) << "no picture was changed";
  const Effect& rotate = *FindEffect("Rotate");
  document.Apply(rotate, std::vector{180.0});
  EXPECT_FALSE(document.IsLoadedFrom(path));
  ApplyEffect(rotate, before, std::vector{180.0});
  EXPECT_TRUE(SamePicture(before, document.Current()));
}

TEST_F(DocumentEffects, BadValuesAndNoPictureAreErrorsThatChangeNothing) {
  for (const Effect& effect : Effects()) {
    if (effect.parameters.empty()) continue;
    std::vector<double> values = StandardValues(effect);
    values[0] = 1e9;
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] { document.Apply(effect, values); }))
        << effect.command;
    EXPECT_TRUE(SamePicture(before, document.Current())) << effect.command;
  }
  PictureDocument empty;
  const Effect& rotate = *FindEffect("Rotate");
  EXPECT_EQ(NumberOf(ErrorNumber::ObjectVariableNotSet), ErrorOf([&] { empty.Apply(rotate, std::vector{90.0}); }));
}

}  // namespace
}  // namespace kw
