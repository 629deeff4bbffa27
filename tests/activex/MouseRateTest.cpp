// The cost of mouse moves on the real control with 100 layers on its page, beside two windows that have nothing to do
// with it and get the same moves. Tested are what the moves did and how often the canvas was painted for it; the times
// are the machine's, and are only printed. KW_MOVES asks for more moves and so for finer times.

#include <windowsx.h>

#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>

#include "tests/activex/InputFixture.h"

namespace kw::test {
namespace {

constexpr int Side = 10;  // layers in a row, and rows
constexpr SIZE Cell = {48, 38};
constexpr SIZE LayerSize = {40, 30};
constexpr POINT Beside = {4, 4};  // on the page, beside all layers

int Moves() {
  const char* const text = std::getenv("KW_MOVES");
  return text == nullptr ? 100 : std::atoi(text);
}

POINT CornerOf(int layer) { return {8 + layer % Side * Cell.cx, 8 + layer / Side * Cell.cy}; }

// A way over the whole page in steps of a few pixels.
POINT PointOnTheWay(int step) {
  const auto toAndFro = [](int way, int length) {
    way %= 2 * length;
    return way < length ? way : 2 * length - way;
  };
  return {Beside.x + toAndFro(step * 3, Side * Cell.cx), Beside.y + toAndFro(step * 2, Side * Cell.cy)};
}

struct ProcessorTime {
  double user = 0;    // microseconds
  double kernel = 0;  // microseconds
};

double MicrosecondsOf(const FILETIME& time) {
  constexpr double Ticks = 10;  // of 100 nanoseconds
  return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + static_cast<double>(time.dwLowDateTime)) / Ticks;
}

ProcessorTime Used() {
  FILETIME created = {};
  FILETIME ended = {};
  FILETIME kernel = {};
  FILETIME user = {};
  EXPECT_NE(GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user), FALSE);
  return {MicrosecondsOf(user), MicrosecondsOf(kernel)};
}

// A window that does nothing with the mouse, or paints a few pixels at each move.
class BareWindow {
public:
  BareWindow(HWND parent, bool doesPaint) : isPainting(doesPaint) {
    WNDCLASSW description = {};
    description.lpfnWndProc = &Procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = ClassName;
    RegisterClassW(&description);
    window = CreateWindowExW(0, ClassName, nullptr, WS_CHILD | WS_CLIPSIBLINGS, 0, 0, 500, 400, parent, nullptr,
                             description.hInstance, nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
  }
  BareWindow(const BareWindow&) = delete;
  BareWindow& operator=(const BareWindow&) = delete;
  ~BareWindow() {
    DestroyWindow(window);
    UnregisterClassW(ClassName, GetModuleHandleW(nullptr));
  }

  HWND Handle() const { return window; }
  int MovesSeen() const { return moves; }
  int Paintings() const { return paintings; }

private:
  static constexpr const wchar_t* ClassName = L"KwBareWindow";

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<BareWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr && message == WM_MOUSEMOVE) self->Move({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    if (self != nullptr && message == WM_PAINT) ++self->paintings;
    if (self == nullptr || message != WM_PAINT) return DefWindowProcW(window, message, wParam, lParam);
    PAINTSTRUCT paint = {};
    const HDC context = BeginPaint(window, &paint);
    FillRect(context, &paint.rcPaint, GetSysColorBrush(COLOR_WINDOWTEXT));
    EndPaint(window, &paint);
    return 0;
  }
  void Move(POINT at) {
    ++moves;
    const RECT changed = {at.x, at.y, at.x + 2, at.y + 2};
    if (isPainting) InvalidateRect(window, &changed, FALSE);
  }

  bool isPainting;
  HWND window = nullptr;
  int moves = 0;
  int paintings = 0;
};

// Counts what a window paints while it lives.
class PaintCount {
public:
  explicit PaintCount(HWND watched) : window(watched) {
    paintings = 0;
    former = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&PaintCount::Procedure)));
  }
  PaintCount(const PaintCount&) = delete;
  PaintCount& operator=(const PaintCount&) = delete;
  ~PaintCount() { SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former)); }

  static inline int paintings = 0;

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) ++paintings;
    return CallWindowProcW(former, window, message, wParam, lParam);
  }

  static inline WNDPROC former = nullptr;
  HWND window;
};

