// What the canvas shows, pixel by pixel, and how little of it is painted again.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tests/windows/TestForm.h"
#include "windows/base/Gdi.h"

namespace kw::test {
namespace {

constexpr COLORREF Red = RGB(200, 10, 10);

TransparentPicture& AddLayer(TestForm& form) {
  TransparentPicture& layer = form.layers.Load(1);
  layer.SetPicture(Plain(20, 20, {200, 10, 10}));
  layer.Move(50, 60, 20, 20);
  layer.SetVisible(true);
  return layer;
}

constexpr COLORREF Smear = RGB(255, 0, 255);

// Colours the whole window, past the editor's knowledge.
void SmearOver(HWND window) {
  const HDC context = GetDC(window);
  const HBRUSH brush = CreateSolidBrush(Smear);
  RECT client = {};
  GetClientRect(window, &client);
  FillRect(context, &client, brush);
  DeleteObject(brush);
  ReleaseDC(window, context);
}

// What was painted of a smeared window since.
RECT Painted(HWND window) {
  TestForm::Pump();
  RECT client = {};
  GetClientRect(window, &client);
  windows::BackBuffer copy;
  EXPECT_TRUE(copy.Reserve(client.right, client.bottom));
  const HDC context = GetDC(window);
  BitBlt(copy.Context(), 0, 0, client.right, client.bottom, context, 0, 0, SRCCOPY);
  ReleaseDC(window, context);
  GdiFlush();
  const FrameBuffer pixels = copy.Pixels(client);
  RECT painted = {};
  for (int y = 0; y < client.bottom; ++y) {
    const auto row = pixels.Row(y, 0, client.right);
    for (int x = 0; x < client.right; ++x) {
      if ((row[static_cast<std::size_t>(x)] & 0xFFFFFFU) == kw::PixelOf(Smear)) continue;
      const RECT pixel = {x, y, x + 1, y + 1};
      UnionRect(&painted, &painted, &pixel);
    }
  }
  return painted;
}

TEST(Canvas, ShowsThePageTheLayersAndTheBordersInTheirOrder) {
  TestForm form;
  AddLayer(form);
  const HWND canvas = WindowOf(form.canvas);
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 10, 10), Green);
  EXPECT_EQ(PixelOf(canvas, 49, 65), Green);
  EXPECT_EQ(PixelOf(canvas, 50, 65), Red);
  EXPECT_EQ(PixelOf(canvas, 69, 79), Red);
  EXPECT_EQ(PixelOf(canvas, 70, 79), Green);
  EXPECT_EQ(PixelOf(canvas, 20, 201), RGB(64, 64, 64));
  EXPECT_EQ(PixelOf(WindowOf(form.frame), 350, 300), RGB(128, 128, 128)) << "beside the page";
  form.page.ZOrder();
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 50, 65), Green);
}

TEST(Canvas, WhiteOfALayerShowsWhatLiesBelow) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  layer.SetPicture(Plain(20, 20, {255, 255, 255}));
  const HWND canvas = WindowOf(form.canvas);
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 55, 65), Green);
}

TEST(Canvas, ABlackAndWhitePageThatIsReducedTurnsGreyAndKeepsItsStrokes) {
  TestForm form;
  Bitmap page(600, 400, 1);  // every second column black
  for (std::int32_t y = 0; y < 400; ++y) {
    for (std::uint8_t& byte : page.MutableRow(y)) byte = 0x55;
  }
  form.page.SetPicture(page);
  const HWND canvas = WindowOf(form.canvas);
  TestForm::Pump();
  const COLORREF colour = PixelOf(canvas, 100, 100);
  EXPECT_NEAR(GetRValue(colour), 128, 2);
  EXPECT_EQ(PixelOf(canvas, 101, 117), colour);
}

TEST(Canvas, ALayersFrameAndCaptionShow) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  layer.SetPicture({});
  layer.Move(50, 60, 120, 40);
  layer.SetSelectionFrame(1);
  const HWND canvas = WindowOf(form.canvas);
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 50, 60), RGB(0, 0, 0));
  EXPECT_EQ(PixelOf(canvas, 171, 101), RGB(0, 0, 0)) << "around the contents";
  EXPECT_EQ(PixelOf(canvas, 51, 61), Green);
  layer.SetCaption("Layer");
  layer.SetForeColor(MakeColour(0, 0, 255));
  TestForm::Pump();
  bool hasText = false;
  for (int x = 52; x < 168; ++x) {
    for (int y = 62; y < 98; ++y) hasText = hasText || GetBValue(PixelOf(canvas, x, y)) > 200;
  }
  EXPECT_TRUE(hasText);
}

