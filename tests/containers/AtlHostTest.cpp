// The control in a container that somebody else wrote: the hosting window class of the system's ATL library.

#include <windows.h>

#include <ole2.h>

#include "tests/activex/Fixture.h"
#include "tests/activex/Sinks.h"
#include "tests/containers/ContainerWalk.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class AtlHostTest : public ControlTest {
protected:
  using Procedure = HRESULT(STDAPICALLTYPE*)();
  using Init = BOOL(WINAPI*)();
  using GetControl = HRESULT(WINAPI*)(HWND window, IUnknown** control);

  template <class Wanted>
  static Wanted Find(HMODULE library, const char* name) {
    return reinterpret_cast<Wanted>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  }

  void SetUp() override {
    const HMODULE atl = LoadLibraryW(L"atl100.dll");
    if (atl == nullptr) GTEST_SKIP() << "this system has no atl100.dll";
    ControlTest::SetUp();
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    static const BOOL ready = Find<Init>(atl, "AtlAxWinInit")();
    ASSERT_TRUE(ready != 0);
    // The host makes the control by its name, which is its window's text.
    ASSERT_HRESULT_SUCCEEDED(Find<Procedure>(Ocx::Library(), "DllRegisterServer")());
    frame = CreateWindowExW(0, L"Static", L"Host", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 800, 600, nullptr,
                            nullptr, nullptr, nullptr);
    host = CreateWindowExW(0, L"AtlAxWin100", L"KwEditor.KwEditorLayers", WS_CHILD | WS_VISIBLE, 0, 0, 500, 400, frame,
                           nullptr, nullptr, nullptr);
    ASSERT_NE(host, nullptr);
    ComPtr<IUnknown> hosted;
    ASSERT_HRESULT_SUCCEEDED(Find<GetControl>(atl, "AtlAxGetControl")(host, &hosted));
    control.Reset();
    ASSERT_EQ(hosted.As(&control), S_OK);
    PumpMessages(50);
  }
  void TearDown() override {
    if (frame != nullptr) DestroyWindow(frame);
    PumpMessages(50);
    EXPECT_HRESULT_SUCCEEDED(Find<Procedure>(Ocx::Library(), "DllUnregisterServer")());
    ControlTest::TearDown();
    OleUninitialize();
  }
  HWND ControlWindow() const {
    HWND window = nullptr;
    As<IOleInPlaceObject>()->GetWindow(&window);
    return window;
  }

  HWND frame = nullptr;
  HWND host = nullptr;
};

TEST_F(AtlHostTest, ShowsTheControl) {
  ASSERT_NE(ControlWindow(), nullptr);
  EXPECT_TRUE(IsChild(host, ControlWindow()) != 0);
  EXPECT_TRUE(IsWindowVisible(ControlWindow()) != 0);
  RECT size = {};
  GetClientRect(ControlWindow(), &size);
  EXPECT_EQ(size.right, 500);
  EXPECT_EQ(size.bottom, 400);
}

TEST_F(AtlHostTest, ResizesTheControl) {
  MoveWindow(host, 0, 0, 640, 480, TRUE);
  PumpMessages(50);
  RECT size = {};
  GetClientRect(ControlWindow(), &size);
  EXPECT_EQ(size.right, 640);
  EXPECT_EQ(size.bottom, 480);
}

TEST_F(AtlHostTest, OpensADocument) {
  EventSink sink;
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"D.tif", 2))), S_OK);
  EXPECT_EQ(sink.events.size(), 3U);
  PumpMessages(50);
}

TEST_F(AtlHostTest, IsWalkedThrough) {
  MoveWindow(frame, 0, 0, 900, 640, TRUE);
  MoveWindow(host, 0, 0, 900, 640, TRUE);
  SetForegroundWindow(frame);
  ContainerWalk walk(control.Get(), scratch, &PumpMessages);
  walk.WalkThrough();
}

TEST_F(AtlHostTest, ClosesTheControlBeforeItsWindowGoes) {
  EXPECT_EQ(As<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
  PumpMessages(50);
  DestroyWindow(frame);
  frame = nullptr;
  PumpMessages(50);
}

TEST_F(AtlHostTest, DestroysTheContainersWindowAndKeepsItsFrame) {
  DestroyWindow(host);
  PumpMessages(50);
  EXPECT_TRUE(IsWindow(frame) != FALSE);
}

TEST_F(AtlHostTest, TakesTheControlDownWithItsWindow) {
  const HWND window = ControlWindow();
  DestroyWindow(frame);
  frame = nullptr;
  PumpMessages(50);
  EXPECT_EQ(IsWindow(window), FALSE);
  EXPECT_HRESULT_FAILED(As<IOleInPlaceObject>()->GetWindow(nullptr));
  VARIANT_BOOL editable = VARIANT_FALSE;
  EXPECT_EQ(control->get_IsEditable(&editable), S_OK);
}

}  // namespace
}  // namespace kw::test
