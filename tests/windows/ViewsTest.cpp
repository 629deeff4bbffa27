// What a model says is what its window shows.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "tests/windows/TestForm.h"
#include "windows/base/Text.h"

namespace kw::test {
namespace {

std::wstring TextOf(HWND window) {
  wchar_t text[200] = {};
  GetWindowTextW(window, text, 200);
  return text;
}

std::wstring ClassOf(HWND window) {
  wchar_t name[100] = {};
  GetClassNameW(window, name, 100);
  return name;
}

unsigned StateOf(const ToolBar& bar, int id) {
  return static_cast<unsigned>(SendMessageW(WindowOf(bar), TB_GETSTATE, static_cast<WPARAM>(id), 0));
}

RECT ButtonPlace(const ToolBar& bar, int index) {
  RECT place = {};
  SendMessageW(WindowOf(bar), TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
  return place;
}

TEST(Views, EachModelGetsTheControlThatSuitsIt) {
  const TestForm form;
  EXPECT_EQ(ClassOf(WindowOf(form.bar)), TOOLBARCLASSNAMEW);
  EXPECT_EQ(ClassOf(WindowOf(form.combo)), WC_COMBOBOXW);
  EXPECT_EQ(ClassOf(WindowOf(form.slider)), TRACKBAR_CLASSW);
  EXPECT_EQ(ClassOf(WindowOf(form.vertical)), L"ScrollBar");
  EXPECT_EQ(ClassOf(WindowOf(form.tick)), L"Button");
  EXPECT_EQ(ClassOf(WindowOf(form.spinner)), UPDOWN_CLASSW);
  for (const Control* model : {static_cast<const Control*>(&form.label), static_cast<const Control*>(&form.strip),
                               static_cast<const Control*>(&form.comboFrame), static_cast<const Control*>(&form.close),
                               static_cast<const Control*>(&form.canvas)}) {
    EXPECT_NE(WindowOf(*model), nullptr) << model->Name();
  }
  EXPECT_EQ(WindowOf(form.page), nullptr) << "a layer is a part of its canvas";
}

TEST(Views, TwipsAndPixelsComeToLieWhereTheContainerSays) {
  TestForm form;
  EXPECT_EQ(PlaceOf(WindowOf(form.frame)).top, 34);
  EXPECT_EQ(PlaceOf(WindowOf(form.bar)).left, 4);
  EXPECT_EQ(PlaceOf(WindowOf(form.bar)).right, 204);
  form.frame.Move(20, 50, 100, 90);
  form.bar.SetLeft(30 * TwipsPerPixel);
  const RECT frame = PlaceOf(WindowOf(form.frame));
  EXPECT_EQ(frame.left, 20);
  EXPECT_EQ(frame.bottom, 140);
  EXPECT_EQ(PlaceOf(WindowOf(form.bar)).left, 30);
}

TEST(Views, VisibilityAndTheEnabledStateFollowTheModel) {
  TestForm form;
  form.panel.SetVisible(false);
  EXPECT_FALSE(IsWindowVisible(WindowOf(form.panel)));
  EXPECT_FALSE(IsWindowVisible(WindowOf(form.slider)));
  form.panel.SetVisible(true);
  EXPECT_TRUE(IsWindowVisible(WindowOf(form.slider)));
  form.combo.SetEnabled(false);
  EXPECT_FALSE(IsWindowEnabled(WindowOf(form.combo)));
}

TEST(Views, WhatADisabledFrameHoldsLooksDisabledUntilTheFrameIsEnabled) {
  TestForm form;
  form.strip.SetEnabled(false);
  EXPECT_EQ(StateOf(form.bar, 1) & TBSTATE_ENABLED, 0U);
  EXPECT_FALSE(IsWindowEnabled(WindowOf(form.combo)));
  form.strip.SetEnabled(true);
  EXPECT_NE(StateOf(form.bar, 1) & TBSTATE_ENABLED, 0U);
  EXPECT_EQ(StateOf(form.bar, 3) & TBSTATE_ENABLED, 0U) << "the button's own state";
  EXPECT_TRUE(IsWindowEnabled(WindowOf(form.combo)));
}

TEST(Views, AColourThatCannotBeClickedIsFaint) {
  TestForm form;
  Paint(WindowOf(form.sample));
  const COLORREF clear = PixelOf(WindowOf(form.sample), 10, 10);
  EXPECT_EQ(clear, RGB(200, 0, 0));
  form.panel.SetEnabled(false);
  UpdateWindow(WindowOf(form.sample));
  const COLORREF faint = PixelOf(WindowOf(form.sample), 10, 10);
  EXPECT_EQ(GetGValue(faint), GetGValue(GetSysColor(COLOR_3DFACE)) / 2);
  form.panel.SetEnabled(true);
  UpdateWindow(WindowOf(form.sample));
  EXPECT_EQ(PixelOf(WindowOf(form.sample), 10, 10), clear);
}

TEST(Views, ButtonsShowTheirState) {
  TestForm form;
  EXPECT_NE(StateOf(form.bar, 4) & TBSTATE_HIDDEN, 0U);
  form.bar.SetButtonVisible("Cut", true);
  EXPECT_EQ(StateOf(form.bar, 4) & TBSTATE_HIDDEN, 0U);
  form.bar.SetButtonEnabled("Undo", true);
  EXPECT_NE(StateOf(form.bar, 3) & TBSTATE_ENABLED, 0U);
  form.tools.SetButtonPressed("Pen", true);
  EXPECT_NE(StateOf(form.tools, 2) & TBSTATE_CHECKED, 0U);
  form.tools.SetButtonPressed("Text", true);
  EXPECT_EQ(StateOf(form.tools, 2) & TBSTATE_CHECKED, 0U) << "one of a group is pressed";
  EXPECT_NE(StateOf(form.tools, 3) & TBSTATE_CHECKED, 0U);
}

TEST(Views, AToolBarThatIsTooNarrowForItsButtonsGoesOnInTheNextRow) {
  const TestForm form;
  const RECT sixth = ButtonPlace(form.tools, 5);
  const RECT seventh = ButtonPlace(form.tools, 6);
  EXPECT_EQ(sixth.top, ButtonPlace(form.tools, 0).top);
  EXPECT_EQ(seventh.left, ButtonPlace(form.tools, 0).left);
  EXPECT_GE(seventh.top, sixth.bottom);
  RECT client = {};
  GetClientRect(WindowOf(form.tools), &client);
  EXPECT_LE(sixth.right, client.right);
  EXPECT_LE(seventh.bottom, client.bottom);
}

TEST(Views, RangesAndValuesShow) {
  TestForm form;
  form.slider.SetValue(7);
  EXPECT_EQ(SendMessageW(WindowOf(form.slider), TBM_GETPOS, 0, 0), 7);
  EXPECT_EQ(SendMessageW(WindowOf(form.slider), TBM_GETRANGEMIN, 0, 0), 1);
  form.vertical.SetValue(120);
  SCROLLINFO info = {sizeof info, SIF_ALL, 0, 0, 0, 0, 0};
  GetScrollInfo(WindowOf(form.vertical), SB_CTL, &info);
  EXPECT_EQ(info.nPos, 120);
  EXPECT_EQ(info.nMax - static_cast<int>(info.nPage) + 1, 300) << "the value reaches the model's maximum";
  EXPECT_FALSE(IsWindowEnabled(WindowOf(form.horizontal)));
  form.horizontal.SetMax(50);
  form.horizontal.SetEnabled(true);
  EXPECT_TRUE(IsWindowEnabled(WindowOf(form.horizontal)));
  form.spinner.SetValue(4);
  EXPECT_EQ(SendMessageW(WindowOf(form.spinner), UDM_GETPOS32, 0, 0), 4);
}

TEST(Views, TextsAndTicksShow) {
  TestForm form;
  EXPECT_EQ(TextOf(WindowOf(form.tick)), L"Lighten");
  form.tick.SetCaption(
      "Gr\xC3\xB6\xC3\x9F"
      "e");
  EXPECT_EQ(TextOf(WindowOf(form.tick)), L"Gr\u00F6\u00DFe");
  form.tick.SetValue(true);
  EXPECT_EQ(SendMessageW(WindowOf(form.tick), BM_GETCHECK, 0, 0), BST_CHECKED);
}

TEST(Views, AComboShowsItsItemsAndTheSelectedOne) {
  TestForm form;
  const HWND combo = WindowOf(form.combo);
  EXPECT_EQ(SendMessageW(combo, CB_GETCOUNT, 0, 0), 3);
  EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 1);
  form.combo.Add("25 %", 1);
  EXPECT_EQ(SendMessageW(combo, CB_GETCOUNT, 0, 0), 4);
  EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 2) << "the selection stays with its item";
  form.combo.Select(4);
  EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 3);
  form.combo.Clear();
  EXPECT_EQ(SendMessageW(combo, CB_GETCOUNT, 0, 0), 0);
}

