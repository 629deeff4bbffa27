#include "components/engine/KWPicEd.h"

#include <string>
#include <vector>

#include "tests/picture/Scratch.h"
#include "tests/support/ScriptedDesktop.h"

namespace kw {
namespace {

using test::ScriptedDesktop;

class EngineEffects : public ScratchTest {
protected:
  EngineEffects() { engine.Replace(before); }
  Bitmap before = Noise(40, 30, 24);
  ScriptedDesktop desktop;
  KWPicEd engine{desktop};
};

TEST_F(EngineEffects, RunWithDefaults) {
  for (const Effect& effect : Effects()) {
    engine.Replace(before);
    engine.Apply(effect.command);
    Bitmap expected = before;
    ApplyEffect(effect, expected);
    EXPECT_TRUE(SamePicture(expected, engine.Current())) << effect.command;
    EXPECT_EQ(expected.Width(), engine.Width());
    EXPECT_EQ(expected.BitsPerPixel(), engine.BitsPerPixel());
  }
}

TEST_F(EngineEffects, AsksForParameters) {
  std::vector<std::string> asked;
  desktop.onParameters = [&](const ParameterQuestion& question, std::span<double> values) {
    asked.push_back(question.title);
    if (question.title == "Rotate") values[0] = 180;
    return true;
  };
  for (const Effect& effect : Effects()) {
    engine.Replace(before);
    engine.Apply(effect.command);
    EXPECT_TRUE(effect.command != "Rotate" || engine.Width() == 40);
  }
  EXPECT_EQ((std::vector<std::string>{"Colorize", "Option", "Resize", "Rotate", "Threshold"}), asked);
  // Values that were chosen once do not hold for the next time.
  desktop.onParameters = {};
  engine.Replace(before);
  engine.Apply("Rotate");
  EXPECT_EQ(30, engine.Width());
}

TEST_F(EngineEffects, CancellingLeavesThePicture) {
  desktop.onParameters = [](const ParameterQuestion&, std::span<double> values) {
    for (double& value : values) value += 1;
    return false;
  };
  const std::string path = At("page.bmp");
  engine.Save(path);
  ASSERT_TRUE(engine.Load(path));
  for (const char* const command : {"Rotate", "Resize", "Colorize", "Threshold", "Option"}) {
    engine.Apply(command);
    EXPECT_TRUE(SamePicture(before, engine.Current())) << command;
  }
  desktop.onParameters = {};
  engine.Apply("Rotate");
  Bitmap turned = before;
  ApplyEffect(*FindEffect("Rotate"), turned);
  EXPECT_TRUE(SamePicture(turned, engine.Current()));
}

TEST_F(EngineEffects, AnotherPictureMeanwhileIsLeftAlone) {
  const Bitmap other = Noise(7, 9, 8);
  desktop.onParameters = [&](const ParameterQuestion&, std::span<double>) {
    engine.Replace(other);
    return true;
  };
  engine.Apply("Rotate");
  EXPECT_TRUE(SamePicture(other, engine.Current()));
}

TEST_F(EngineEffects, BadValuesAndFailuresLeaveThePicture) {
  desktop.onParameters = [](const ParameterQuestion&, std::span<double> values) {
    values[0] = 1e9;
    return true;
  };
  for (const char* const command : {"Rotate", "Resize", "Colorize", "Threshold", "Option"}) {
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] { engine.Apply(command); })) << command;
    EXPECT_TRUE(SamePicture(before, engine.Current())) << command;
  }
}

TEST_F(EngineEffects, UnknownCommandAndNoPicture) {
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] { engine.Apply("rotate"); }));
  KWPicEd empty(desktop);
  EXPECT_EQ(NumberOf(ErrorNumber::ObjectVariableNotSet), ErrorOf([&] { empty.Apply("Rotate"); }));
  EXPECT_NO_THROW(empty.Apply("Option"));
}

}  // namespace
}  // namespace kw
