// The dialog of parameters in its real window: what only the system's controls can show. Its rules are tested without.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "components/base/RunTimeError.h"
#include "components/parameters/ParameterText.h"
#include "components/parameters/dialog/ParameterDialog.h"
#include "picture/effects/Effect.h"
#include "tests/support/Numbers.h"
#include "tests/windows/RealDialog.h"
#include "windows/base/Gdi.h"

namespace kw::test {
namespace {

class RealParameterDialog : public RealDialog, protected Numbers {
protected:
  RealParameterDialog() : RealDialog(L"Kw numbers") {}

  // Asks while a user does this on a thread of his own.
  bool Ask(const std::function<void()>& user) {
    bool isAccepted = false;
    dialog.emplace(desktop, question, values);
    Use([&] { isAccepted = dialog->ShowModal(); }, [&] { return Focus() == Number(Angle); }, user);
    return isAccepted;
  }
  HWND Number(std::size_t i) const { return WindowOf(dialog->fields[i]->number); }
  HWND SliderBar(std::size_t i) const { return WindowOf(dialog->fields[i]->slider); }
  HWND List() const { return WindowOf(dialog->fields[Kernel]->choice); }
  bool IsListDropped() const { return SendMessageW(List(), CB_GETDROPPEDSTATE, 0, 0) != 0; }
  // The up-down control that lies at the right end of the field.
  HWND Spin(std::size_t i) const {
    RECT field = {};
    GetWindowRect(Number(i), &field);
    for (HWND one = nullptr; (one = FindWindowExW(GetParent(Number(i)), one, UPDOWN_CLASSW, nullptr)) != nullptr;) {
      RECT place = {};
      GetWindowRect(one, &place);
      if (place.left == field.right && place.top == field.top && place.bottom == field.bottom) return one;
    }
    return nullptr;
  }
  void Turn(HWND field, int wheel) const {
    PostMessageW(field, WM_MOUSEWHEEL, static_cast<WPARAM>(static_cast<WORD>(wheel)) << 16U, 0);
    Settle();
  }
  static bool IsAllSelected(HWND field) {
    DWORD first = 0;
    DWORD last = 0;
    SendMessageW(field, EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&last));
    return first == 0 && last > 0 && last == static_cast<DWORD>(TextIn(field).size());
  }

