// Every key of a command, and keys of none, with all that may be seen of what they do.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "tests/support/CommandCases.h"
#include "tests/support/CommandScene.h"
#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

using State = std::map<std::string, std::string>;

std::string PressedOf(const ToolBar& bar) {
  std::string pressed;
  for (const ToolBar::Button& button : bar.Buttons()) {
    if (button.pressed) pressed += button.key;
  }
  return pressed;
}

class CommandTable : public EditorTest, public testing::WithParamInterface<CommandCase> {
protected:
  CommandTable() {
    document = folder.File("D.tif");
    WriteSceneDocument(document);
    control->LetIsOpenButtonVisible(true);
    control->OpenFile(document);
    BasicBar("NextPage").UserClick("NextPage");
    control->LetBGImage(MakeImage("back.bmp", 12, 8));
    control->LetSignatureFilePath(MakeImage("sign.bmp"));
    control->LetIsFileChanged(true);
    for (const char* key : {"Paste", "Undo", "Redo"}) BasicBar(key).SetButtonEnabled(key, true);
    Form().tbrEditingTools.UserClick("Rectangle");
    Form().tbrFillPattern.UserClick("FillInside");
    PressInstead(GetParam().insteadOf);
    // So that it shows who sets the pointer.
    Form().picCanvas.SetPointer(MousePointer::SizeAll);
    Form().picCanvas.SetPointerIcon("");
    desktop.onParameters = [this](const DialogForm& dialog) { asked.push_back(dialog.Caption()); };
    desktop.whileBoxIsUp = [this](const ScriptedDesktop::Box& box) { LookAround(box); };
    desktop.boxes.clear();
    desktop.printersShown.clear();
    ForgetTrace();
  }

  std::vector<ToolBar*> Bars() {
    return {&Form().tbrOpenFile,    &Form().tbrBasicTools(0), &Form().tbrBasicTools(1), &Form().tbrEditingTools,
            &Form().tbrFillPattern, &Form().tbrFonts,         &Form().tbrMoreTools};
  }

  void PressInstead(const std::string& key) {
    for (ToolBar* bar : {&Form().tbrEditingTools, &Form().tbrFillPattern}) {
      if (bar->HasButton(key)) bar->UserClick(key);
    }
  }

  // As the user does by the button; if there is none, as a caller that has only the key.
  void Run(const CommandCase& row) {
    if (row.bar.empty()) return control->CommandRoom().ToolbarButtonClick(row.key);
    for (ToolBar* bar : Bars()) {
      if (bar->Name() != row.bar || !bar->HasButton(row.key)) continue;
      EXPECT_EQ(bar->ButtonOf(row.key).toolTip, row.toolTip);
      EXPECT_TRUE(bar->ButtonOf(row.key).visible);
      return bar->UserClick(row.key);
    }
    ADD_FAILURE() << row.bar << " has no such button";
  }

  State Look() {
    State state{{"tool", PressedOf(Form().tbrEditingTools)},
                {"pattern", PressedOf(Form().tbrFillPattern)},
                {"page", Form().cmbPageNo.Text()},
                {"zoom", Form().cmbZoomFactor.Text()},
                {"size", Form().lblImageSize.Caption()},
                {"tool box", Form().kwraTools.Visible() ? "shown" : "hidden"},
                {"background", Form().TransBackImage.Visible() ? "shown" : "hidden"},
                {"control", Form().editor.Enabled() ? "on" : "off"},
                {"busy", Form().editor.Pointer() == MousePointer::Default ? "no" : "yes"},
                {"pointer", std::to_string(static_cast<int>(Form().picCanvas.Pointer()))}};
    if (Form().picCanvas.Pointer() == MousePointer::Custom) state["pointer"] += " " + Form().picCanvas.PointerIcon();
    for (const ToolBar* bar : Bars()) {
      for (const ToolBar::Button& button : bar->Buttons()) {
        if (button.style != ButtonStyle::Separator) state[button.key] = button.enabled ? "on" : "off";
      }
    }
    return state;
  }

  // The notice of the bracket stands before the engine's work, under the hourglass.
  void LookAround(const ScriptedDesktop::Box& box) {
    if (box.prompt != "DoPreCommandProcess") return;
    EXPECT_EQ(Form().editor.Pointer(), MousePointer::Hourglass);
    EXPECT_EQ(Trace().back(), "DoPreCommandProcess");
    EXPECT_TRUE(SamePicture(control->Engine().Current(), ScenePage(2)));
    EXPECT_TRUE(asked.empty());
  }

