#include "windows/dialogs/ParameterDialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <functional>
#include <thread>

#include "components/base/RunTimeError.h"
#include "tests/support/win32/PostedMessages.h"
#include "tests/windows/TestForm.h"
#include "windows/base/Text.h"

namespace kw::test {
namespace {

using namespace windows;                    // NOLINT(google-build-using-namespace)
using namespace windows::parameter_dialog;  // NOLINT(google-build-using-namespace)

// Uses the dialog from another thread, as a user does, then closes it where it is still open.
class User {
public:
  using Action = std::function<void(HWND dialog)>;

  explicit User(Action action) : thread([action = std::move(action)] { Use(action); }) {}
  User(const User&) = delete;
  User& operator=(const User&) = delete;
  ~User() { thread.join(); }

private:
  static void Use(const Action& action) {
    for (int i = 0; i < 500; ++i) {
      const HWND dialog = FindWindowW(L"#32770", L"Kw numbers");
      if (dialog != nullptr && IsWindowVisible(dialog) != FALSE) {
        action(dialog);
        for (int wait = 0; wait < 1000 && IsWindow(dialog) != FALSE; ++wait) Sleep(10);
        if (IsWindow(dialog) == FALSE) return;
        ADD_FAILURE() << "the dialog is still open";
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        return;
      }
      Sleep(10);
    }
    ADD_FAILURE() << "no dialog";
  }

