// The commands that a host runs by number.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "components/controls/Scanner.h"
#include "tests/support/CommandCases.h"
#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

TEST(VerbTable, HasTheNineCommandsInTheOrderOfTheirNumbers) {
  Names keys;
  for (std::int32_t verb = 1; Dispatcher::CommandOfVerb(verb) != nullptr; ++verb) {
    EXPECT_EQ(Dispatcher::CommandOfVerb(verb)->verb, verb);
    keys.emplace_back(Dispatcher::CommandOfVerb(verb)->key);
  }
  EXPECT_EQ(keys, (Names{"SelectScanner", "Acquire", "Capture", "Rotate", "Resize", "HorizontalFlip", "VerticalFlip",
                         "Flip", "Erode"}));
  for (const std::int32_t other : {0, -1, 10, 1000000, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(Dispatcher::CommandOfVerb(other), nullptr) << other;
  }
}

TEST(VerbTable, HasTheNumbersAndTextsOfItsRowsAndNoOthers) {
  std::map<std::string, std::pair<int, std::string>> expected;
  for (const CommandCase& row : CommandCases()) expected[row.key] = {row.verb, row.menuText};
  for (const Dispatcher::Command& row : Dispatcher::Commands()) {
    EXPECT_EQ(row.verb, expected[std::string(row.key)].first) << row.key;
    EXPECT_EQ(row.menuText, expected[std::string(row.key)].second) << row.key;
  }
}

// A comma would end the text in the registry; a letter of two entries would choose neither.
TEST(VerbTable, HasTextsThatSuitTheRegistryAndAMenu) {
  std::set<int> letters;
  for (const Dispatcher::Command& row : Dispatcher::Commands()) {
    EXPECT_EQ(row.menuText.empty(), row.verb == 0) << row.key;
    if (row.menuText.empty()) continue;
    EXPECT_EQ(row.menuText.find(','), std::string_view::npos) << row.menuText;
    const std::size_t mark = row.menuText.find('&');
    ASSERT_LT(mark, row.menuText.size() - 1) << row.menuText;
    EXPECT_EQ(mark, row.menuText.rfind('&')) << row.menuText;
    EXPECT_TRUE(letters.insert(std::tolower(row.menuText[mark + 1])).second) << row.menuText;
  }
  EXPECT_EQ(letters.size(), 9U);
}

class Verbs : public EditorTest {
protected:
  void Open() {
    control->OpenFile(MakeDocument("D.tif", 2));
    ASSERT_TRUE(control->TakesVerbs());
  }
};

TEST_F(Verbs, NeedAPage) {
  desktop.Expect("File Error: Invalid file format..");
  EXPECT_FALSE(control->TakesVerbs());
  control->OpenFile(folder.File("missing.tif"));
  EXPECT_FALSE(control->TakesVerbs());
  control->LetIsEditable(true);
  EXPECT_FALSE(control->TakesVerbs());
  control->OpenFile(MakeDocument("D.tif", 2));
  EXPECT_TRUE(control->TakesVerbs());
}

TEST_F(Verbs, NeedAControlThatIsEnabledAndEditable) {
  Open();
  control->LetEnabled(false);
  EXPECT_FALSE(control->TakesVerbs());
  control->LetEnabled(true);
  EXPECT_TRUE(control->TakesVerbs());
  control->LetIsEditable(false);
  EXPECT_FALSE(control->TakesVerbs());
  control->LetIsEditable(true);
  EXPECT_TRUE(control->TakesVerbs());
}

TEST_F(Verbs, AreRefusedInEveryEventAndEveryBox) {
  desktop.Expect("DoPreCommandProcess");
  desktop.Expect("Capture");
  desktop.Expect("Critical Error: Error Number : 32755");
  Open();
  int calls = 0;
  events.onEvent = [&](const std::string& name) {
    ++calls;
    EXPECT_FALSE(control->TakesVerbs()) << name;
  };
  int boxes = 0;
  desktop.whileBoxIsUp = [&](const ScriptedDesktop::Box& box) {
    ++boxes;
    EXPECT_FALSE(control->TakesVerbs()) << box.prompt;
  };
  control->OpenFile(MakeDocument("E.tif", 3));
  EXPECT_GE(calls, 4) << "pages made, page turned, properties";
  control->CommandRoom().ToolbarButtonClick("Erode");
  control->CommandRoom().ToolbarButtonClick("Capture");
  BasicBar("NextPage").UserClick("NextPage");
  EXPECT_GE(boxes, 3);
  EXPECT_TRUE(control->TakesVerbs());
  // The report of an error is a box, too; after it the control is disabled.
  control->CommandRoom().ToolbarButtonClick("Open");
  EXPECT_EQ(events.errors, std::vector<int>{32755});
  EXPECT_FALSE(control->TakesVerbs());
  control->LetEnabled(true);
  EXPECT_TRUE(control->TakesVerbs()) << "nothing is under way any more";
}

TEST_F(Verbs, AreRefusedWhileADialogAPrintOrAScanIsUnderWay) {
  Open();
  int dialogs = 0;
  const auto refuse = [&] {
    ++dialogs;
    EXPECT_FALSE(control->TakesVerbs());
  };
  desktop.fontAnswers.emplace_back([&](Font&) { refuse(); });
  Form().tbrFonts.UserClick("FontSettings");
  EXPECT_EQ(dialogs, 1);
  desktop.coloursShown.clear();
  desktop.colourAnswers.emplace_back([&](Colour&) { refuse(); });
  Form().SampleForeGroundColor.DblClick.Raise();
  EXPECT_EQ(dialogs, 2);
  desktop.printerAnswers.emplace_back([&](PrinterDialog&) { refuse(); });
  int pauses = 0;
  desktop.onDoEvents = [&] {
    ++pauses;
    EXPECT_FALSE(control->TakesVerbs());
  };
  BasicBar("PrinterSetup").UserClick("PrinterSetup");
  EXPECT_EQ(dialogs, 3);
  EXPECT_GE(pauses, 2);
  desktop.onDoEvents = nullptr;

  struct Source : ScannerDriver {
    explicit Source(std::function<void()> scan) : step(std::move(scan)) {}
    void SelectSource() override { step(); }
    bool Acquire() override {
      step();
      return false;
    }
    void CancelAcquisition() override {}
    std::function<void()> step;
  };
  desktop.scannerMaker = [&] { return std::make_unique<Source>(refuse); };
  BasicBar("SelectScanner").UserClick("SelectScanner");
  BasicBar("Acquire").UserClick("Acquire");
  EXPECT_EQ(dialogs, 5);
  EXPECT_TRUE(control->TakesVerbs());
}

// The failure of a report leaves the procedures early.
TEST_F(Verbs, AreTakenAgainAfterAReportThatFailed) {
  desktop.Expect("Critical Error: Error Number : 76");
  Open();
  const std::string kept = AppDir;
  AppDir = folder.File("no such folder/");
  EXPECT_THROW(control->CommandRoom().ToolbarButtonClick("Capture"), RunTimeError);
  AppDir = kept;
  control->LetEnabled(true);
  EXPECT_TRUE(control->TakesVerbs());
}

TEST_F(Verbs, OfTheScannerHaveButtonsInAGroupOfTheirOwn) {
  const ToolBar& bar = Form().tbrBasicTools(0);
  Names row;
  for (const ToolBar::Button& button : bar.Buttons()) {
    if (button.visible) row.push_back(button.style == ButtonStyle::Separator ? "|" : button.key);
  }
  EXPECT_EQ(row, (Names{"Save", "|", "Print", "PrinterSetup", "|", "SelectScanner", "Acquire", "|", "Clear", "Copy",
                        "Paste", "|", "Undo", "Redo", "|", "ZoomIn", "ZoomOut"}));
}

// Twelve buttons of 24 pixels and five gaps of 8 need 328.
TEST_F(Verbs, OfTheScannerHaveRoomInTheStrip) {
  EditorForm designed(desktop);
  EXPECT_EQ(designed.tbrBasicTools(0).Width(), 332 * 15);
  EXPECT_EQ(designed.kwraBasicToolsContainer(0).Width(), 426);
  EXPECT_EQ(designed.frZoomFactorContainer.Left(), 342 * 15);
  EXPECT_EQ(designed.kwraBasicToolsContainer(1).Left(), 428);
  const RaisedArea& pages = designed.kwraBasicToolsContainer(1);
  EXPECT_LE(pages.Left() + pages.Width(), 860) << "the form's own width";
  // Laid out at the start: 4 twips behind the separator, 2 before the zoom box, and the containers a pixel apart.
  EXPECT_EQ(Form().tbrBasicTools(0).Left(), 8 * 15 + 4);
  EXPECT_EQ(Form().frZoomFactorContainer.Left(), 8 * 15 + 4 + 332 * 15 + 2);
  const float width = static_cast<float>(5106 + 80 * 15) / 15 + 2;
  EXPECT_FLOAT_EQ(Form().kwraBasicToolsContainer(0).Width(), width);
  EXPECT_FLOAT_EQ(Form().kwraBasicToolsContainer(1).Left(), 1 + width + 1);
}

TEST_F(Verbs, OfTheScannerHaveButtonsThatNeedAPageAndEditing) {
  const auto canClick = [&](const char* key) { return Form().tbrBasicTools(0).Enabled() && IsEnabled(key); };
  for (const char* key : {"SelectScanner", "Acquire"}) EXPECT_FALSE(canClick(key)) << key;
  Open();
  for (const char* key : {"SelectScanner", "Acquire"}) EXPECT_TRUE(canClick(key)) << key;
  control->LetIsEditable(false);
  for (const char* key : {"SelectScanner", "Acquire"}) EXPECT_FALSE(canClick(key)) << key;
  control->LetIsEditable(true);
  for (const char* key : {"SelectScanner", "Acquire"}) EXPECT_TRUE(canClick(key)) << key;
}

}  // namespace
}  // namespace kw::test