  // The user's answers: a file for the open dialog, Cancel for every other one.
  void ExpectDialog(const CommandCase& row) {
    EXPECT_EQ(desktop.openShown.size(), row.dialog == "Open" ? 1U : 0U);
    EXPECT_EQ(desktop.fontsShown.size(), row.dialog == "Font" ? 1U : 0U);
    EXPECT_EQ(desktop.printersShown.size(), row.dialog == "Printer" ? 1U : 0U);
    EXPECT_TRUE(desktop.coloursShown.empty());
    EXPECT_EQ(asked, row.dialog.empty() || row.operations.empty() ? Names{} : Names{row.dialog});
  }

  // The engine's picture, and the current layer with it.
  void ExpectPicture(const CommandCase& row) {
    Bitmap expected = AfterOperations(row.operations);
    if (row.key == "PrevPage") expected = ScenePage(1);
    if (row.key == "NextPage") expected = ScenePage(3);
    if (row.key == "Open") expected = ScenePage(7);
    EXPECT_TRUE(SamePicture(control->Engine().Current(), expected));
    EXPECT_TRUE(SamePicture(Form().TransLayers(1).Picture(), expected));
    EXPECT_EQ(Form().TransLayers(1).Width(), static_cast<float>(expected.Width()));
    EXPECT_EQ(Form().TransLayers(1).Height(), static_cast<float>(expected.Height()));
  }

  std::string document;
  Names asked;
};

TEST_P(CommandTable, DoesAllThatItsRowSaysAndNothingElse) {
  const CommandCase& row = GetParam();
  const std::string chosen = folder.File("chosen.bmp");
  SavePicture(ScenePage(7), chosen);
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = chosen; });
  const State before = Look();
  for (const auto& [what, value] : row.changes) EXPECT_NE(before.at(what), value) << what << " would not show";
  for (const CommandBox& box : row.boxes) desktop.Expect(box.title + ": " + box.prompt);

  Run(row);

  Names trace{"ToolbarButtonClick"};
  if (!row.bar.empty()) trace.insert(trace.begin(), row.bar + "_ButtonClick");
  trace.insert(trace.end(), row.trace.begin(), row.trace.end());
  EXPECT_EQ(Trace(), trace);
  std::vector<ScriptedDesktop::Box> boxes;
  for (const CommandBox& box : row.boxes) boxes.push_back({box.prompt, box.title, MessageButtons::Ok});
  EXPECT_EQ(desktop.boxes, boxes);
  ExpectDialog(row);
  ExpectPicture(row);
  EXPECT_EQ(Differences(Look(), After(row, before)), Names{});
  EXPECT_EQ(desktop.endsOfJob, row.key == "Print" ? 1 : 0);
  EXPECT_EQ(control->OpenedDocument().FirstFilePath(), row.key == "Open" ? chosen : document);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  EXPECT_TRUE(events.errors.empty());
}

std::string NameOf(const testing::TestParamInfo<CommandCase>& info) {
  std::string name;
  for (const char c : info.param.key) name += c == ' ' ? '_' : c;
  return name.empty() ? "Empty" : name;
}
INSTANTIATE_TEST_SUITE_P(Key, CommandTable, testing::ValuesIn(CommandCases()), NameOf);
INSTANTIATE_TEST_SUITE_P(OtherKey, CommandTable, testing::ValuesIn(OtherKeys()), NameOf);

TEST(CommandTableRows, AreThoseOfTheDispatcherInTheirOrder) {
  Names keys;
  for (const Dispatcher::Command& command : Dispatcher::Commands()) keys.emplace_back(command.key);
  Names expected;
  for (const CommandCase& row : CommandCases()) expected.push_back(row.key);
  EXPECT_EQ(expected.size(), 57U);
  EXPECT_EQ(keys, expected);
}

// Else a row that runs another operation than its own would not show.
TEST(CommandTableRows, OfTheEngineHaveResultsThatDifferFromEachOther) {
  std::map<std::string, Bitmap> results;
  for (const CommandCase& row : CommandCases()) {
    if (!row.operations.empty()) results[row.key] = AfterOperations(row.operations);
  }
  EXPECT_EQ(results.size(), 23U);
  for (const auto& [key, result] : results) {
    // The settings change no picture; there the dialog tells which operation ran.
    EXPECT_EQ(SamePicture(result, ScenePage(2)), key == "Option") << key;
    for (const auto& [other, otherResult] : results) {
      EXPECT_EQ(SamePicture(result, otherResult), other == key) << key << " and " << other;
    }
  }
}

}  // namespace
}  // namespace kw::test
