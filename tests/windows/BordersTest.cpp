// The borders of the page in a window: where they can be grabbed, and how the page follows.

#include <array>
#include <string>
#include <vector>

#include "tests/windows/WholeEditor.h"

namespace kw::test {
namespace {

constexpr int PageWidth = 300;
constexpr int PageHeight = 200;

class GrabbedBorder : public WholeEditor {
protected:
  GrabbedBorder() {
    const std::string path = folder.File("page.bmp");
    SavePicture(Bitmap(PageWidth, PageHeight, 24), path);
    control->OpenFile(path);
    TestForm::Pump();
    const auto note = [this](const char* name) {
      return [this, name](std::int16_t, std::int16_t, float, float) { pressed.emplace_back(name); };
    };
    Form().BorderRight.MouseDown.Connect(note("right"));
    Form().BorderBottom.MouseDown.Connect(note("bottom"));
    Form().BorderCorner.MouseDown.Connect(note("corner"));
    Form().TransLayers(1).MouseDown.Connect(note("page"));
    Form().picFrame.MouseDown.Connect(note("background"));
    desktop.boxes.clear();
  }
  // Sends a message of the mouse at a point of the viewport to the window that lies there, or holds the mouse.
  void Send(UINT message, int x, int y) {
    const HWND frame = WindowOf(Form().picFrame);
    const HWND canvas = WindowOf(Form().picCanvas);
    const RECT place = PlaceOf(canvas);
    const bool isOnCanvas = x >= place.left && y >= place.top && x < place.right && y < place.bottom;
    HWND target = isOnCanvas ? canvas : frame;
    if (GetCapture() == frame || GetCapture() == canvas) target = GetCapture();
    const WPARAM keys = message == WM_LBUTTONUP || message == WM_RBUTTONUP ? 0U : held;
    const int left = target == canvas ? place.left : 0;
    const int top = target == canvas ? place.top : 0;
    SendMessageW(target, message, keys, MAKELPARAM(x - left, y - top));
  }
  void Drag(POINT from, POINT to) {
    Send(WM_LBUTTONDOWN, from.x, from.y);
    Send(WM_MOUSEMOVE, to.x, to.y);
    Send(WM_LBUTTONUP, to.x, to.y);
  }
  std::string PressAt(int x, int y) {
    pressed.clear();
    Drag({x, y}, {x, y});
    Form().TransLayers(1).Move(0, 0, PageWidth, PageHeight);
    std::string all;
    for (const std::string& one : pressed) all += one;
    return all;
  }
  void ExpectPage(float width, float height) {
    EXPECT_EQ(Form().TransLayers(1).Width(), width);
    EXPECT_EQ(Form().TransLayers(1).Height(), height);
  }

