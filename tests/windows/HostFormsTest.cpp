// Hosts that are not like ours: forms that are mirrored for languages that are read from right to left or in a program
// that says that it knows the screen's scale or that it does not.

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/win32/Snapshot.h"
#include "tests/windows/TestForm.h"
#include "tests/windows/WholeEditor.h"
#include "windows/base/ScreenScale.h"

namespace kw::test {
namespace {

HWND MirroredWindow() {
  return CreateWindowExW(WS_EX_LAYOUTRTL, L"Static", L"", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 600, 400,
                         nullptr, nullptr, nullptr, nullptr);
}

bool IsMirrored(HWND window) { return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_LAYOUTRTL) != 0; }

BOOL CALLBACK CountMirrored(HWND window, LPARAM count) {
  if (IsMirrored(window)) ++*reinterpret_cast<int*>(count);
  return TRUE;
}

// A page is no text: it is never mirrored, nor are the places of the mouse.
TEST(MirroredForm, TheControlStaysAsItIs) {
  TestForm form;
  const HWND mirrored = MirroredWindow();
  const bool isKnown = IsMirrored(mirrored);
  form.window.reset();
  form.window = std::make_unique<windows::EditorWindow>(form.root, mirrored, RECT{0, 0, 600, 400});
  form.window->Show(true);
  EXPECT_TRUE(isKnown) << "the system mirrors no window";
  EXPECT_FALSE(IsMirrored(form.window->Handle()));
  int count = 0;
  EnumChildWindows(form.window->Handle(), &CountMirrored, reinterpret_cast<LPARAM>(&count));
  EXPECT_EQ(count, 0);

  std::vector<float> got;
  form.canvas.MouseDown.Connect([&](std::int16_t, std::int16_t, float x, float y) { got.insert(got.end(), {x, y}); });
  form.page.SetVisible(false);
  ClickAt(WindowOf(form.canvas), 101, 61);
  EXPECT_EQ(got, (std::vector<float>{101, 61}));
  form.window.reset();
  DestroyWindow(mirrored);
}

TEST(MirroredForm, TheControlLooksAsInAnyOther) {
  const auto look = [](HWND host) {
    TestForm form;
    form.window.reset();
    form.window = std::make_unique<windows::EditorWindow>(form.root, host, RECT{0, 0, 600, 400});
    form.window->Show(true);
    Paint(form.window->Handle());
    TestForm::Pump();
    Snapshot canvas(WindowOf(form.canvas));
    form.window.reset();
    DestroyWindow(host);
    return canvas;
  };
  const Snapshot usual = look(TestForm::HostWindow());
  EXPECT_TRUE(look(MirroredWindow()) == usual);
}

// The loops of known toolkits look for a message before they take it. The system forgets a painting without an area as
// soon as somebody has seen it.
void RunPeekingLoop(DWORD milliseconds) {
  for (const DWORD start = GetTickCount(); GetTickCount() - start < milliseconds; Sleep(1)) {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE) != FALSE) {
      if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
    }
  }
}

TEST(HostLoops, ThatLookBeforeTheyTakeShowEachChange) {
  TestForm form;
  form.page.SetVisible(true);
  form.page.Move(0, 0, 100, 100);
  for (const int green : {200, 100, 50}) {
    RunPeekingLoop(100);
    form.page.SetPicture(Plain(100, 100, {.red = 10, .green = static_cast<std::uint8_t>(green), .blue = 30}));
    RunPeekingLoop(100);
    EXPECT_EQ(PixelOf(WindowOf(form.canvas), 50, 50), RGB(10, green, 30));
  }
}

// The contexts of a program that knows nothing, one number for all screens, or each screen's own.
class Awareness : public testing::TestWithParam<int> {};

std::string NameOfContext(const testing::TestParamInfo<int>& context) {
  static constexpr const char* contextNames[] = {"None", "System", "PerMonitor", "PerMonitorV2"};
  return contextNames[-context.param - 1];
}

INSTANTIATE_TEST_SUITE_P(OfAProgram, Awareness, testing::Values(-1, -2, -3, -4), &NameOfContext);

TEST_P(Awareness, ScalesTheControlAsTheProgramSeesTheScreen) {
  using SetContext = HANDLE(WINAPI*)(HANDLE);
  const auto setContext = reinterpret_cast<SetContext>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetThreadDpiAwarenessContext")));
  ASSERT_NE(setContext, nullptr);
  // The context belongs to the thread.
  std::thread([&] {
    if (setContext(reinterpret_cast<HANDLE>(static_cast<INT_PTR>(GetParam()))) == nullptr) {
      GTEST_SKIP() << "this system does not know the context";
    }
    const HDC screen = GetDC(nullptr);
    const int dpi = GetParam() == -1 ? 96 : GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    // scripts/wine-alone has made the screen so.
    if (const char* const made = std::getenv("KW_DPI"); made != nullptr && GetParam() != -1) {
      EXPECT_EQ(std::to_string(dpi), made);
    }
    TestForm form;
    const HWND host = TestForm::HostWindow(1200, 900);
    EXPECT_EQ(windows::ScaleOf(host).ToDevice(96), dpi);
    form.window.reset();
    form.window = std::make_unique<windows::EditorWindow>(form.root, host, RECT{0, 0, 1200, 900});
    form.window->Show(true);
    const Scale scale(dpi);
    RECT client = {};
    GetClientRect(WindowOf(form.canvas), &client);
    EXPECT_EQ(client.right, scale.ToDevice(form.canvas.Width()));
    std::vector<float> got;
    form.canvas.MouseDown.Connect([&](std::int16_t, std::int16_t, float x, float y) { got.insert(got.end(), {x, y}); });
    form.page.SetVisible(false);
    ClickAt(WindowOf(form.canvas), scale.ToDevice(31), scale.ToDevice(21));
    EXPECT_EQ(got, (std::vector<float>{31, 21}));
    form.window.reset();
    DestroyWindow(host);
  }).join();
}

}  // namespace
}  // namespace kw::test
