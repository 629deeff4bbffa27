// A loop of messages that the system runs inside a message to the control, and a host that lets go of the control
// there.

#include <windows.h>

#include <commctrl.h>

#include "tests/activex/InputFixture.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class ModalLoop : public InputTest {
public:
  void LetGoOfEverything() {
    container.LetGo();
    control.Reset();
    container.DestroyWindowNow();
    couldUnload = Ocx::CanUnload();
    isDone = true;
    EndMenu();
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
  }

protected:
  void TearDown() override {
    PumpMessages(50);
    EXPECT_TRUE(isDone) << "there was no loop";
    EXPECT_FALSE(couldUnload) << "the code of the loop could have been unloaded";
    EXPECT_TRUE(Ocx::CanUnload()) << "the control is still alive";
    InputTest::TearDown();
  }
  void LetGoInTheNextLoop();

  bool isDone = false;
  bool couldUnload = true;
};

ModalLoop* inLoop = nullptr;

void CALLBACK LetGoInTheLoop(HWND /*window*/, UINT /*message*/, UINT_PTR id, DWORD /*time*/) {
  KillTimer(nullptr, id);
  if (inLoop != nullptr) inLoop->LetGoOfEverything();
  inLoop = nullptr;
}

void ModalLoop::LetGoInTheNextLoop() {
  PumpMessages(50);
  inLoop = this;
  SetTimer(nullptr, 0, 100, &LetGoInTheLoop);
}

TEST_F(ModalLoop, OfAMenuHoldsControlAndLibrary) {
  Choose(L"Rectangle");
  DrawFrom({100, 100}, {180, 180});
  Choose(L"Selection");
  LetGoInTheNextLoop();
  SendMessageW(canvas, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(120, 120));
  if (!isDone) SendMessageW(canvas, WM_RBUTTONUP, 0, MAKELPARAM(120, 120));
}

TEST_F(ModalLoop, OfAScrollBarHoldsControlAndLibrary) {
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    control->OpenFile(Text(scratch.WriteBitmap(L"large.bmp", 2000, 2000, &ColourOfPage)));
  }
  HWND bar = nullptr;
  for (const HWND one : ChildWindows(editor, WC_SCROLLBARW)) {
    if ((GetWindowLongW(one, GWL_STYLE) & SBS_VERT) != 0) bar = one;
  }
  ASSERT_NE(bar, nullptr);
  RECT client = {};
  GetClientRect(bar, &client);
  LetGoInTheNextLoop();
  SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(client.right / 2, client.bottom - 5));
}

const wchar_t* looping = nullptr;
WNDPROC loopingProcedure = nullptr;

// In the place of the system's own control: a loop until the button is released, as some versions of it have one.
LRESULT CALLBACK LoopAtAPress(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_LBUTTONDOWN) return CallWindowProcW(loopingProcedure, window, message, wParam, lParam);
  EXPECT_TRUE(PumpUntil([] { return inLoop == nullptr; }));
  return 0;
}

// Before the window gets the procedure of its view.
LRESULT CALLBACK AddLoop(int code, WPARAM wParam, LPARAM lParam) {
  wchar_t name[64] = {};
  auto* const window = reinterpret_cast<HWND>(wParam);
  if (code == HCBT_CREATEWND && GetClassNameW(window, static_cast<wchar_t*>(name), 64) > 0 &&
      std::wstring(static_cast<const wchar_t*>(name)) == looping) {
    loopingProcedure =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&LoopAtAPress)));
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

// Windows of that class that are made while it lives have a loop.
class LoopsOf {
public:
  explicit LoopsOf(const wchar_t* className)
      : hook(SetWindowsHookExW(WH_CBT, &AddLoop, nullptr, GetCurrentThreadId())) {
    looping = className;
  }
  LoopsOf(const LoopsOf&) = delete;
  LoopsOf& operator=(const LoopsOf&) = delete;
  ~LoopsOf() { UnhookWindowsHookEx(hook); }

private:
  HHOOK hook;
};

TEST_F(ModalLoop, OfTheSliderHoldsControlAndLibrary) {
  container.As<IOleInPlaceObject>()->InPlaceDeactivate();
  {
    const LoopsOf sliders(TRACKBAR_CLASSW);
    ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  }
  const std::vector<HWND> sliders = ChildWindows(container.ControlWindow(), TRACKBAR_CLASSW);
  ASSERT_FALSE(sliders.empty());
  EXPECT_NE(IsWindowEnabled(sliders[0]), FALSE);
  LetGoInTheNextLoop();
  SendMessageW(sliders[0], WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(12, 8));
}

void CALLBACK PressTheDate(HWND /*window*/, UINT /*message*/, UINT_PTR id, DWORD /*time*/) {
  const HWND dialog = FindWindowW(L"KwEditorView", L"Stamp");
  if (dialog == nullptr) return;
  KillTimer(nullptr, id);
  const std::vector<HWND> dates = ChildWindows(dialog, DATETIMEPICK_CLASSW);
  if (dates.size() != 1) {
    ADD_FAILURE() << dates.size() << " dates in the dialog";
    PostMessageW(dialog, WM_CLOSE, 0, 0);
    return;
  }
  const HWND date = dates[0];
  // The options in their order; the last one is that of the date.
  for (const HWND option : ChildWindows(dialog, WC_BUTTONW)) {
    if (IsWindowEnabled(date) == FALSE) SendMessageW(option, BM_CLICK, 0, 0);
  }
  EXPECT_NE(IsWindowEnabled(date), FALSE);
  SetTimer(nullptr, 0, 100, &LetGoInTheLoop);
  SendMessageW(date, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
}

TEST_F(ModalLoop, OfTheDateHoldsControlAndLibrary) {
  Choose(L"Stamp");
  const LoopsOf dates(DATETIMEPICK_CLASSW);
  inLoop = this;
  SetTimer(nullptr, 0, 100, &PressTheDate);
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(120, 120));
  if (!isDone) SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(120, 120));
}

TEST_F(ModalLoop, OfTheButtonForTheRestHoldsControlAndLibrary) {
  container.place = {0, 0, 260, 400};
  container.As<IOleInPlaceObject>()->SetObjectRects(&container.place, &container.clip);
  HWND more = nullptr;
  WORD id = 0;
  for (const HWND bar : ChildWindows(editor, TOOLBARCLASSNAMEW)) {
    const auto count = static_cast<int>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
    wchar_t text[64] = {};
    SendMessageW(bar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(&text));
    if (std::wstring(static_cast<const wchar_t*>(text)) != L"More Buttons") continue;
    more = bar;
    id = static_cast<WORD>(count);
  }
  ASSERT_NE(more, nullptr);
  LetGoInTheNextLoop();
  SendMessageW(GetParent(more), WM_COMMAND, id, reinterpret_cast<LPARAM>(more));
}

}  // namespace
}  // namespace kw::test
