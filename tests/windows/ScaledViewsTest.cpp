// On a screen with more pixels to the inch everything is larger, and the models do not notice.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "drawing/CanvasItems.h"
#include "windows/TestForm.h"
#include "windows/WholeEditor.h"

namespace kw::test {
namespace {

constexpr COLORREF Green = RGB(10, 200, 30);
constexpr COLORREF Blue = RGB(0, 0, 255);

constexpr std::int32_t Dpis[] = {120, 144, 168, 192};

// Neighbours that meet in the models meet on the screen, and each window lies where the scale says. Returns how many
// windows there are.
int ExpectNoGaps(const Control& holder, const Scale& scale) {
  std::map<const Control*, RECT> places;
  int count = 0;
  for (const Control* child : holder.Children()) {
    if (const HWND window = WindowOf(*child)) places[child] = PlaceOf(window);
    count += ExpectNoGaps(*child, scale);
  }
  const auto meet = [](double a, double b) { return std::abs(a - b) < 1e-4; };
  for (const auto& [model, place] : places) {
    const Box own = BoundsOf(*model);
    EXPECT_EQ(place.left, scale.ToDevice(own.left)) << model->Name();
    EXPECT_EQ(place.right, scale.ToDevice(own.right)) << model->Name();
    for (const auto& [other, otherPlace] : places) {
      const Box theirs = BoundsOf(*other);
      if (meet(theirs.left, own.right)) {
        EXPECT_EQ(otherPlace.left, place.right) << model->Name();
      }
      if (meet(theirs.top, own.bottom)) {
        EXPECT_EQ(otherPlace.top, place.bottom) << model->Name();
      }
    }
  }
  return count + static_cast<int>(places.size());
}

TEST(ScaledViews, PlacesAreScaledWithoutGaps) {
  for (const std::int32_t dpi : Dpis) {
    const TestForm form{Scale(dpi)};
    EXPECT_GT(ExpectNoGaps(form.root, Scale(dpi)), 15);
  }
  const TestForm form{Scale(144)};
  const RECT frame = PlaceOf(WindowOf(form.frame));
  EXPECT_EQ(frame.left, 2);
  EXPECT_EQ(frame.top, 51);
  EXPECT_EQ(frame.right, 602);
  EXPECT_EQ(PlaceOf(WindowOf(form.vertical)).left, 602);
  EXPECT_EQ(PlaceOf(WindowOf(form.bar)).left, 6) << "inside a container that measures in twips";
}

RECT ButtonAt(const ToolBar& bar, int index) {
  RECT place = {};
  SendMessageW(WindowOf(bar), TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
  return place;
}

// What the pictures of a bar's first buttons cover, as if the buttons lay on each other.
RECT PictureArea(const ToolBar& bar, int buttons) {
  const HWND window = WindowOf(bar);
  Paint(window);
  const RECT first = ButtonAt(bar, 0);
  const COLORREF ground = PixelOf(window, first.left + 1, first.top + 1);
  RECT area = {};
  for (int i = 0; i < buttons; ++i) {
    const RECT button = ButtonAt(bar, i);
    for (int y = 0; y < button.bottom - button.top; ++y) {
      for (int x = 0; x < button.right - button.left; ++x) {
        if (PixelOf(window, button.left + x, button.top + y) == ground) continue;
        const RECT pixel = {x, y, x + 1, y + 1};
        UnionRect(&area, &area, &pixel);
      }
    }
  }
  return area;
}

TEST(ScaledViews, ToolBarsHaveLargerButtonsWithLargerPicturesInTheirMiddle) {
  struct Row {
    std::int32_t dpi;
    int button;
    int picture;
  };
  for (const Row& row : {Row{96, 24, 16}, Row{120, 30, 20}, Row{144, 36, 24}, Row{192, 48, 32}}) {
    const TestForm form{Scale(row.dpi)};
    const RECT first = ButtonAt(form.tools, 0);
    EXPECT_EQ(first.right - first.left, row.button);
    EXPECT_EQ(first.bottom - first.top, row.button);
    EXPECT_EQ(ButtonAt(form.tools, 6).left, 0) << "six in a row, as at 96 pixels to the inch";
    EXPECT_EQ(ButtonAt(form.tools, 6).top, row.button);
    const RECT area = PictureArea(form.tools, 6);
    const int margin = (row.button - row.picture) / 2;
    EXPECT_GE(area.left, margin) << row.dpi;
    EXPECT_GE(area.top, margin) << row.dpi;
    EXPECT_LE(area.right, row.button - margin) << row.dpi;
    EXPECT_LE(area.bottom, row.button - margin) << row.dpi;
    EXPECT_GT(area.right - area.left, row.picture * 3 / 4) << row.dpi;
    EXPECT_GT(area.bottom - area.top, row.picture * 3 / 4) << row.dpi;
  }
}

TEST(ScaledViews, ButtonsWithACaptionAreAsHighAsThoseWithout) {
  for (const std::int32_t dpi : {96, 144, 192}) {
    const TestForm form{Scale(dpi)};
    const RECT caption = ButtonAt(form.bar, 5);
    EXPECT_EQ(caption.bottom - caption.top, 24 * dpi / 96);
  }
}

TEST(ScaledViews, ACaptionsButtonIsAsWideAsItsText) {
  const TestForm form{Scale(144)};
  TBBUTTONINFOW info = {};
  info.cbSize = sizeof info;
  info.dwMask = TBIF_SIZE;
  SendMessageW(WindowOf(form.bar), TB_GETBUTTONINFOW, 6, reinterpret_cast<LPARAM>(&info));
  const HWND bar = WindowOf(form.bar);
  const HDC context = GetDC(bar);
  const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(bar, WM_GETFONT, 0, 0)));
  SIZE text = {};
  GetTextExtentPoint32W(context, L"More", 4, &text);
  SelectObject(context, before);
  ReleaseDC(bar, context);
  EXPECT_EQ(info.cx, text.cx + 2 * 9 + 30);
}

TEST(ScaledViews, CaptionsAreLarger) {
  const auto heightAt = [](std::int32_t dpi) {
    const TestForm form{Scale(dpi)};
    LOGFONTW font = {};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(WindowOf(form.tick), WM_GETFONT, 0, 0)), sizeof font, &font);
    return font.lfHeight;
  };
  EXPECT_EQ(heightAt(96), -11);
  EXPECT_EQ(heightAt(144), -16);
  EXPECT_EQ(heightAt(192), -22);
}