TEST(Canvas, AMovedLayerMakesOnlyItsOldAndItsNewPlaceOutOfDate) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  const HWND canvas = WindowOf(form.canvas);
  TestForm::Pump();
  SmearOver(canvas);
  const RECT nothing = Painted(canvas);
  EXPECT_TRUE(IsRectEmpty(&nothing));
  layer.SetLeft(58);
  const RECT moved = Painted(canvas);
  EXPECT_EQ(moved.left, 50);
  EXPECT_EQ(moved.top, 60);
  EXPECT_EQ(moved.right, 78);
  EXPECT_EQ(moved.bottom, 80);
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 52, 65), Green) << "no trace at the old place";
  EXPECT_EQ(PixelOf(canvas, 77, 65), Red);
  SmearOver(canvas);
  form.layers.Unload(1);
  const RECT gone = Painted(canvas);
  EXPECT_EQ(gone.left, 58);
  EXPECT_EQ(gone.right, 78);
}

TEST(Canvas, AHiddenLayerThatMovesMakesNothingOutOfDate) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  layer.SetVisible(false);
  const HWND canvas = WindowOf(form.canvas);
  TestForm::Pump();
  SmearOver(canvas);
  layer.Move(0, 0, 100, 100);
  const RECT rectangle = Painted(canvas);
  EXPECT_TRUE(IsRectEmpty(&rectangle));
}

TEST(Canvas, WhatLooksTheSameIsNotPaintedAgain) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  TestForm::Pump();
  const HWND canvas = WindowOf(form.canvas);
  SmearOver(canvas);
  layer.SetPicture(layer.Picture());
  layer.ZOrder();
  layer.SetVisible(false);
  layer.SetVisible(true);
  const RECT rectangle = Painted(canvas);
  EXPECT_TRUE(IsRectEmpty(&rectangle));
}

TEST(Canvas, TwoDistantChangesLeaveWhatLiesBetweenThemAlone) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  TestForm::Pump();
  const HWND canvas = WindowOf(form.canvas);
  SmearOver(canvas);
  layer.SetLeft(150);
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 60, 70), Green);
  EXPECT_EQ(PixelOf(canvas, 160, 70), Red);
  EXPECT_EQ(PixelOf(canvas, 110, 70), Smear);
}

LRESULT CALLBACK CountPaintings(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                DWORD_PTR count) {
  if (message == WM_PAINT) ++*reinterpret_cast<int*>(count);
  return DefSubclassProc(window, message, wParam, lParam);
}

TEST(Canvas, ManyChangesInAShortTimeArePaintedFewTimes) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  TestForm::Pump();
  const HWND canvas = WindowOf(form.canvas);
  int paintings = 0;
  SetWindowSubclass(canvas, &CountPaintings, 1, reinterpret_cast<DWORD_PTR>(&paintings));
  const ULONGLONG start = GetTickCount64();
  constexpr int Changes = 2000;
  for (int i = 0; i < Changes; ++i) {
    layer.SetLeft(static_cast<float>(i % 200));
    TestForm::PumpOnce();
  }
  constexpr ULONGLONG Pause = 8;  // of ten milliseconds; timers may be a little early
  EXPECT_LE(static_cast<ULONGLONG>(paintings), (GetTickCount64() - start) / Pause + 3);
  layer.SetLeft(150);
  TestForm::Pump();
  EXPECT_EQ(PixelOf(canvas, 155, 70), Red) << "the last one shows";
  RemoveWindowSubclass(canvas, &CountPaintings, 1);
}

TEST(Canvas, APickedLayersContentsStayWhereTheyWere) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  Bitmap picture(20, 20, 24);
  for (std::int32_t y = 0; y < 20; ++y) {
    std::size_t at = 0;
    for (std::uint8_t& byte : picture.MutableRow(y))
      byte = static_cast<std::uint8_t>(at++ * 3 + static_cast<std::size_t>(y));
  }
  layer.SetPicture(picture);
  TestForm::Pump();
  const HWND canvas = WindowOf(form.canvas);
  const auto copy = [&] {
    std::vector<COLORREF> colours;
    for (int y = 60; y < 80; ++y) {
      for (int x = 50; x < 70; ++x) colours.push_back(PixelOf(canvas, x, y));
    }
    return colours;
  };
  const auto before = copy();
  layer.SetSelectionFrame(1);
  layer.Move(49, 59);
  TestForm::Pump();
  EXPECT_EQ(copy(), before);
  EXPECT_EQ(PixelOf(canvas, 49, 59), RGB(0, 0, 0));
  EXPECT_EQ(PixelOf(canvas, 70, 80), RGB(0, 0, 0));
}