TEST(Views, TheOrderOfTheModelsIsThatOfTheWindows) {
  TestForm form;
  EXPECT_EQ(GetTopWindow(form.window->Handle()), WindowOf(form.panels(0)));
  form.frame.ZOrder();
  EXPECT_EQ(GetTopWindow(form.window->Handle()), WindowOf(form.frame));
}

TEST(Views, ALoadedControlGetsAWindowWhenItIsShownAndLosesItWhenItIsUnloaded) {
  TestForm form;
  RaisedArea& loaded = form.panels.Load(3);
  EXPECT_EQ(WindowOf(loaded), nullptr) << "loaded hidden";
  loaded.Move(500, 340);
  loaded.SetVisible(true);
  const HWND window = WindowOf(loaded);
  EXPECT_TRUE(IsWindowVisible(window));
  EXPECT_EQ(PlaceOf(window).left, 500);
  loaded.SetVisible(false);
  EXPECT_EQ(WindowOf(loaded), window);
  EXPECT_FALSE(IsWindowVisible(window));
  form.panels.Unload(3);
  EXPECT_FALSE(IsWindow(window));
}

// The shortest of some rounds, in microseconds: what a command of a window costs.
double TimeOfCommands(HWND sender) {
  constexpr int Rounds = 20;
  constexpr int Commands = 50;
  constexpr WORD Unknown = 0x7777;
  double least = 1e9;
  for (int round = 0; round < Rounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < Commands; ++i)
      SendMessageW(GetParent(sender), WM_COMMAND, MAKEWPARAM(0, Unknown), reinterpret_cast<LPARAM>(sender));
    const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
    least = std::min(least, taken.count() / Commands);
  }
  return least;
}

TEST(Views, ACommandCostsTheSameWithThirtyThousandMarkersOnTheCanvas) {
  TestForm form;
  const HWND sender = WindowOf(form.tick);
  const double before = TimeOfCommands(sender);
  ControlArray<LightWeightMarker> markers("markers", 1);
  markers(0).SetContainer(&form.canvas);
  for (int i = 1; i <= 30000; ++i) markers.Load(i);
  const double after = TimeOfCommands(sender);
  EXPECT_LT(after, 4 * before + 5) << before << " microseconds before";
}

TEST(Views, ResizingMovesTheWindowAndHidingHidesIt) {
  TestForm form;
  form.window->Resize({10, 20, 310, 220});
  EXPECT_EQ(PlaceOf(form.window->Handle()).left, 10);
  EXPECT_EQ(PlaceOf(form.window->Handle()).bottom, 220);
  form.window->Show(false);
  EXPECT_FALSE(IsWindowVisible(form.window->Handle()));
}

}  // namespace
}  // namespace kw::test