TEST(ScaledViews, AComboIsAsHighAsItsPlace) {
  for (const std::int32_t dpi : Dpis) {
    const TestForm form{Scale(dpi)};
    const RECT place = PlaceOf(WindowOf(form.combo));
    EXPECT_NEAR(place.bottom - place.top, 22 * dpi / 96, 1) << dpi;
  }
}

TEST(ScaledViews, AClickArrivesInTheModelsPixels) {
  for (const std::int32_t dpi : {144, 192}) {
    TestForm form{Scale(dpi)};
    const Scale scale(dpi);
    std::vector<float> got;
    const auto note = [&](std::int16_t, std::int16_t, float x, float y) { got.insert(got.end(), {x, y}); };
    form.canvas.MouseDown.Connect(note);
    form.page.MouseDown.Connect(note);
    form.close.MouseDown.Connect(note);
    form.page.SetVisible(false);
    ClickAt(WindowOf(form.canvas), scale.ToDevice(101), scale.ToDevice(61));
    EXPECT_EQ(got, (std::vector<float>{101, 61}));
    form.page.SetVisible(true);
    form.page.Move(7, 9, 200, 100);
    got.clear();
    ClickAt(WindowOf(form.canvas), scale.ToDevice(7), scale.ToDevice(9));
    EXPECT_EQ(got, (std::vector<float>{0, 0})) << "the layer's first pixel";
    got.clear();
    ClickAt(WindowOf(form.close), scale.ToDevice(4), scale.ToDevice(6));
    EXPECT_EQ(got, (std::vector<float>{4 * TwipsPerPixel, 6 * TwipsPerPixel})) << "in twips";
  }
}