  std::thread thread;
};

HWND Number(HWND dialog, std::size_t field) { return GetDlgItem(dialog, FieldId(field, NumberPart)); }

std::wstring FieldText(HWND window) {
  wchar_t text[200] = {};
  SendMessageW(window, WM_GETTEXT, 200, reinterpret_cast<LPARAM>(text));
  return text;
}

void Type(HWND dialog, std::size_t field, const wchar_t* text) {
  SendMessageW(Number(dialog, field), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

HWND FocusIn(HWND dialog) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
  return info.hwndFocus;
}

// A key, handled before the call returns.
void Press(HWND dialog, WPARAM key) {
  PostMessageW(FocusIn(dialog), WM_KEYDOWN, key, 0);
  PostedMessages::AreHandled(dialog);
}

class ParameterDialog : public testing::Test {
protected:
  ParameterDialog() {
    question.title = "Kw numbers";
    static constexpr std::string_view choices[] = {"First", "Second"};
    static constexpr Parameter fields[] = {{"Angle", -360, 360, 90, false, "degrees"},
                                           {"BlurSigma", 0.3, 50, 1.5, false, "pixels"},
                                           {"Level", 0, 255, 0, true, "", "found"},
                                           {"Kernel", 0, 1, 0, true, "", "", choices}};
    question.fields = fields;
  }

  bool Ask(const User::Action& action) {
    const User user(action);
    return AskParameters(owner, question, values);
  }

  HWND owner = TestForm::HostWindow();
  ParameterQuestion question;
  std::array<double, 4> values{10, 2.5, 7, 1};
  const std::array<double, 4> start = values;

  void TearDown() override { DestroyWindow(owner); }
};

TEST_F(ParameterDialog, ShowsTheValuesAndGivesThoseThatWereTyped) {
  EXPECT_TRUE(Ask([](HWND dialog) {
    EXPECT_EQ(FieldText(Number(dialog, 0)), L"10");
    EXPECT_EQ(FieldText(Number(dialog, 1)), L"2.5");
    EXPECT_EQ(FieldText(Number(dialog, 2)), L"7");
    EXPECT_EQ(SendMessageW(Number(dialog, 3), CB_GETCURSEL, 0, 0), 1);
    EXPECT_EQ(SendMessageW(GetDlgItem(dialog, FieldId(0, SliderPart)), TBM_GETPOS, 0, 0), 370);
    EXPECT_EQ(SendMessageW(GetDlgItem(dialog, FieldId(1, SliderPart)), TBM_GETPOS, 0, 0), 22);
    Type(dialog, 0, L"-45.25");
    Type(dialog, 1, L" 0,75 ");
    Type(dialog, 2, L"255");
    EXPECT_EQ(SendMessageW(GetDlgItem(dialog, FieldId(2, SliderPart)), TBM_GETPOS, 0, 0), 255);
    SendMessageW(Number(dialog, 3), CB_SETCURSEL, 0, 0);
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(FieldId(3, NumberPart), CBN_SELCHANGE), 0);
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  }));
  EXPECT_EQ(values, (std::array<double, 4>{-45.25, 0.75, 255, 0}));
}

TEST_F(ParameterDialog, SlidersAndSpinButtonsStepWithinTheRange) {
  EXPECT_TRUE(Ask([](HWND dialog) {
    const HWND slider = GetDlgItem(dialog, FieldId(2, SliderPart));
    SendMessageW(slider, TBM_SETPOS, TRUE, 254);
    SendMessageW(dialog, WM_HSCROLL, TB_THUMBTRACK, reinterpret_cast<LPARAM>(slider));
    EXPECT_EQ(FieldText(Number(dialog, 2)), L"254");
    for (int i = 0; i < 3; ++i) SendMessageW(Number(dialog, 2), WM_KEYDOWN, VK_UP, 0);
    EXPECT_EQ(FieldText(Number(dialog, 2)), L"255");
    SendMessageW(Number(dialog, 1), WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(FieldText(Number(dialog, 1)), L"2.4");
    EXPECT_EQ(SendMessageW(GetDlgItem(dialog, FieldId(1, SliderPart)), TBM_GETPOS, 0, 0), 21);
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  }));
  EXPECT_EQ(values, (std::array<double, 4>{10, 2.4, 255, 1}));
}

TEST_F(ParameterDialog, EscapeAndCancelLeaveTheValues) {
  EXPECT_FALSE(Ask([](HWND dialog) {
    Type(dialog, 0, L"33");
    Press(dialog, VK_ESCAPE);
  }));
  EXPECT_EQ(values, start);
  EXPECT_FALSE(Ask([](HWND dialog) {
    Type(dialog, 0, L"33");
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  }));
  EXPECT_EQ(values, start);
  EXPECT_FALSE(Ask([](HWND dialog) { PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); }));
  EXPECT_EQ(values, start);
}

TEST_F(ParameterDialog, EnterTakesTheValues) {
  EXPECT_TRUE(Ask([](HWND dialog) {
    Type(dialog, 0, L"33");
    Press(dialog, VK_RETURN);
  }));
  EXPECT_EQ(values[0], 33);
}

TEST_F(ParameterDialog, DefaultsBringsBackTheStandardValues) {
  EXPECT_TRUE(Ask([](HWND dialog) {
    Type(dialog, 0, L"nonsense");
    SendMessageW(dialog, WM_COMMAND, Defaults, 0);
    EXPECT_EQ(FieldText(Number(dialog, 0)), L"90");
    EXPECT_EQ(SendMessageW(Number(dialog, 3), CB_GETCURSEL, 0, 0), 0);
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  }));
  EXPECT_EQ(values, (std::array<double, 4>{90, 1.5, 0, 0}));
}

TEST_F(ParameterDialog, ANumberOutOfItsRangeIsShownAndNotTaken) {
  EXPECT_TRUE(Ask([](HWND dialog) {
    for (const wchar_t* text : {L"", L"361", L"1e2", L"nan", L"3 4", L"--1", L"\x661"}) {
      Type(dialog, 0, text);
      SendMessageW(dialog, WM_COMMAND, IDOK, 0);
      EXPECT_TRUE(IsWindow(dialog));
      EXPECT_EQ(FieldText(GetDlgItem(dialog, Message)), L"Not allowed. Angle: -360 to 360 degrees; default 90");
      EXPECT_EQ(FocusIn(dialog), Number(dialog, 0));
    }
    Type(dialog, 0, L"-360");
    Type(dialog, 2, L"1.5");
    SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    EXPECT_EQ(FocusIn(dialog), Number(dialog, 2)) << "only whole numbers";
    Type(dialog, 2, L"1");
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  }));
  EXPECT_EQ(values[0], -360);
  EXPECT_EQ(values[2], 1);
}

TEST_F(ParameterDialog, TabGoesThroughTheFieldsAndAMnemonicToItsOwn) {
  EXPECT_FALSE(Ask([](HWND dialog) {
    std::vector<int> visited;
    for (int i = 0; i < 10; ++i) {
      visited.push_back(GetDlgCtrlID(FocusIn(dialog)));
      Press(dialog, VK_TAB);
    }
    EXPECT_EQ(visited, (std::vector<int>{FieldId(0, NumberPart), FieldId(0, SliderPart), FieldId(1, NumberPart),
                                         FieldId(1, SliderPart), FieldId(2, NumberPart), FieldId(2, SliderPart),
                                         FieldId(3, NumberPart), IDOK, IDCANCEL, Defaults}));
    EXPECT_EQ(FieldText(GetDlgItem(dialog, FieldId(2, LabelPart))), L"&Level:");
    PostMessageW(dialog, WM_SYSCHAR, 'l', 1 << 29);
    for (int i = 0; i < 50 && FocusIn(dialog) != Number(dialog, 2); ++i) Sleep(10);
    EXPECT_EQ(FocusIn(dialog), Number(dialog, 2));
    EXPECT_EQ(FieldText(GetDlgItem(dialog, Message)), L"Level: 0 to 255; 0: found; default 0");
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  }));
}

TEST_F(ParameterDialog, ThePreviewFollowsTheValuesAndTellsOfLongWork) {
  std::atomic<double> tried = 0;
  std::atomic<bool> wasBusy = false;
  std::atomic<int> roomWidth = 0;
  question.makePreview = [&](int width, int) {
    wasBusy = GetCursor() == LoadCursorW(nullptr, IDC_WAIT);
    roomWidth = width;
    return [&](std::span<const double> shown) {
      tried = shown[0];
      if (shown[0] == 66) Raise(ErrorNumber::OutOfMemory);
      return Plain(40, 30, {static_cast<std::uint8_t>(shown[0]), 20, 200});
    };
  };
  const auto waitFor = [&](double value) {
    for (int i = 0; i < 200 && tried != value; ++i) Sleep(10);
    Sleep(50);
    return tried == value;
  };
  EXPECT_TRUE(Ask([&](HWND dialog) {
    EXPECT_TRUE(waitFor(10));
    EXPECT_TRUE(wasBusy);
    const HWND picture = GetDlgItem(dialog, Picture);
    RECT client = {};
    GetClientRect(picture, &client);
    EXPECT_EQ(client.right, roomWidth);
    Type(dialog, 0, L"77");
    EXPECT_TRUE(waitFor(77));
    EXPECT_EQ(PixelOf(picture, client.right / 2, client.bottom / 2), RGB(77, 20, 200));
    EXPECT_EQ(PixelOf(picture, 2, 2), GetSysColor(COLOR_APPWORKSPACE));
    Type(dialog, 0, L"66");
    EXPECT_TRUE(waitFor(66)) << "a failed preview is none";
    EXPECT_EQ(PixelOf(picture, client.right / 2, client.bottom / 2), GetSysColor(COLOR_APPWORKSPACE));
    Type(dialog, 0, L"55");
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  }));
  EXPECT_EQ(values[0], 55);
}

TEST_F(ParameterDialog, DisablesItsOwnerAndLeavesWithIt) {
  EXPECT_FALSE(Ask([this](HWND dialog) {
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), owner);
    EXPECT_FALSE(IsWindowEnabled(owner));
    PostMessageW(owner, WM_CLOSE, 0, 0);  // destroys the owner on its own thread
  }));
  EXPECT_FALSE(IsWindow(owner));
  EXPECT_EQ(values, start);
}

TEST_F(ParameterDialog, ManyFieldsFitOnASmallScreen) {
  const std::vector<Parameter> fields(14, question.fields[1]);
  question.fields = fields;
  std::array<double, 14> many{};
  many.fill(1);
  const User user([](HWND dialog) {
    RECT place = {};
    GetWindowRect(dialog, &place);
    EXPECT_LE(place.bottom - place.top, 480);
    EXPECT_LE(place.right - place.left, 640);
    EXPECT_GE(place.top, 0);
    EXPECT_GE(place.left, 0);
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  });
  EXPECT_FALSE(AskParameters(owner, question, many));
}

}  // namespace
}  // namespace kw::test