TEST(Canvas, ALayerIsTypedIntoThroughAFieldOverIt) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  layer.SetPicture({});
  layer.SetFigure({.kind = FigureKind::Text});
  layer.Move(50, 60, 120, 40);
  layer.SetTyping(true);
  EXPECT_FALSE(layer.IsTyping()) << "no layer for text";
  layer.SetTextEntry(true);
  int typed = 0;
  layer.Typed.Connect([&] { ++typed; });
  layer.SetTyping(true);
  TestForm::Pump();
  const HWND canvas = WindowOf(form.canvas);
  const HWND field = FindWindowExW(canvas, nullptr, L"Edit", nullptr);
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(GetFocus(), field);
  const RECT place = PlaceOf(field);
  EXPECT_EQ(place.left, 50);
  EXPECT_EQ(place.bottom, 100);
  for (const wchar_t c : std::wstring(L"Grüße\r2")) SendMessageW(field, WM_CHAR, c, 1);
  EXPECT_EQ(layer.Caption(), "Grüße\r\n2");
  EXPECT_EQ(typed, 7);
  SendMessageW(field, WM_KEYDOWN, VK_ESCAPE, 1);
  TestForm::Pump();
  EXPECT_FALSE(layer.IsTyping());
  EXPECT_EQ(GetFocus(), canvas);
  EXPECT_FALSE(IsWindow(field));
  EXPECT_EQ(layer.Caption(), "Grüße\r\n2");
}

TEST(Canvas, TypingEndsWithTheKeyboardWithTheLayerAndWithTheWindow) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  layer.SetTextEntry(true);
  layer.SetTyping(true);
  SetFocus(WindowOf(form.slider));
  TestForm::Pump();
  EXPECT_FALSE(layer.IsTyping());
  EXPECT_EQ(GetFocus(), WindowOf(form.slider));
  layer.SetTyping(true);
  form.layers.Unload(1);
  TestForm::Pump();
  EXPECT_EQ(FindWindowExW(WindowOf(form.canvas), nullptr, L"Edit", nullptr), nullptr);
  TransparentPicture& other = AddLayer(form);
  other.SetTextEntry(true);
  other.SetTyping(true);
  form.window->Close();
  TestForm::Pump();
  SUCCEED() << "nothing is left that could be called";
}

TEST(Canvas, NothingIsErasedBeforeItIsPainted) {
  TestForm form;
  const COLORREF mark = RGB(255, 0, 255);
  for (const Control* model : {static_cast<const Control*>(&form.canvas), static_cast<const Control*>(&form.frame),
                               static_cast<const Control*>(&form.label), static_cast<const Control*>(&form.panel),
                               static_cast<const Control*>(&form.palette), static_cast<const Control*>(&form.root)}) {
    const HWND window = WindowOf(*model);
    TestForm::Pump();
    RECT client = {};
    GetClientRect(window, &client);
    const int x = client.right - 3;  // where no child lies
    const int y = client.bottom - 3;
    const HDC context = GetDC(window);
    SetPixel(context, x, y, mark);
    EXPECT_NE(SendMessageW(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(context), 0), 0);
    EXPECT_EQ(GetPixel(context, x, y), mark) << model->Name();
    ReleaseDC(window, context);
    EXPECT_EQ(GetClassLongPtrW(window, GCLP_HBRBACKGROUND), 0U);
  }
}

TEST(Canvas, ScrollingMovesThePageWithItsLayers) {
  TestForm form;
  AddLayer(form);
  form.canvas.SetTop(-40);
  TestForm::Pump();
  TestForm::Pump();
  EXPECT_EQ(PixelOf(WindowOf(form.canvas), 55, 65), Red);
  const RECT place = [&] {
    RECT r = {};
    GetWindowRect(WindowOf(form.canvas), &r);
    MapWindowPoints(nullptr, WindowOf(form.frame), reinterpret_cast<POINT*>(&r), 2);
    return r;
  }();
  EXPECT_EQ(place.top, -40);
}

TEST(Canvas, TheWholeFormIsDrawnWithoutAWindow) {
  TestForm form;
  AddLayer(form);
  form.window->Close();
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, 700, 500);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  PatBlt(memory, 0, 0, 700, 500, WHITENESS);
  windows::EditorWindow::Draw(form.root, memory, {50, 40, 650, 440});
  EXPECT_EQ(GetPixel(memory, 49, 60), RGB(255, 255, 255)) << "outside the bounds";
  EXPECT_EQ(GetPixel(memory, 50 + 1 + 10, 40 + 34 + 10), Green);
  EXPECT_EQ(GetPixel(memory, 50 + 1 + 55, 40 + 34 + 65), Red);
  EXPECT_EQ(GetPixel(memory, 50 + 430 + 20, 40 + 34 + 100), RGB(200, 0, 0)) << "the colour field on the panel";
  std::set<COLORREF> ofToolBar;
  for (int x = 0; x < 100; ++x) {
    for (int y = 0; y < 20; ++y) ofToolBar.insert(GetPixel(memory, 55 + x, 46 + y));
  }
  EXPECT_GT(ofToolBar.size(), 5U) << "icons";
  windows::EditorWindow::Draw(form.root, memory, {0, 0, 300, 200});
  EXPECT_EQ(GetPixel(memory, 1 + 10, 17 + 10), Green) << "half the size";
  SelectObject(memory, before);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
}

}  // namespace
}  // namespace kw::test