TEST(ScaledViews, AReleaseAtTheLastPixelOfALargerControlIsAClick) {
  TestForm form{Scale(144)};
  int clicks = 0;
  form.sample.Click.Connect([&] { ++clicks; });
  RECT client = {};
  GetClientRect(WindowOf(form.sample), &client);
  ClickAt(WindowOf(form.sample), client.right - 1, client.bottom - 1);
  EXPECT_EQ(clicks, 1);
  SendMessageW(WindowOf(form.sample), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
  SendMessageW(WindowOf(form.sample), WM_LBUTTONUP, 0, MAKELPARAM(client.right, 2));
  EXPECT_EQ(clicks, 1) << "beside it";
}

// The system sends a move for a pointer that stands still over a window that moved: the window must not tremble.
TEST(ScaledViews, WhatIsDraggedStaysBelowThePointerPixelByPixel) {
  for (const std::int32_t dpi : Dpis) {
    TestForm form{Scale(dpi)};
    float startX = 0;
    form.panel.MouseDown.Connect([&](std::int16_t, std::int16_t, float x, float) { startX = x; });
    form.panel.MouseMove.Connect([&](std::int16_t button, std::int16_t, float x, float) {
      if (button == Mouse::LeftButton) form.panel.SetLeft(form.panel.Left() + x - startX);
    });
    const HWND panel = WindowOf(form.panel);
    const int grip = 5;
    const LONG start = PlaceOf(panel).left;
    SendMessageW(panel, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(grip, 3));
    for (int distance = 1; distance < 60; ++distance) {
      const LONG pointer = start + grip - distance;  // in the form
      for (int i = 0; i < 3; ++i) {
        SendMessageW(panel, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(pointer - PlaceOf(panel).left, 3));
        ASSERT_EQ(PlaceOf(panel).left, start - distance) << dpi;
      }
    }
    SendMessageW(panel, WM_LBUTTONUP, 0, MAKELPARAM(grip, 3));
  }
}

TEST(ScaledViews, ABorderReportsTheDistanceInTwipsOfTheModels) {
  TestForm form{Scale(144)};
  std::vector<float> got;
  form.border.MouseUp.Connect([&](std::int16_t, std::int16_t, float x, float y) { got = {x, y}; });
  const HWND canvas = WindowOf(form.canvas);
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, 301));
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(60, 331));
  EXPECT_EQ(got, (std::vector<float>{20 * TwipsPerPixel, 20 * TwipsPerPixel}));
}

TEST(ScaledViews, ThePageFillsItsLargerPlace) {
  TestForm form{Scale(144)};
  const HWND canvas = WindowOf(form.canvas);
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 0, 0), Green);
  EXPECT_EQ(PixelOf(canvas, 449, 299), Green);
  EXPECT_EQ(PixelOf(canvas, 449, 300), RGB(64, 64, 64)) << "the border below it";
}

TEST(ScaledViews, LinesAndRectanglesHaveHardEdges) {
  for (const std::int32_t dpi : Dpis) {
    TestForm form{Scale(dpi)};
    const Scale scale(dpi);
    TransparentPicture& layer = form.layers.Load(1);
    layer.SetFigure({.kind = FigureKind::Rectangle});
    layer.SetLineWidth(3);
    layer.SetLineColor(MakeColour(0, 0, 255));
    layer.SetBackColor(MakeColour(255, 0, 0));
    layer.Move(41, 31, 60, 50);
    layer.SetVisible(true);
    const HWND canvas = WindowOf(form.canvas);
    TestForm::Pump();
    const int left = scale.ToDevice(41);
    const int line = scale.LengthOnDevice(3);
    const int middle = scale.ToDevice(55);
    EXPECT_EQ(PixelOf(canvas, left - 1, middle), Green) << dpi;
    EXPECT_EQ(PixelOf(canvas, left, middle), Blue) << dpi;
    EXPECT_EQ(PixelOf(canvas, left + line - 1, middle), Blue) << dpi;
    EXPECT_EQ(PixelOf(canvas, left + line, middle), RGB(255, 0, 0)) << dpi;
    EXPECT_EQ(PixelOf(canvas, scale.ToDevice(101) - 1, middle), Blue) << dpi;
    EXPECT_EQ(PixelOf(canvas, scale.ToDevice(101), middle), Green) << dpi;

    TransparentPicture& level = form.layers.Load(2);
    level.SetFigure({.kind = FigureKind::Line});
    level.SetLineWidth(3);
    level.SetLineColor(MakeColour(0, 0, 255));
    level.Move(120, 31, 100, 3);
    level.SetVisible(true);
    TestForm::Pump();
    const int top = scale.ToDevice(31);
    const int within = scale.ToDevice(170);
    EXPECT_EQ(PixelOf(canvas, within, top - 1), Green) << dpi;
    for (int y = 0; y < line; ++y) EXPECT_EQ(PixelOf(canvas, within, top + y), Blue) << dpi;
    EXPECT_EQ(PixelOf(canvas, within, top + line), Green) << dpi;
  }
}

