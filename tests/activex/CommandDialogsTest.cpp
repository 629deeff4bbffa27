// The commands that ask with a dialog, and what a host may do to the control while one of their boxes is up.

#include <windows.h>

#include <dlgs.h>
#include <winspool.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "tests/activex/CommandFixture.h"
#include "tests/activex/MainThread.h"
#include "tests/activex/Sinks.h"
#include "tests/support/CommandScene.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class CommandDialogs : public CommandTest {
protected:
  void SetUp() override {
    CommandTest::SetUp();
    connection = std::make_unique<Connection>(control.Get(), DIID___KwEditorLayers, &sink);
  }
  void TearDown() override {
    connection->Cut();
    CommandTest::TearDown();
  }

  static void Cancel(HWND box) { AnswerBox(box, false); }
  // The field for the name is an edit control or, in the system's newer dialogs, a combo.
  static void TypeName(HWND box, const std::wstring& name) {
    HWND field = GetDlgItem(box, edt1);
    if (field == nullptr) field = GetDlgItem(box, cmb13);
    ASSERT_NE(field, nullptr);
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
  }
  static bool HasPrinter() {
    DWORD bytes = 0;
    DWORD count = 0;
    EnumPrintersW(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, nullptr, 4, nullptr, 0, &bytes, &count);
    return bytes != 0;
  }

  EventSink sink;
  std::unique_ptr<Connection> connection;
};

TEST_F(CommandDialogs, CancellingTheFontDialogChangesNothing) {
  const State before = Look();
  Names titles;
  Run("Font Settings", [&](HWND box) {
    titles.push_back(TitleOf(box));
    Cancel(box);
  });
  EXPECT_EQ(titles, Names{"Font"});
  EXPECT_EQ(Trace(), (Names{"tbrFonts_ButtonClick", "ToolbarButtonClick"}));
  EXPECT_EQ(Look(), before);
  EXPECT_TRUE(sink.events.empty());
}

// The fields of the font dialog, as it shows them and as a user sets them.
struct FontFields {
  std::string name;
  std::string style;
  std::string size;
  bool isStruckOut = false;
  bool isUnderlined = false;
  friend bool operator==(const FontFields&, const FontFields&) = default;