class MouseRate : public InputTest {
protected:
  void SetUp() override {
    InputTest::SetUp();
    ChooseRedOnBlue();
    Choose(L"Rectangle");
    for (int i = 0; i < Side * Side; ++i) {
      const POINT corner = CornerOf(i);
      const POINT end = {corner.x + LayerSize.cx, corner.y + LayerSize.cy};
      PostMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, Packed(corner));
      PostMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, Packed(end));
      PostMessageW(canvas, WM_LBUTTONUP, 0, Packed(end));
      hand.Pump();
    }
    const POINT last = CornerOf(Side * Side - 1);
    ASSERT_TRUE(Shows(last.x, last.y, Red));
    const Snapshot shown = Look();
    for (int i = 0; i < Side * Side; ++i) {
      const POINT corner = CornerOf(i);
      ASSERT_EQ(shown.At(corner.x, corner.y), Red) << "layer " << i;
    }
  }

  // A thousand moves a second, each alone in the queue.
  void Measure(const char* what, HWND window, WPARAM held) {
    hand.Pump();
    const PaintCount count(window);
    const ProcessorTime start = Used();
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < Moves(); ++i) {
      while (std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(i)) Sleep(1);
      PostMessageW(window, WM_MOUSEMOVE, held, Packed(PointOnTheWay(i)));
      hand.Pump();
    }
    const ProcessorTime end = Used();
    milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    paintings = PaintCount::paintings;
    const double user = (end.user - start.user) / Moves();
    const double kernel = (end.kernel - start.kernel) / Moves();
    constexpr double PercentAtRate = 1000 / 1e6 * 100;  // at 1,000 moves a second
    std::cout << std::fixed << std::setprecision(1) << "  " << std::left << std::setw(32) << what << std::right
              << std::setw(7) << user << " us user" << std::setw(7) << kernel << " us kernel a move" << std::setw(7)
              << (user + kernel) * PercentAtRate << " % of a core at 1,000 a second; " << paintings << " paintings in "
              << milliseconds << " ms" << std::endl;
  }
  // Changes of a hundredth of a second are painted together.
  void ExpectPaintedTogether() const {
    constexpr double together = 10;
    EXPECT_GT(paintings, 0);
    EXPECT_LE(paintings, milliseconds / together + 2);
  }
  void MeasurePeers() {
    const BareWindow still(container.Window(), false);
    Measure("a bare window", still.Handle(), 0);
    EXPECT_EQ(still.MovesSeen(), Moves());
    const BareWindow painting(container.Window(), true);
    Measure("a bare window that paints", painting.Handle(), 0);
    EXPECT_GE(painting.Paintings(), Moves() / 2);
  }

  // The last measurement.
  double milliseconds = 0;
  int paintings = 0;
};

TEST_F(MouseRate, WhatMovesCost) {
  MeasurePeers();
  const Snapshot before = Look();
  Measure("drawing tool over layers", canvas, 0);
  EXPECT_TRUE(ShowsAgain(before)) << "nothing is marked";
  EXPECT_EQ(paintings, 0);

  Choose(L"Selection");
  Measure("pointer tool over layers", canvas, 0);
  ExpectPaintedTogether();
  PostMessageW(canvas, WM_MOUSEMOVE, 0, Packed({CornerOf(0).x + 5, CornerOf(0).y + 5}));
  hand.Pump();
  EXPECT_TRUE(hand.Await([&] { return Look() != before; })) << "the layer is marked";

  Choose(L"Rectangle");
  PostMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, Packed(Beside));
  Measure("rubber band", canvas, MK_LBUTTON);
  ExpectPaintedTogether();
  PostMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, Packed(Beside));  // no layer comes of it
  PostMessageW(canvas, WM_LBUTTONUP, 0, Packed(Beside));
  hand.Pump();

  Choose(L"Pen");
  const Snapshot unwritten = Look();
  PostMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, Packed(Beside));
  Measure("pen", canvas, MK_LBUTTON);
  ExpectPaintedTogether();
  Measure("pen, in a longer stroke", canvas, MK_LBUTTON);
  ExpectPaintedTogether();
  PostMessageW(canvas, WM_LBUTTONUP, 0, Packed(Beside));
  hand.Pump();
  EXPECT_TRUE(hand.Await([&] { return Look() != unwritten; })) << "the stroke is a layer";
}

}  // namespace
}  // namespace kw::test
