// What the canvas shows, pixel by pixel, and how little of it is painted again.

#include <gtest/gtest.h>

#include <set>

#include "windows/TestForm.h"

namespace kw::test {
namespace {

constexpr COLORREF Green = RGB(10, 200, 30);
constexpr COLORREF Red = RGB(200, 10, 10);

TransparentPicture& AddLayer(TestForm& form) {
  TransparentPicture& layer = form.layers.Load(1);
  layer.SetPicture(Plain(20, 20, {200, 10, 10}));
  layer.Move(50, 60, 20, 20);
  layer.SetVisible(true);
  return layer;
}

RECT OutOfDate(HWND window) {
  RECT rectangle = {};
  GetUpdateRect(window, &rectangle, FALSE);
  return rectangle;
}

TEST(Canvas, ShowsThePageTheLayersAndTheBordersInTheirOrder) {
  TestForm form;
  AddLayer(form);
  const HWND canvas = WindowOf(form.canvas);
  UpdateWindow(canvas);
  EXPECT_EQ(PixelOf(canvas, 10, 10), Green);
  EXPECT_EQ(PixelOf(canvas, 49, 65), Green);
  EXPECT_EQ(PixelOf(canvas, 50, 65), Red);
  EXPECT_EQ(PixelOf(canvas, 69, 79), Red);
  EXPECT_EQ(PixelOf(canvas, 70, 79), Green);
  EXPECT_EQ(PixelOf(canvas, 20, 201), RGB(64, 64, 64));
  EXPECT_EQ(PixelOf(WindowOf(form.frame), 350, 300), RGB(128, 128, 128)) << "beside the page";
  form.page.ZOrder();
  UpdateWindow(canvas);
  EXPECT_EQ(PixelOf(canvas, 50, 65), Green);
}

TEST(Canvas, WhiteOfALayerShowsWhatLiesBelow) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  layer.SetPicture(Plain(20, 20, {255, 255, 255}));
  const HWND canvas = WindowOf(form.canvas);
  UpdateWindow(canvas);
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
  UpdateWindow(canvas);
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
  UpdateWindow(canvas);
  EXPECT_EQ(PixelOf(canvas, 50, 60), RGB(0, 0, 0));
  EXPECT_EQ(PixelOf(canvas, 169, 99), RGB(0, 0, 0));
  EXPECT_EQ(PixelOf(canvas, 51, 61), Green);
  layer.SetCaption("Layer");
  layer.SetForeColor(MakeColour(0, 0, 255));
  UpdateWindow(canvas);
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
  UpdateWindow(canvas);
  const RECT nothing = OutOfDate(canvas);
  EXPECT_TRUE(IsRectEmpty(&nothing));
  layer.SetLeft(58);
  const RECT moved = OutOfDate(canvas);
  EXPECT_EQ(moved.left, 50);
  EXPECT_EQ(moved.top, 60);
  EXPECT_EQ(moved.right, 78);
  EXPECT_EQ(moved.bottom, 80);
  UpdateWindow(canvas);
  EXPECT_EQ(PixelOf(canvas, 52, 65), Green) << "no trace at the old place";
  EXPECT_EQ(PixelOf(canvas, 77, 65), Red);
  form.layers.Unload(1);
  const RECT gone = OutOfDate(canvas);
  EXPECT_EQ(gone.left, 58);
  EXPECT_EQ(gone.right, 78);
}

TEST(Canvas, AHiddenLayerThatMovesMakesNothingOutOfDate) {
  TestForm form;
  TransparentPicture& layer = AddLayer(form);
  layer.SetVisible(false);
  const HWND canvas = WindowOf(form.canvas);
  UpdateWindow(canvas);
  layer.Move(0, 0, 100, 100);
  const RECT rectangle = OutOfDate(canvas);
  EXPECT_TRUE(IsRectEmpty(&rectangle));
}

TEST(Canvas, NothingIsErasedBeforeItIsPainted) {
  TestForm form;
  const COLORREF mark = RGB(255, 0, 255);
  for (const Control* model : {static_cast<const Control*>(&form.canvas), static_cast<const Control*>(&form.frame),
                               static_cast<const Control*>(&form.label), static_cast<const Control*>(&form.panel),
                               static_cast<const Control*>(&form.palette), static_cast<const Control*>(&form.root)}) {
    const HWND window = WindowOf(*model);
    UpdateWindow(window);
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
  UpdateWindow(WindowOf(form.frame));
  UpdateWindow(WindowOf(form.canvas));
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