  static FontFields Of(HWND box) {
    const auto chosen = [box](int id) {
      char text[80] = {};
      const HWND list = GetDlgItem(box, id);
      SendMessageA(list, CB_GETLBTEXT, static_cast<WPARAM>(SendMessageA(list, CB_GETCURSEL, 0, 0)),
                   reinterpret_cast<LPARAM>(static_cast<char*>(text)));
      return std::string(static_cast<const char*>(text));
    };
    return {chosen(cmb1), chosen(cmb2), chosen(cmb3), IsDlgButtonChecked(box, chx1) == BST_CHECKED,
            IsDlgButtonChecked(box, chx2) == BST_CHECKED};
  }
  void SetIn(HWND box) const {
    const auto choose = [box](int id, const std::string& text) {
      const HWND list = GetDlgItem(box, id);
      const auto row =
          SendMessageA(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
      EXPECT_GE(row, 0) << text;
      SendMessageA(list, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
      SendMessageA(box, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
    };
    choose(cmb1, name);
    choose(cmb2, style);
    choose(cmb3, size);
    if (isStruckOut != (IsDlgButtonChecked(box, chx1) == BST_CHECKED)) SendDlgItemMessageA(box, chx1, BM_CLICK, 0, 0);
    if (isUnderlined != (IsDlgButtonChecked(box, chx2) == BST_CHECKED)) SendDlgItemMessageA(box, chx2, BM_CLICK, 0, 0);
  }
};

TEST_F(CommandDialogs, TheFontDialogShowsWhatWasChosenInItTheLastTime) {
  const FontFields choices[] = {{"Liberation Serif", "Bold Italic", "20", true, false},
                                {"Liberation Mono", "Regular", "9", false, true}};
  FontFields shown;
  for (const FontFields& choice : choices) {
    Run("Font Settings", [&](HWND box) { choice.SetIn(box); });
    Run("Font Settings", [&](HWND box) {
      shown = FontFields::Of(box);
      Cancel(box);
    });
    EXPECT_TRUE(shown == choice) << shown.name << ", " << shown.style << ", " << shown.size << ", " << shown.isStruckOut
                                 << shown.isUnderlined;
  }
  Run("Font Settings", [&](HWND box) { shown = FontFields::Of(box); });
  EXPECT_TRUE(shown == choices[1]) << "a cancelled dialog changes nothing";
  EXPECT_TRUE(sink.events.empty());
}

TEST_F(CommandDialogs, CancellingAnEffectRunsTheBracketAndChangesNoPixel) {
  for (const char* toolTip : {"Colorize", "Threshold", "Option"}) {
    SetScene();
    const State before = Look();
    Names titles;
    Run(toolTip, [&](HWND box) {
      titles.push_back(TitleOf(box));
      Cancel(box);
    });
    EXPECT_EQ(titles, (Names{"test_activex", toolTip}));
    EXPECT_EQ(Trace(), (Names{"tbrMoreTools_ButtonClick", "ToolbarButtonClick", "DoPreCommandProcess",
                              "DoPostCommandProcess", "TransLayers_Change", "UpdateAndZoom"}));
    EXPECT_EQ(Look(), before);
    EXPECT_TRUE(SamePicture(LoadPicture(ScratchBitmap()), ScenePage(2)));
  }
}

TEST_F(CommandDialogs, CancellingTheOpenDialogIsItsErrorInTheSharedHandler) {
  Names titles;
  furtherBoxes = {Perhaps("Critical Error: Error Number : 32755")};
  const Names boxes = Run("Open File", [&](HWND box) {
    titles.push_back(TitleOf(box));
    Cancel(box);
  });
  EXPECT_EQ(titles, (Names{"Open", "Critical Error"}));
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_EQ(boxes[1].rfind("Critical Error: Error Number : 32755/Error Description : ", 0), 0U) << boxes[1];
  ASSERT_EQ(sink.events.size(), 1U);
  EXPECT_EQ(sink.events[0].rfind("ErrorOccured(32755, ", 0), 0U) << sink.events[0];
  const State after = Look();
  EXPECT_EQ(after.at("control"), "off");
  EXPECT_EQ(after.at("pointer"), "2") << "the command's end gives the canvas the pointer of the tool";
  EXPECT_EQ(after.at("page"), "2") << "the document stays open";
  // A host that switches the control on again has it back.
  control->put_Enabled(VARIANT_TRUE);
  EXPECT_EQ(Run("Clear"), Names{"test_activex: clear"});
}

TEST_F(CommandDialogs, TheOpenDialogComesAgainUntilTheFileExists) {
  furtherBoxes = {Perhaps("File Open Error: File does not exist..")};
  SavePicture(ScenePage(7), "chosen.bmp");
  int dialogs = 0;
  const Names boxes = Run("Open File", [&](HWND box) {
    if (TitleOf(box) != "Open") return;
    TypeName(box, ++dialogs == 1 ? scratch.File(L"none.bmp") : scratch.File(L"chosen.bmp"));
  });
  EXPECT_EQ(dialogs, 2);
  ASSERT_EQ(boxes.size(), 4U);
  EXPECT_EQ(boxes[1], "File Open Error: File does not exist../Please select the filename again..");
  EXPECT_EQ(boxes[3], ShownAs({command_cases::PendingWork}));
  const CommandCase row = CommandCases().back();
  Names trace{"tbrOpenFile_ButtonClick", "ToolbarButtonClick"};
  trace.insert(trace.end(), row.trace.begin(), row.trace.end());
  EXPECT_EQ(Trace(), trace);
  EXPECT_EQ(sink.events, Names{"PageChanged(0)"});
  EXPECT_EQ(Look().at("page"), "1");
  EXPECT_EQ(Look().at("NextPage"), "off");
}

TEST_F(CommandDialogs, CancellingThePrinterDialogPrintsNothing) {
  const State before = Look();
  furtherBoxes = {Perhaps(HasPrinter() ? "Print" : "Critical Error: Error Number : 482")};
  const Names boxes = Run("Printer Setup", Cancel);
  if (HasPrinter()) {
    EXPECT_EQ(boxes.size(), 1U);
    EXPECT_EQ(Trace(), (Names{"tbrBasicTools_ButtonClick", "ToolbarButtonClick"}));
    EXPECT_TRUE(sink.events.empty());
    EXPECT_EQ(Look(), before);
    return;
  }
  // Without a printer there is no dialog but an error.
  ASSERT_EQ(sink.events.size(), 1U);
  EXPECT_EQ(sink.events[0].rfind("ErrorOccured(482, ", 0), 0U) << sink.events[0];
  EXPECT_EQ(Look().at("control"), "off");
}

// While the box of that number of a command is up.
struct Moment {
  const char* toolTip;
  int box;
};

class WhileABoxIsUp : public CommandDialogs, public testing::WithParamInterface<Moment> {
protected:
  WhileABoxIsUp() {
    waitsForTools = false;
    // The dialog for a file is cancelled.
    if (GetParam().toolTip == std::string("Open File"))
      furtherBoxes = {Perhaps("Critical Error: Error Number : 32755")};
  }
  // Runs the command with an act of the host inside it; one that shows boxes itself is posted, so that they can be
  // answered.
  void RunWith(const std::function<void()>& act, bool isPosted = false) {
    const MainThread mainThread;
    int boxes = 0;
    const BoxAnswerer user(BoxesOf(GetParam().toolTip), [&](HWND box) {
      const bool isOfCommonDialog = TitleOf(box) == "Open" || TitleOf(box) == "Font";
      if (++boxes == GetParam().box) isPosted ? mainThread.Post(act) : mainThread.Run(act);
      if (isOfCommonDialog) Cancel(box);
    });
    Button(GetParam().toolTip).Click();
    EXPECT_GE(boxes, GetParam().box) << "the box did not come up";
  }
};

TEST_P(WhileABoxIsUp, TheHostMayDestroyTheControlAndItsWindow) {
  connection->Forget();
  RunWith([&] {
    container.LetGo();
    control.Reset();
    container.DestroyWindowNow();
    // The loop of a box that went with its owner looks for that when a message comes, as one always does in a program.
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
  });
  PumpMessages(50);
  EXPECT_TRUE(Ocx::CanUnload()) << "the control is still alive";
}

TEST_P(WhileABoxIsUp, TheHostMayTakeTheWindowDownAndMakeItAnew) {
  RunWith([&] {
    container.As<IOleInPlaceObject>()->InPlaceDeactivate();
    EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  });
  control->put_Enabled(VARIANT_TRUE);
  buttons = ToolBarButtons(container.ControlWindow());
  EXPECT_EQ(Run("Clear"), Names{"test_activex: clear"});
}

TEST_P(WhileABoxIsUp, TheHostMaySwitchEverythingOff) {
  RunWith([&] {
    control->put_IsEditable(VARIANT_FALSE);
    control->put_IsToolboxVisible(VARIANT_FALSE);
    control->put_IsOpenButtonVisible(VARIANT_FALSE);
    control->put_BGImage(nullptr);
    control->put_SignatureFilePath(nullptr);
    control->put_Enabled(VARIANT_FALSE);
  });
  control->put_Enabled(VARIANT_TRUE);
  control->put_IsEditable(VARIANT_TRUE);
  EXPECT_EQ(Run("Clear"), Names{"test_activex: clear"});
}

TEST_P(WhileABoxIsUp, TheHostMayOpenAnotherDocument) {
  SavePicture(ScenePage(7), "other.bmp");
  furtherBoxes.push_back(Once(ListOfPendingWork));
  RunWith([&] { control->OpenFile(Text(scratch.File(L"other.bmp"))); }, true);
  furtherBoxes.clear();
  EXPECT_NE(std::ranges::find(sink.events, "PageChanged(0)"), sink.events.end());
  control->put_Enabled(VARIANT_TRUE);
  EXPECT_EQ(Look().at("page"), "1");
  EXPECT_EQ(Run("Clear"), Names{"test_activex: clear"});
}

std::string NameOf(const testing::TestParamInfo<Moment>& info) {
  std::string name;
  for (const char* c = info.param.toolTip; *c != '\0'; ++c) {
    if (*c != ' ') name += *c;
  }
  return name + std::to_string(info.param.box);
}
INSTANTIATE_TEST_SUITE_P(Of, WhileABoxIsUp,
                         testing::Values(Moment{"Clear", 1}, Moment{"Selection", 1}, Moment{"Invert", 1},
                                         Moment{"Colorize", 1}, Moment{"Colorize", 2}, Moment{"Font Settings", 1},
                                         Moment{"Open File", 1}, Moment{"Open File", 2}),
                         NameOf);

}  // namespace
}  // namespace kw::test