TEST(ScaledViews, AMovedLayerLeavesNoTrace) {
  TestForm form{Scale(120)};
  TransparentPicture& layer = form.layers.Load(1);
  layer.SetPicture(Plain(21, 21, {200, 10, 10}));
  layer.SetVisible(true);
  const HWND canvas = WindowOf(form.canvas);
  for (int step = 0; step < 30; ++step) {
    layer.Move(static_cast<float>(50 + step), 61, 21, 21);
    TestForm::Pump();
  }
  layer.SetVisible(false);
  TestForm::Pump();
  for (int x = 40; x < 140; ++x) {
    for (const int y : {75, 76, 77, 90, 101, 102, 103}) ASSERT_EQ(PixelOf(canvas, x, y), Green) << x << ", " << y;
  }
}

TEST(ScaledViews, TextIsTypedInAFieldOfTheLayersLargerSize) {
  TestForm form{Scale(144)};
  TransparentPicture& layer = form.layers.Load(1);
  layer.SetFigure({.kind = FigureKind::Text});
  layer.SetTextEntry(true);
  layer.SetTextFont({.name = "Tahoma", .size = 12});
  layer.Move(21, 31, 120, 41);
  layer.SetVisible(true);
  layer.SetTyping(true);
  const HWND field = FindWindowExW(WindowOf(form.canvas), nullptr, L"Edit", nullptr);
  ASSERT_NE(field, nullptr);
  const RECT place = PlaceOf(field);
  EXPECT_EQ(place.left, 32);
  EXPECT_EQ(place.top, 47);
  EXPECT_EQ(place.right, 212);
  EXPECT_EQ(place.bottom, 108);
  LOGFONTW font = {};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(field, WM_GETFONT, 0, 0)), sizeof font, &font);
  EXPECT_EQ(font.lfHeight, -24);
}

class ScaledEditor : public WholeEditor {
protected:
  void ShowAt(const Scale& scale) {
    window.reset();  // a model has one view
    const RECT place = {0, 0, scale.ToDevice(860), scale.ToDevice(640)};
    window = std::make_unique<windows::EditorWindow>(control->Root(), host, place, scale);
    window->Show(true);
    TestForm::Pump();
  }
};

TEST_F(ScaledEditor, TheWholeFormIsScaledWithoutGaps) {
  for (const std::int32_t dpi : Dpis) {
    ShowAt(Scale(dpi));
    EXPECT_GT(ExpectNoGaps(control->Root(), Scale(dpi)), 40);
  }
}

// How many buttons of the bars below a control lie wholly within their bar; those that do not are failures.
int ButtonsWithin(const Control& holder) {
  int count = 0;
  for (const Control* child : holder.Children()) {
    count += ButtonsWithin(*child);
    if (dynamic_cast<const ToolBar*>(child) == nullptr) continue;
    const HWND bar = WindowOf(*child);
    RECT client = {};
    GetClientRect(bar, &client);
    const auto buttons = SendMessageW(bar, TB_BUTTONCOUNT, 0, 0);
    for (LRESULT i = 0; i < buttons; ++i) {
      RECT place = {};
      const auto index = static_cast<WPARAM>(i);
      if (SendMessageW(bar, TB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&place)) == FALSE) continue;  // hidden
      EXPECT_LE(place.right, client.right) << child->Name() << " " << i;
      EXPECT_LE(place.bottom, client.bottom) << child->Name() << " " << i;
      ++count;
    }
  }
  return count;
}

TEST_F(ScaledEditor, TheBarsButtonsFitIntoTheirBars) {
  const int atFirst = ButtonsWithin(control->Root());
  ASSERT_GT(atFirst, 30);
  for (const std::int32_t dpi : Dpis) {
    ShowAt(Scale(dpi));
    EXPECT_EQ(ButtonsWithin(control->Root()), atFirst) << dpi;
  }
}

}  // namespace
}  // namespace kw::test
