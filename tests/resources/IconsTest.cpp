#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "form/EditorForm.h"
#include "support/ScriptedDesktop.h"

namespace kw {
namespace {

std::string Drawing(const std::string& path) {
  std::ifstream file(std::filesystem::path(KW_SOURCE) / "resources" / path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Icons, EveryButtonOfTheFormHasADrawing) {
  test::ScriptedDesktop desktop;
  EditorForm form(desktop);
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

TEST(Icons, NoTwoAreTheSame) {
  std::map<std::string, std::string> seen;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(KW_SOURCE) / "resources/icons")) {
    const std::string name = entry.path().filename().string();
    const auto [other, isNew] = seen.emplace(Drawing("icons/" + name), name);
    EXPECT_TRUE(isNew) << name << " is drawn like " << other->second;
  }
  EXPECT_GT(seen.size(), 40U);
}

TEST(Cursors, EveryToolCursorHasADrawingWithAHotSpot) {
  for (const char* key : {"Chooser", "Fill", "Pen", "Rubber", "Stamp", "Text"}) {
    EXPECT_NE(Drawing(std::string("cursors/") + key + ".svg").find("data-hotspot=\""), std::string::npos) << key;
  }
}

}  // namespace
}  // namespace kw
