#include "components/engine/KWPicEd.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "components/controls/NumberField.h"
#include "components/controls/PictureBox.h"
#include "picture/effects/Preview.h"
#include "tests/picture/Scratch.h"
#include "tests/support/ScriptedDesktop.h"

namespace kw {
namespace {

using test::ScriptedDesktop;

constexpr double Angle45[] = {45};

NumberField& NumberIn(const DialogForm& dialog, const std::string& name) {
  for (Control* const child : dialog.Children()) {
    auto* const number = dynamic_cast<NumberField*>(child);
    if (number != nullptr && number->Name() == name) return *number;
  }
  throw std::out_of_range(name);
}

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
  desktop.onParameters = [&](DialogForm& dialog) {
    asked.push_back(dialog.Caption());
    if (dialog.Caption() == "Rotate") NumberIn(dialog, "Angle").UserType("180");
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
  desktop.onParameters = [](DialogForm& dialog) {
    for (Control* const child : dialog.Children()) {
      if (auto* const number = dynamic_cast<NumberField*>(child)) number->UserStep(1);
    }
    dialog.KeyDown.Raise(DialogForm::EscapeKey, 0);
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
  desktop.onParameters = [&](DialogForm&) { engine.Replace(other); };
  engine.Apply("Rotate");
  EXPECT_TRUE(SamePicture(other, engine.Current()));
}

TEST_F(EngineEffects, BadValuesAreNotTakenAndFailuresLeaveThePicture) {
  desktop.onParameters = [](DialogForm& dialog) {
    for (Control* const child : dialog.Children()) {
      if (auto* const number = dynamic_cast<NumberField*>(child)) number->UserType("1000000000");
    }
  };
  for (const char* const command : {"Rotate", "Resize", "Colorize", "Threshold", "Option"}) {
    engine.Apply(command);
    EXPECT_TRUE(SamePicture(before, engine.Current())) << command;
  }
  EXPECT_EQ(desktop.beeps, 5);
  desktop.onParameters = [](DialogForm& dialog) {
    NumberIn(dialog, "Width").UserType("100000");
    NumberIn(dialog, "Height").UserType("100000");
  };
  EXPECT_EQ(NumberOf(ErrorNumber::OutOfMemory), ErrorOf([&] { engine.Apply("Resize"); }));
  EXPECT_TRUE(SamePicture(before, engine.Current()));
}

TEST_F(EngineEffects, ShowAPreviewOfThePageAsLargeAsTheScreenAllows) {
  desktop.onParameters = [&](DialogForm& dialog) {
    dialog.UserScale(2);
    NumberIn(dialog, "Angle").UserType("45");
    for (Control* const child : dialog.Children()) {
      auto* const preview = dynamic_cast<PictureBox*>(child);
      if (preview == nullptr) continue;
      desktop.FireTimers();
      EXPECT_EQ(preview->Picture().Width(),
                EffectPreview(*FindEffect("Rotate"), before, {480, 480}).Of(Angle45).Width());
    }
  };
  engine.Apply("Rotate");
}

TEST_F(EngineEffects, UnknownCommandAndNoPicture) {
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] { engine.Apply("rotate"); }));
  KWPicEd empty(desktop);
  EXPECT_EQ(NumberOf(ErrorNumber::ObjectVariableNotSet), ErrorOf([&] { empty.Apply("Rotate"); }));
  EXPECT_NO_THROW(empty.Apply("Option"));
}

}  // namespace
}  // namespace kw
