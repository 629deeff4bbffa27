#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "tests/support/EditorFixture.h"

namespace kw {
namespace {

std::string Drawing(const std::string& path) {
  std::ifstream file(std::filesystem::path(KW_SOURCE) / "resources" / path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

using Icons = test::EditorTest;

TEST_F(Icons, EveryButtonOfTheFormHasADrawing) {
  EditorForm& form = Form();
  int buttons = 0;
  for (Control* control : form.Controls()) {
    const auto* bar = dynamic_cast<const ToolBar*>(control);
    if (bar == nullptr) continue;
    for (const ToolBar::Button& button : bar->Buttons()) {
      if (button.style == ButtonStyle::Separator) continue;
      ++buttons;
      EXPECT_FALSE(button.image.empty()) << button.key;
      EXPECT_NE(Drawing("icons/" + button.image + ".svg").find("<svg"), std::string::npos) << button.image;
      EXPECT_FALSE(button.toolTip.empty()) << button.key;
    }
  }
  EXPECT_GT(buttons, 40);
  EXPECT_FALSE(Drawing("icons/" + form.kwrpHideToolBox.Picture() + ".svg").empty());
}

TEST_F(Icons, NoTwoAreTheSame) {
  std::map<std::string, std::string> seen;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(KW_SOURCE) / "resources/icons")) {
    const std::string name = entry.path().filename().string();
    const auto [other, isNew] = seen.emplace(Drawing("icons/" + name), name);
    EXPECT_TRUE(isNew) << name << " is drawn like " << other->second;
  }
  EXPECT_GT(seen.size(), 40U);
}

// The tip of a dropper, a pen or a drop of paint, the corner of a rubber, the middle of a stamp's foot and of a beam.
TEST(Cursors, TheHotSpotOfEveryToolIsWhereItWorks) {
  const std::map<std::string, std::string> places{{"Chooser", "3 28"}, {"Fill", "5 27"},   {"Pen", "3 28"},
                                                  {"Rubber", "8 24"},  {"Stamp", "16 27"}, {"Text", "12 16"}};
  for (const auto& [key, place] : places) {
    EXPECT_NE(Drawing("cursors/" + key + ".svg").find("data-hotspot=\"" + place + "\""), std::string::npos) << key;
  }
  const std::filesystem::path folder = std::filesystem::path(KW_SOURCE) / "resources/cursors";
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()), 6);
}

}  // namespace
}  // namespace kw