  WPARAM held = MK_LBUTTON;
  std::vector<std::string> pressed;
};

TEST_F(GrabbedBorder, IsFoundOnItsTwoPixelsAndUpToFourBeyond) {
  desktop.Expect("change the code below", 42);
  EXPECT_EQ(PressAt(PageWidth - 1, 100), "page");
  EXPECT_EQ(PressAt(100, PageHeight - 1), "page");
  for (int beyond = 0; beyond < 6; ++beyond) {
    EXPECT_EQ(PressAt(PageWidth + beyond, 100), "right") << beyond;
    EXPECT_EQ(PressAt(100, PageHeight + beyond), "bottom") << beyond;
    EXPECT_EQ(PressAt(PageWidth + beyond, PageHeight + beyond), "corner") << beyond;
    EXPECT_EQ(PressAt(PageWidth, PageHeight + beyond), "corner") << beyond;
    EXPECT_EQ(PressAt(PageWidth + beyond, PageHeight), "corner") << beyond;
    EXPECT_EQ(PressAt(PageWidth - 1, PageHeight + beyond), "bottom") << beyond;
    EXPECT_EQ(PressAt(PageWidth + beyond, PageHeight - 1), "right") << beyond;
  }
  EXPECT_EQ(PressAt(PageWidth + 6, 100), "background");
  EXPECT_EQ(PressAt(100, PageHeight + 6), "background");
  EXPECT_EQ(PressAt(PageWidth + 6, PageHeight + 6), "background");
  EXPECT_EQ(PressAt(PageWidth + 6, PageHeight), "background");
}

TEST_F(GrabbedBorder, LeavesWhatLiesInsideThePageToTheLayersAndThePage) {
  desktop.Expect("change the code below", 2);
  TransparentPicture& layer = *control->LayerRoom().NewLayer();
  layer.Move(PageWidth - 30, 80, 31, 40);  // to the first pixel of the border
  layer.SetVisible(true);
  layer.SetIsToShowResize(true);
  int presses = 0;
  layer.MouseDown.Connect([&](std::int16_t, std::int16_t, float, float) { ++presses; });
  EXPECT_EQ(PressAt(PageWidth - 1, 100), "");
  EXPECT_EQ(PressAt(PageWidth, 100), "");
  EXPECT_EQ(presses, 2);
  EXPECT_EQ(PressAt(PageWidth + 1, 100), "right");
  EXPECT_EQ(PressAt(PageWidth + 3, 100), "right");
}

TEST_F(GrabbedBorder, ResizesThePageByTheDistanceDragged) {
  desktop.Expect("change the code below", 4);
  Drag({PageWidth + 5, 50}, {PageWidth + 25, 90});
  ExpectPage(320, 200);
  EXPECT_EQ(desktop.boxes, std::vector<std::string>{"change the code below"});
  const RECT canvas = PlaceOf(WindowOf(Form().picCanvas));
  EXPECT_EQ(canvas.right - canvas.left, 322);
  Drag({40, 201}, {10, 171});
  ExpectPage(320, 170);
  Drag({325, 175}, {330, 185});
  ExpectPage(325, 180);
  Drag({330, 50}, {-900, 50});
  ExpectPage(325, 180);
  EXPECT_EQ(desktop.boxes.size(), 4U);
}

TEST_F(GrabbedBorder, ResizesByTheDistanceOnThePageThatScrollsMeanwhile) {
  desktop.Expect("change the code below");
  Resize(500, 300);
  Form().TransLayers(1).Move(0, 0, PageWidth, 2000);
  control->ZoomRoom().UpdateAndZoom();
  Form().vScroll.UserSetValue(Form().vScroll.Max());
  const int bottom = 2000 - Form().vScroll.Max();
  Send(WM_LBUTTONDOWN, 50, bottom + 5);
  ASSERT_EQ(pressed, std::vector<std::string>{"bottom"});
  Form().vScroll.UserSetValue(Form().vScroll.Max() - 10);
  Send(WM_LBUTTONUP, 50, bottom + 5);
  ExpectPage(PageWidth, 1990);
}

TEST_F(GrabbedBorder, TheRightButtonDoesNothing) {
  held = MK_RBUTTON;
  Send(WM_RBUTTONDOWN, PageWidth + 3, 50);
  Send(WM_MOUSEMOVE, PageWidth + 30, 50);
  Send(WM_RBUTTONUP, PageWidth + 30, 50);
  ExpectPage(PageWidth, PageHeight);
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(GrabbedBorder, AReleaseWithoutAPressOfItDoesNothing) {
  Send(WM_LBUTTONUP, PageWidth + 3, 50);
  Send(WM_LBUTTONUP, PageWidth + 1, 50);
  Send(WM_LBUTTONDOWN, PageWidth + 60, 50);
  Send(WM_LBUTTONUP, PageWidth + 3, 50);
  EXPECT_TRUE(desktop.boxes.empty());
  for (const int beyond : {1, 4}) {
    Send(WM_LBUTTONDOWN, PageWidth + beyond, 50);
    ReleaseCapture();  // as another window would
    Send(WM_MOUSEMOVE, PageWidth + beyond, 50);
    Send(WM_LBUTTONUP, PageWidth + beyond, 50);
  }
  ExpectPage(PageWidth, PageHeight);
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(GrabbedBorder, AnotherWindowThatBecomesActiveEndsTheDrag) {
  for (const int beyond : {1, 4}) {
    Form().picCanvas.SetFocus();
    Send(WM_LBUTTONDOWN, PageWidth + beyond, 50);
    ASSERT_NE(GetCapture(), nullptr);
    const HWND other = TestForm::HostWindow();
    SetActiveWindow(other);
    EXPECT_EQ(GetCapture(), nullptr) << beyond;
    DestroyWindow(other);
  }
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(GrabbedBorder, ABorderThatIsHiddenOrDisabledOrGoneIsNotGrabbed) {
  Form().BorderRight.SetVisible(false);
  EXPECT_EQ(PressAt(PageWidth + 3, 50), "background");
  Form().BorderRight.SetVisible(true);
  Form().BorderRight.SetEnabled(false);
  EXPECT_EQ(PressAt(PageWidth + 3, 50), "background");
  Form().BorderRight.SetEnabled(true);
  // It goes while it is dragged.
  Send(WM_LBUTTONDOWN, PageWidth + 3, 50);
  Form().BorderRight.SetContainer(nullptr);
  Send(WM_MOUSEMOVE, PageWidth + 30, 50);
  Send(WM_LBUTTONUP, PageWidth + 30, 50);
  ExpectPage(PageWidth, PageHeight);
  Form().BorderRight.SetContainer(&Form().picCanvas);
}

TEST_F(GrabbedBorder, TheWindowMayGoInADrag) {
  Send(WM_LBUTTONDOWN, PageWidth + 3, 50);
  window.reset();
  TestForm::Pump();
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(GrabbedBorder, ShowsItsPointer) {
  struct Case {
    int x, y;
    const wchar_t* cursor;
  };
  const std::array<Case, 4> cases = {{{PageWidth + 4, 50, IDC_SIZEWE},
                                      {50, PageHeight + 4, IDC_SIZENS},
                                      {PageWidth + 4, PageHeight + 4, IDC_SIZENWSE},
                                      {PageWidth + 40, 50, IDC_ARROW}}};
  const HWND frame = WindowOf(Form().picFrame);
  for (const Case& one : cases) {
    POINT at = {one.x, one.y};
    ClientToScreen(frame, &at);
    SetCursorPos(at.x, at.y);
    SendMessageW(frame, WM_SETCURSOR, reinterpret_cast<WPARAM>(frame), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, one.cursor)) << one.x << ", " << one.y;
  }
}

TEST(ScaledInput, ABorderIsGrabbedFromFourPixelsOfTheModelsBeyond) {
  TestForm form{Scale(192)};
  int presses = 0;
  form.border.MouseDown.Connect([&](std::int16_t, std::int16_t, float, float) { ++presses; });
  form.canvas.SetHeight(202);
  form.canvas.SetWidth(300);
  const HWND frame = WindowOf(form.frame);
  ClickAt(frame, 60, 404 + 8);
  EXPECT_EQ(presses, 0) << "five pixels beyond";
  ClickAt(frame, 60, 404 + 7);
  EXPECT_EQ(presses, 1);
  ClickAt(frame, 60, 404);
  EXPECT_EQ(presses, 2);
}

}  // namespace
}  // namespace kw::test
