// On a screen with more pixels to the inch the mouse and the canvas keep to the models' pixels.

#include <windows.h>

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "tests/windows/TestForm.h"
#include "windows/base/TextDrawing.h"

namespace kw::test {
namespace {

constexpr COLORREF Blue = RGB(0, 0, 255);

TEST(ScaledInput, AClickArrivesInTheModelsPixels) {
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

TEST(ScaledInput, AReleaseAtTheLastPixelOfALargerControlIsAClick) {
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
TEST(ScaledInput, WhatIsDraggedStaysBelowThePointerPixelByPixel) {
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

TEST(ScaledInput, ABorderReportsTheDistanceInTwipsOfTheModels) {
  TestForm form{Scale(144)};
  std::vector<float> got;
  form.border.MouseUp.Connect([&](std::int16_t, std::int16_t, float x, float y) { got = {x, y}; });
  const HWND canvas = WindowOf(form.canvas);
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, 301));
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(60, 331));
  EXPECT_EQ(got, (std::vector<float>{20 * TwipsPerPixel, 20 * TwipsPerPixel}));
}

TEST(ScaledCanvas, ThePageFillsItsLargerPlace) {
  TestForm form{Scale(144)};
  const HWND canvas = WindowOf(form.canvas);
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 0, 0), Green);
  EXPECT_EQ(PixelOf(canvas, 449, 299), Green);
  EXPECT_EQ(PixelOf(canvas, 449, 300), RGB(64, 64, 64)) << "the border below it";
}

TEST(ScaledCanvas, LinesAndRectanglesHaveHardEdges) {
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

TEST(ScaledCanvas, AMovedLayerLeavesNoTrace) {
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

TEST(ScaledCanvas, TextIsTypedInAFieldOfTheLayersLargerSize) {
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
  EXPECT_EQ(FontHeightOf(field), -24);
}

// The coverage of a text that is laid out in one place, seen in another.
CoverageMask Rendered(const TextRun& run, const PixelRect& place, const PixelRect& seen) {
  CoverageMask mask{seen, std::vector<std::uint8_t>(static_cast<std::size_t>(seen.Width() * seen.Height()))};
  windows::GdiTextRenderer().Render(run, place, mask);
  return mask;
}

TEST(ScaledCanvas, ATextIsNeitherCutNorBrokenInTheRoomThatIsMeasuredForIt) {
  for (const std::int32_t dpi : Dpis) {
    const Scale scale(dpi);
    for (const char* name : {"Tahoma", "Arial"}) {
      const Font font{.name = name, .size = 9, .bold = true};
      const TextRun run{.text = "Approved until later", .font = scale.ToDevice(font)};
      const TextExtent room = windows::MeasureText(run.text, font, 0, scale);
      for (std::int32_t left = 0; left < 8; ++left) {
        const PixelRect place = scale.ToDevice(PixelRect{left, 20, left + room.width, 20 + room.height});
        const PixelRect wide = {place.left, place.top, place.right + 300, place.bottom + 60};
        const CoverageMask shown = Rendered(run, place, place);
        const CoverageMask whole = Rendered(run, wide, wide);
        EXPECT_EQ(shown.coverage, Rendered(run, wide, place).coverage) << dpi;
        const auto sum = [](const CoverageMask& mask) {
          return std::accumulate(mask.coverage.begin(), mask.coverage.end(), 0U);
        };
        EXPECT_GT(sum(shown), 0U);
        EXPECT_EQ(sum(shown), sum(whole)) << dpi << " " << name << " at " << left;
      }
    }
  }
}

TEST(ScaledCanvas, InLargerBoundsTheFormIsDrawnLargerAndNotStretched) {
  TestForm form;
  TransparentPicture& layer = form.layers.Load(1);
  layer.SetFigure({.kind = FigureKind::Rectangle});
  layer.SetLineWidth(3);
  layer.SetLineColor(MakeColour(0, 0, 255));
  layer.SetBackColor(MakeColour(255, 0, 0));
  layer.Move(41, 31, 60, 50);
  layer.SetVisible(true);
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, 900, 600);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  windows::EditorWindow::Draw(form.root, memory, {0, 0, 900, 600});
  const Scale scale(144);
  const int left = scale.ToDevice(1) + scale.ToDevice(41);
  const int middle = scale.ToDevice(34 + 55);
  EXPECT_EQ(GetPixel(memory, left - 1, middle), Green);
  EXPECT_EQ(GetPixel(memory, left, middle), Blue);
  EXPECT_EQ(GetPixel(memory, left + 4, middle), Blue);
  EXPECT_EQ(GetPixel(memory, left + 5, middle), RGB(255, 0, 0));
  SelectObject(memory, before);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
}

}  // namespace
}  // namespace kw::test
