// The keys of the canvas.

#include <algorithm>

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

constexpr std::int16_t DeleteKey = 46;

constexpr std::int16_t Ctrl(char letter) { return static_cast<std::int16_t>(letter - 'A' + 1); }

// A shortcut, the button that it stands for, and the notice of that.
struct ShortCut {
  char letter;
  const char* button;
  const char* notice;
};
constexpr ShortCut ShortCutsOfButtons[] = {{'C', "Copy", "copy"},
                                           {'X', "Cut", "cut"},
                                           {'V', "Paste", "mnuPasteSelectedArea_Click"},
                                           {'Z', "Undo", "undo"},
                                           {'Y', "Redo", "redo"}};

class ShortCuts : public EditorTest {
protected:
  void OpenPage() {
    control->OpenFile(MakeImage("scan.bmp"));
    desktop.boxes.clear();
  }
  void EnableAll(bool isEnabled) {
    for (const ShortCut& one : ShortCutsOfButtons) BasicBar(one.button).SetButtonEnabled(one.button, isEnabled);
    BasicBar("Clear").SetButtonEnabled("Clear", isEnabled);
  }
  // The trace of a key and the notices that it brings up.
  Names Strike(std::int16_t character) {
    ForgetTrace();
    desktop.boxes.clear();
    Form().picCanvas.KeyPress.Raise(character);
    return Trace();
  }
  Names Notices() const {
    Names prompts;
    for (const ScriptedDesktop::Box& box : desktop.boxes) prompts.push_back(box.prompt);
    return prompts;
  }
};

TEST_F(ShortCuts, WithoutAPageAreIgnoredWhateverTheKey) {
  EnableAll(true);
  ForgetTrace();
  for (std::int16_t key = 0; key < 256; ++key) {
    Form().picCanvas.KeyDown.Raise(key, 0);
    Form().picCanvas.KeyPress.Raise(key);
    Form().picCanvas.KeyUp.Raise(key, 0);
  }
  const Names trace = Trace();
  EXPECT_EQ(trace.size(), 3 * 256U);
  for (const char* handler : {"picCanvas_KeyDown", "picCanvas_KeyPress", "picCanvas_KeyUp"}) {
    EXPECT_EQ(std::ranges::count(trace, handler), 256) << handler;
  }
  EXPECT_EQ(Notices(), Names{});
}

TEST_F(ShortCuts, ClickTheirButtonsWhileTheseAreEnabled) {
  desktop.Expect("copy");
  desktop.Expect("cut");
  desktop.Expect("mnuPasteSelectedArea_Click");
  desktop.Expect("undo");
  desktop.Expect("redo");
  OpenPage();
  for (const ShortCut& one : ShortCutsOfButtons) {
    EnableAll(false);
    EXPECT_EQ(Strike(Ctrl(one.letter)), Names{"picCanvas_KeyPress"}) << one.letter;
    EXPECT_EQ(Notices(), Names{}) << one.letter;
    EnableAll(true);
    BasicBar(one.button).SetButtonEnabled(one.button, false);
    EXPECT_EQ(Strike(Ctrl(one.letter)), Names{"picCanvas_KeyPress"}) << one.letter << ": the others are enabled";
    BasicBar(one.button).SetButtonEnabled(one.button, true);
    EXPECT_EQ(Strike(Ctrl(one.letter)),
              (Names{"picCanvas_KeyPress", "tbrBasicTools_ButtonClick", "ToolbarButtonClick"}))
        << one.letter;
    EXPECT_EQ(Notices(), Names{one.notice}) << one.letter;
  }
}

TEST_F(ShortCuts, DeleteClicksItsButtonWhenTheKeyComesUp) {
  desktop.Expect("clear", 2);
  OpenPage();
  for (const std::int16_t shift : {std::int16_t{0}, Mouse::ShiftKey}) {
    ForgetTrace();
    desktop.boxes.clear();
    Form().picCanvas.KeyDown.Raise(DeleteKey, shift);
    Form().picCanvas.KeyPress.Raise(DeleteKey);
    EXPECT_EQ(Notices(), Names{});
    Form().picCanvas.KeyUp.Raise(DeleteKey, shift);
    EXPECT_EQ(Notices(), Names{"clear"});
    EXPECT_EQ(Trace(), (Names{"picCanvas_KeyDown", "picCanvas_KeyPress", "picCanvas_KeyUp", "tbrBasicTools_ButtonClick",
                              "ToolbarButtonClick"}));
  }
  BasicBar("Clear").SetButtonEnabled("Clear", false);
  desktop.boxes.clear();
  Form().picCanvas.KeyUp.Raise(DeleteKey, 0);
  EXPECT_EQ(Notices(), Names{});
}

TEST_F(ShortCuts, NoOtherKeyActsWhenItComesUp) {
  OpenPage();
  EnableAll(true);
  ForgetTrace();
  for (std::int16_t key = 0; key < 256; ++key) {
    if (key != DeleteKey) Form().picCanvas.KeyUp.Raise(key, 0);
  }
  EXPECT_EQ(Trace(), Names(255, "picCanvas_KeyUp"));
}

TEST_F(ShortCuts, EnterMergesLikeCtrlM) {
  OpenPage();
  EXPECT_EQ(Strike(13), (Names{"picCanvas_KeyPress", "mnuMergeDown_Click"}));
  EXPECT_EQ(Strike(Ctrl('M')), (Names{"picCanvas_KeyPress", "mnuMergeDown_Click"}));
  EXPECT_EQ(Strike(Ctrl('A')), (Names{"picCanvas_KeyPress", "mnuSelectAll_Click"}));
}

TEST_F(ShortCuts, FAndBRestackTheCurrentLayer) {
  OpenPage();
  EXPECT_EQ(Strike(Ctrl('F')), (Names{"picCanvas_KeyPress", "BringForward"}));
  EXPECT_EQ(Strike(Ctrl('B')), (Names{"picCanvas_KeyPress", "SendBackward"}));
}

TEST_F(ShortCuts, EscapeRebuildsTheView) {
  OpenPage();
  EXPECT_EQ(Strike(27), (Names{"picCanvas_KeyPress", "UpdateAndZoom"}));
}

}  // namespace
}  // namespace kw::test
