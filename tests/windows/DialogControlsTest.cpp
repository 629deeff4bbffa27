// The views of the controls that only dialogs have.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "components/controls/CommandButton.h"
#include "components/controls/NumberField.h"
#include "tests/windows/TestForm.h"

namespace kw::test {
namespace {

class DialogControls : public testing::Test {
protected:
  DialogControls() {
    field.Move(430, 4, 80, 21);
    field.SetText("12");
    field.SetContainer(&form.root);
    button.Move(520, 4, 70, 24);
    button.SetCaption("&Go");
    button.SetContainer(&form.root);
    TestForm::Pump();
  }
  ~DialogControls() override {
    field.SetContainer(nullptr);
    button.SetContainer(nullptr);
  }

  HWND Edit() const { return WindowOf(field); }
  // The only one of its class beside the form's own on the panel.
  HWND Spin() const { return FindWindowExW(form.window->Handle(), nullptr, UPDOWN_CLASSW, nullptr); }
  std::wstring Text() const {
    wchar_t text[40] = {};
    GetWindowTextW(Edit(), text, 40);
    return text;
  }

  TestForm form;
  NumberField field{"field"};
  CommandButton button{"button"};
};

TEST_F(DialogControls, TheSpinButtonLiesAtTheRightEndOfItsField) {
  EXPECT_EQ(PlaceOf(Edit()).left, 430);
  EXPECT_EQ(PlaceOf(Edit()).right, PlaceOf(Spin()).left);
  EXPECT_EQ(PlaceOf(Spin()).right, 510);
  field.Move(430, 8, 100, 25);
  EXPECT_EQ(PlaceOf(Edit()).right, PlaceOf(Spin()).left);
  EXPECT_EQ(PlaceOf(Spin()).right, 530);
  EXPECT_EQ(PlaceOf(Spin()).top, 8);
  EXPECT_EQ(PlaceOf(Spin()).bottom, 33);
}

TEST_F(DialogControls, TheSpinButtonFollowsItsField) {
  EXPECT_TRUE(IsWindowVisible(Spin()));
  field.SetVisible(false);
  EXPECT_FALSE(IsWindowVisible(Edit()));
  EXPECT_FALSE(IsWindowVisible(Spin()));
  field.SetVisible(true);
  EXPECT_TRUE(IsWindowVisible(Spin()));
  form.root.SetEnabled(false);
  EXPECT_FALSE(IsWindowEnabled(Spin()));
  form.root.SetEnabled(true);
  EXPECT_TRUE(IsWindowEnabled(Spin()));
  field.SetContainer(nullptr);
  EXPECT_EQ(Spin(), nullptr);
}

TEST_F(DialogControls, WhatIsTypedGoesToTheModelUnlessTheHostAllowsNoInput) {
  SetWindowTextW(Edit(), L"-3\u0661");
  EXPECT_EQ(field.Text(), "-3\u0661");
  form.window->AllowInput(false);
  SetWindowTextW(Edit(), L"99");
  EXPECT_EQ(field.Text(), "-3\u0661");
  EXPECT_EQ(Text(), L"-3\u0661");
  std::vector<int> steps;
  field.Step.Connect([&](int by) { steps.push_back(by); });
  NMUPDOWN step = {{Spin(), 0, static_cast<UINT>(UDN_DELTAPOS)}, 0, 1};
  EXPECT_EQ(SendMessageW(form.window->Handle(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&step)), TRUE);
  EXPECT_TRUE(steps.empty());
  form.window->AllowInput(true);
  SendMessageW(form.window->Handle(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&step));
  EXPECT_EQ(steps, std::vector<int>{1});
}

// A handler may unload the field, or close the window, in the middle of the message.
TEST_F(DialogControls, AHandlerMayTakeTheFieldAway) {
  field.Step.Connect([&](int) { field.SetContainer(nullptr); });
  SendMessageW(Edit(), WM_KEYDOWN, VK_UP, 0);
  EXPECT_EQ(Spin(), nullptr);
  field.SetContainer(&form.root);
  field.Change.Connect([&] { form.window->Close(); });
  SetWindowTextW(Edit(), L"5");
  EXPECT_EQ(form.window->Handle(), nullptr);
  EXPECT_EQ(field.Text(), "5");
}

TEST_F(DialogControls, AButtonIsClicked) {
  int clicks = 0;
  button.Click.Connect([&] { ++clicks; });
  ClickAt(WindowOf(button), 5, 5);
  EXPECT_EQ(clicks, 1);
  button.SetEnabled(false);
  ClickAt(WindowOf(button), 5, 5);
  EXPECT_EQ(clicks, 1);
}

// Whether a drawing has another pixel than its first one.
bool IsDrawn(HDC context, const RECT& place) {
  for (LONG y = place.top; y < place.bottom; ++y) {
    for (LONG x = place.left; x < place.right; ++x) {
      if (GetPixel(context, x, y) != GetPixel(context, 0, 0)) return true;
    }
  }
  return false;
}

TEST_F(DialogControls, AreDrawnWithoutAWindow) {
  const HDC screen = GetDC(nullptr);
  const HDC context = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, 600, 400);
  const HGDIOBJ before = SelectObject(context, bitmap);
  windows::EditorWindow::Draw(form.root, context, {0, 0, 600, 400});
  EXPECT_TRUE(IsDrawn(context, {434, 8, 480, 21})) << "the number";
  EXPECT_TRUE(IsDrawn(context, {495, 6, 508, 22})) << "the spin button";
  EXPECT_TRUE(IsDrawn(context, {530, 8, 580, 24})) << "the caption";
  SelectObject(context, before);
  DeleteObject(bitmap);
  DeleteDC(context);
  ReleaseDC(nullptr, screen);
}

}  // namespace
}  // namespace kw::test