  ParameterQuestion question{.title = "Kw numbers", .fields = Fields};
  std::array<double, 4> values{10, 2.5, 7, 2};
  const std::array<double, 4> start = values;
  std::optional<ParameterDialog> dialog;
};

TEST_F(RealParameterDialog, TakesWhatIsTypedOverTheSelectedNumber) {
  EXPECT_TRUE(Ask([&] {
    EXPECT_EQ(TextIn(Number(Angle)), "10");
    EXPECT_TRUE(IsAllSelected(Number(Angle)));
    EXPECT_EQ(SendMessageW(SliderBar(Angle), TBM_GETPOS, 0, 0), 370);
    Type(L"-45.25");
    EXPECT_EQ(TextIn(Number(Angle)), "-45.25");
    EXPECT_EQ(SendMessageW(SliderBar(Angle), TBM_GETPOS, 0, 0), 315);
    Press(VK_TAB);
    Press(VK_TAB);
    EXPECT_EQ(Focus(), Number(Sigma));
    EXPECT_TRUE(IsAllSelected(Number(Sigma)));
    Type(L"0,75");
    Mnemonic(L'k');
    EXPECT_EQ(Focus(), List());
    Press(VK_UP);
    EXPECT_EQ(dialog->fields[Kernel]->choice.SelectedItem(), 1);
    Press(VK_RETURN);
  }));
  EXPECT_EQ(values, (std::array<double, 4>{-45.25, 0.75, 7, 1}));
}

TEST_F(RealParameterDialog, StepsByArrowsWheelSpinButtonAndSlider) {
  EXPECT_TRUE(Ask([&] {
    Press(VK_UP);
    EXPECT_EQ(TextIn(Number(Angle)), "11");
    EXPECT_TRUE(IsAllSelected(Number(Angle)));
    Turn(Number(Angle), -3 * WHEEL_DELTA / 2);
    EXPECT_EQ(TextIn(Number(Angle)), "10");
    Turn(Number(Angle), -WHEEL_DELTA / 2);
    EXPECT_EQ(TextIn(Number(Angle)), "9") << "halves of a notch add up";
    ASSERT_NE(Spin(Sigma), nullptr);
    RECT spin = {};
    GetClientRect(Spin(Sigma), &spin);
    PostClickAt(Spin(Sigma), spin.right / 2, spin.bottom - 3);
    EXPECT_EQ(TextIn(Number(Sigma)), "2.4");
    PostClickAt(Spin(Sigma), spin.right / 2, 3);
    PostClickAt(Spin(Sigma), spin.right / 2, 3);
    EXPECT_EQ(TextIn(Number(Sigma)), "2.6");
    Press(VK_TAB);
    EXPECT_EQ(Focus(), SliderBar(Angle));
    Press(VK_RIGHT);
    EXPECT_EQ(TextIn(Number(Angle)), "10");
    Press(VK_NEXT);
    EXPECT_EQ(TextIn(Number(Angle)), "82");
    Press(VK_RETURN);
  }));
  EXPECT_EQ(values, (std::array<double, 4>{82, 2.6, 7, 2}));
}

TEST_F(RealParameterDialog, GoesBackToAWrongNumberAndSelectsIt) {
  EXPECT_FALSE(Ask([&] {
    Type(L"many");
    Press(VK_RETURN);
    EXPECT_EQ(Focus(), Number(Angle));
    EXPECT_TRUE(IsAllSelected(Number(Angle)));
    Mnemonic(L'l');
    EXPECT_EQ(Focus(), Number(Level));
    Press(VK_RETURN);
    EXPECT_EQ(Focus(), Number(Angle));
    EXPECT_TRUE(IsAllSelected(Number(Angle)));
    EXPECT_EQ(dialog->message.Caption(), "Not allowed. Angle: -360 to 360 degrees; default 90");
    Click(dialog->cancel);
  }));
  EXPECT_EQ(values, start);
}

TEST_F(RealParameterDialog, AFieldTakesNoMoreThanTwelveCharacters) {
  EXPECT_FALSE(Ask([&] {
    Type(L"1234567890123");
    EXPECT_EQ(TextIn(Number(Angle)), "123456789012");
    Press(VK_ESCAPE);
  }));
}

TEST_F(RealParameterDialog, TabGoesRoundTheFieldsThenTheButtons) {
  EXPECT_FALSE(Ask([&] {
    const std::vector<HWND> expected{Number(0),
                                     SliderBar(0),
                                     Number(1),
                                     SliderBar(1),
                                     Number(2),
                                     SliderBar(2),
                                     List(),
                                     WindowOf(dialog->ok),
                                     WindowOf(dialog->cancel),
                                     WindowOf(dialog->defaults)};
    std::vector<HWND> visited;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      visited.push_back(Focus());
      Press(VK_TAB);
    }
    EXPECT_EQ(visited, expected);
    EXPECT_EQ(Focus(), Number(0));
    Click(dialog->defaults);
    EXPECT_EQ(TextIn(Number(0)), "90");
    Press(VK_ESCAPE);
  }));
}

TEST_F(RealParameterDialog, EnterAndEscapeCloseADroppedListFirst) {
  for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_ESCAPE}}) {
    const bool isAccepted = Ask([&] {
      Mnemonic(L'k');
      SendMessageW(List(), CB_SHOWDROPDOWN, TRUE, 0);
      EXPECT_TRUE(IsListDropped());
      Press(key);
      EXPECT_FALSE(IsListDropped());
      EXPECT_NE(Dialog(), nullptr) << "the dialog stays";
      Press(key);
    });
    EXPECT_EQ(isAccepted, key == VK_RETURN);
    EXPECT_EQ(values, start);
  }
}

TEST_F(RealParameterDialog, ThePreviewIsShownPixelForPixelUnderTheHourglassFirst) {
  std::atomic<double> tried = 0;
  std::atomic<bool> wasBusy = false;
  std::atomic<int> roomWidth = 0;
  question.makePreview = [&](int width, int) -> ParameterQuestion::Preview {
    wasBusy = GetCursor() == LoadCursorW(nullptr, IDC_WAIT);
    roomWidth = width;
    return [&](std::span<const double> shown) {
      tried = shown[Angle];
      if (shown[Angle] == 66) Raise(ErrorNumber::OutOfMemory);
      return Plain(40, 30, {static_cast<std::uint8_t>(shown[Angle]), 20, 200});
    };
  };
  const auto waitFor = [&](double value) { return WaitFor([&] { return tried == value; }); };
  const auto colourIn = [&](int x, int y) {
    Sleep(50);  // until it is painted
    return PixelOf(WindowOf(dialog->picPreview), x, y);
  };
  EXPECT_TRUE(Ask([&] {
    EXPECT_TRUE(waitFor(10));
    RECT room = {};
    GetClientRect(WindowOf(dialog->picPreview), &room);
    EXPECT_EQ(room.right, roomWidth);
    const int middle = room.right / 2;
    EXPECT_EQ(colourIn(middle, middle), RGB(10, 20, 200));
    Type(L"77");
    EXPECT_TRUE(waitFor(77));
    EXPECT_EQ(colourIn(middle - 20, middle - 15), RGB(77, 20, 200));
    EXPECT_EQ(colourIn(middle - 21, middle), RGB(128, 128, 128));
    SendMessageW(Number(Angle), EM_SETSEL, 0, -1);
    Type(L"66");
    EXPECT_TRUE(waitFor(66));
    EXPECT_EQ(colourIn(middle, middle), RGB(128, 128, 128)) << "a failed preview is none";
    SendMessageW(Number(Angle), EM_SETSEL, 0, -1);
    Type(L"55");
    Press(VK_RETURN);
  }));
  EXPECT_EQ(values[Angle], 55);
  // The pointer is the dialog's while it is over the dialog.
  POINT before = {};
  GetCursorPos(&before);
  tried = 0;
  wasBusy = false;
  SetCursorPos(300, 200);
  EXPECT_FALSE(Ask([&] {
    EXPECT_TRUE(waitFor(55));
    Press(VK_ESCAPE);
  }));
  EXPECT_TRUE(wasBusy);
  SetCursorPos(before.x, before.y);
}

TEST_F(RealParameterDialog, DisablesItsOwnerAndLeavesWithIt) {
  EXPECT_FALSE(Ask([&] {
    EXPECT_EQ(GetWindow(Dialog(), GW_OWNER), form.host);
    EXPECT_FALSE(IsWindowEnabled(form.host));
    PostMessageW(form.host, WM_CLOSE, 0, 0);  // destroys the owner on its own thread
  }));
  EXPECT_FALSE(IsWindow(form.host));
  EXPECT_EQ(values, start);
}

TEST_F(RealParameterDialog, ManyFieldsFitOnASmallScreen) {
  const std::vector<Parameter> fields(14, question.fields[Sigma]);
  std::array<double, 14> many{};
  many.fill(1);
  question.fields = fields;
  dialog.emplace(desktop, question, many);
  Use([&] { EXPECT_FALSE(dialog->ShowModal()); }, [] { return true; },
      [&] {
        RECT place = {};
        GetWindowRect(Dialog(), &place);
        EXPECT_LE(place.bottom - place.top, 480);
        EXPECT_LE(place.right - place.left, 640);
        EXPECT_GE(place.top, 0);
        EXPECT_GE(place.left, 0);
        PostMessageW(Dialog(), WM_CLOSE, 0, 0);
      });
}

// A caption's width in pixels of the screen.
int WidthIn(HDC context, const std::string& caption) {
  RECT room = {};
  const std::wstring text = windows::ToWide(caption);
  DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &room, DT_SINGLELINE | DT_CALCRECT);
  return room.right;
}

TEST_F(RealParameterDialog, NoTextOfAnyEffectIsCutOff) {
  const HDC context = CreateCompatibleDC(nullptr);
  for (const std::int32_t dpi : {96, 120, 144, 168, 192}) {
    const Scale scale(dpi);
    const HFONT font = windows::CreateCaptionFont(scale);
    const HGDIOBJ before = SelectObject(context, font);
    for (const Effect& effect : Effects()) {
      question.fields = effect.parameters;
      for (const bool hasPicture : {false, true}) {
        question.makePreview = nullptr;
        if (hasPicture) question.makePreview = [](int, int) { return ParameterQuestion::Preview(); };
        std::vector<double> offered = StandardValues(effect);
        const ParameterDialog asked(desktop, question, offered);
        const auto fits = [&](const std::string& text, const Control& control) {
          EXPECT_LE(WidthIn(context, text), scale.ToDevice(control.Width())) << text << " at " << dpi;
        };
        for (std::size_t i = 0; i < offered.size(); ++i) {
          fits(asked.fields[i]->label.Caption(), asked.fields[i]->label);
          fits(asked.fields[i]->unit.Caption(), asked.fields[i]->unit);
          fits("Not allowed. " + RangeText(effect.parameters[i], "."), asked.message);
        }
      }
    }
    SelectObject(context, before);
    DeleteObject(font);
  }
  DeleteDC(context);
}

}  // namespace
}  // namespace kw::test
