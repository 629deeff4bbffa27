// A host that lets go of the control, or takes its window down, while the control calls it.

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include <iterator>
#include <map>

#include "tests/activex/Aggregate.h"
#include "tests/activex/EditorWindows.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/MainThread.h"
#include "tests/activex/Sinks.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/ToolBarButtons.h"
#include "tests/windows/ImportPatch.h"

namespace kw::test {
namespace {

class LifetimeTest : public ControlTest {
public:
  // Closes as a host does with its window: the polite order, then the last reference and the window.
  void LetGoOfEverything() {
    if (container.As<IOleObject>() != nullptr) container.LetGo();
    control.Reset();
    container.DestroyWindowNow();
    // The loop of a box that went with its owner looks for that when a message comes, as one always does in a program.
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
  }

protected:
  void SetUp() override {
    ControlTest::SetUp();
    document = scratch.WriteTiff(L"D.tif", 3);
  }
  void TearDown() override {
    sink.onEvent = {};
    ControlTest::TearDown();
  }
  void Activate() {
    container.Take(control.Get());
    ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  }
  void Open() {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    ASSERT_EQ(control->OpenFile(Text(document)), S_OK);
    sink.events.clear();
  }
  // A page that is larger than any tool bar.
  void OpenLarge() {
    document = scratch.WriteBitmap(L"large.bmp", 500, 400, [](int, int) { return RGB(255, 255, 255); });
    Open();
  }
  // The user turns the page by the spinner; the notification comes as the window itself would send it.
  void TurnThePage() {
    const std::vector<HWND> spinners = ChildWindows(container.ControlWindow(), UPDOWN_CLASSW);
    ASSERT_FALSE(spinners.empty());
    const HWND spinner = spinners.front();
    NMUPDOWN step = {};
    step.hdr.hwndFrom = spinner;
    step.hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(spinner));
    step.hdr.code = UDN_DELTAPOS;
    step.iPos = 1;
    step.iDelta = 1;
    SendMessageW(GetParent(spinner), WM_NOTIFY, step.hdr.idFrom, reinterpret_cast<LPARAM>(&step));
  }
  void ExpectAllGone() {
    PumpMessages(50);
    EXPECT_TRUE(Ocx::CanUnload()) << "the control is still alive";
  }

  std::wstring document;
  EventSink sink;
  StrictContainer container;
};

TEST_F(LifetimeTest, DestroyedInAnEventOfItsOwnMethod) {
  Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  connection.Forget();
  sink.onEvent = [&](DISPID, VARIANT*, UINT) { control.Reset(); };
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control.Get()->OpenFile(Text(document)), S_OK);
  EXPECT_EQ(sink.events.size(), 4U) << "the method that raised the event goes on to its end";
  EXPECT_TRUE(Ocx::CanUnload()) << "it dies with the call that was under way";
}

TEST_F(LifetimeTest, DestroyedWithItsWindowInAnEventOfItsOwnMethod) {
  Activate();
  Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  connection.Forget();
  sink.onEvent = [&](DISPID, VARIANT*, UINT) { LetGoOfEverything(); };
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control.Get()->OpenFile(Text(document)), S_OK);
  ExpectAllGone();
}

TEST_F(LifetimeTest, DestroyedInAnEventThatTheUserCaused) {
  Activate();
  Open();
  Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  connection.Forget();
  sink.onEvent = [&](DISPID, VARIANT*, UINT) { LetGoOfEverything(); };
  TurnThePage();
  EXPECT_EQ(sink.events, std::vector<std::string>{"PageChanged(2)"});
  ExpectAllGone();
}

TEST_F(LifetimeTest, WindowTakenDownInAnEventThatTheUserCaused) {
  Activate();
  Open();
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  sink.onEvent = [&](DISPID, VARIANT*, UINT) { container.As<IOleInPlaceObject>()->InPlaceDeactivate(); };
  TurnThePage();
  EXPECT_EQ(sink.events, std::vector<std::string>{"PageChanged(2)"});
  EXPECT_EQ(container.ControlWindow(), nullptr);
  // And a window can be made anew.
  sink.onEvent = {};
  EXPECT_EQ(container.DoVerb(OLEIVERB_SHOW), S_OK);
  TurnThePage();
  EXPECT_EQ(sink.events.size(), 2U);
  container.LetGo();
}

TEST_F(LifetimeTest, WindowTakenDownAndMadeAnewInsideTheSameEvent) {
  Activate();
  Open();
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  sink.onEvent = [&](DISPID, VARIANT*, UINT) {
    container.As<IOleInPlaceObject>()->InPlaceDeactivate();
    EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  };
  TurnThePage();
  EXPECT_TRUE(IsWindowVisible(container.ControlWindow()) != 0);
  container.LetGo();
}

TEST_F(LifetimeTest, DestroyedWhileABoxOfItsMethodIsUp) {
  Activate();
  const MainThread mainThread;
  bool done = false;
  const BoxAnswerer user({Once(ListOfPendingWork)}, [&](HWND) {
    if (done) return;
    mainThread.Run([&] {
      done = true;
      LetGoOfEverything();
    });
  });
  EXPECT_EQ(control.Get()->OpenFile(Text(document)), S_OK);
  EXPECT_TRUE(done);
  ExpectAllGone();
}

TEST_F(LifetimeTest, DestroyedWhileABoxThatTheUserCausedIsUp) {
  Activate();
  Open();
  const MainThread mainThread;
  bool done = false;
  const BoxAnswerer user({Once(": copy")}, [&](HWND) {
    if (done) return;
    mainThread.Run([&] {
      done = true;
      LetGoOfEverything();
    });
  });
  // Ctrl+C is a command that only shows a notice.
  SendMessageW(container.ControlWindow(), WM_CHAR, 3, 0);
  EXPECT_TRUE(done) << "no box came up";
  ExpectAllGone();
}

TEST_F(LifetimeTest, DestroyedWhileTheBoxOfAPageChosenFromTheListIsUp) {
  Activate();
  Open();
  ASSERT_TRUE(DeleteFileW(scratch.File(L"D_Page_2.tif").c_str()) != FALSE);
  const std::vector<HWND> combos = ChildWindows(container.ControlWindow(), WC_COMBOBOXW);
  ASSERT_EQ(combos.size(), 2U);
  const MainThread mainThread;
  bool done = false;
  const BoxAnswerer user({Once("File Error: Invalid file format..")}, [&](HWND) {
    if (done) return;
    mainThread.Run([&] {
      done = true;
      LetGoOfEverything();
    });
  });
  for (const HWND combo : combos) SendMessageW(combo, WM_KEYDOWN, VK_DOWN, 1);
  EXPECT_TRUE(done) << "no box came up";
  ExpectAllGone();
}

TEST_F(LifetimeTest, DestroyedInAPropertyNotification) {
  PropertySink properties;
  Connection connection(control.Get(), IID_IPropertyNotifySink, &properties);
  connection.Forget();
  properties.onChanged = [&](DISPID) { control.Reset(); };
  EXPECT_EQ(control.Get()->put_IsEditable(VARIANT_FALSE), S_OK);
  EXPECT_TRUE(Ocx::CanUnload());
}

LifetimeTest* letsGo = nullptr;

// Called by the thread's message loop, whichever that is.
void CALLBACK LetGoNow(HWND /*window*/, UINT /*message*/, UINT_PTR id, DWORD /*time*/) {
  KillTimer(nullptr, id);
  if (letsGo != nullptr) letsGo->LetGoOfEverything();
  letsGo = nullptr;
}

TEST_F(LifetimeTest, DestroyedWhileAMouseMoveYieldsToTheEventLoop) {
  Activate();
  OpenLarge();
  const HWND canvas = CanvasOf(container.ControlWindow());
  ASSERT_NE(canvas, nullptr);
  PumpMessages();
  letsGo = this;
  SetTimer(nullptr, 0, 10, &LetGoNow);
  Sleep(50);
  SendMessageW(canvas, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
  EXPECT_EQ(control, nullptr) << "the move did not yield";
  ExpectAllGone();
}

// A thousand come in a second.
TEST_F(LifetimeTest, AMouseMoveLeavesNothingInTheQueue) {
  Activate();
  OpenLarge();
  const HWND canvas = CanvasOf(container.ControlWindow());
  ASSERT_NE(canvas, nullptr);
  SendMessageW(canvas, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
  MSG message = {};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
  SendMessageW(canvas, WM_MOUSEMOVE, 0, MAKELPARAM(6, 6));
  EXPECT_EQ(HIWORD(GetQueueStatus(QS_POSTMESSAGE)) & QS_POSTMESSAGE, 0);
  container.LetGo();
}

TEST_F(LifetimeTest, ClosedWithAPendingTimer) {
  Activate();
  container.LetGo();
  control.Reset();
  PumpMessages(1300);  // longer than the default tools wait
  EXPECT_TRUE(Ocx::CanUnload());
}

TEST_F(LifetimeTest, DefaultToolsAreChosenOnceOnTheMessageLoop) {
  Activate();
  const auto buttons = ToolBarButtons(container.ControlWindow());
  EXPECT_EQ(TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer"), 0);
  for (const char* key : {"Text", "No Fill Inside"}) EXPECT_FALSE(buttons.at(key).IsPressed()) << key;
  EXPECT_TRUE(PumpUntil([&] { return TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer") != 0; }));
  for (const char* key : {"Text", "No Fill Inside"}) EXPECT_TRUE(buttons.at(key).IsPressed()) << key;
  PumpMessages(1300);  // longer than they wait
  EXPECT_EQ(TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer"), 1);
  container.LetGo();
}

TEST_F(LifetimeTest, TheTraceOutlivesTheControl) {
  Activate();
  container.LetGo();
  control.Reset();
  EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_Terminate"), 1);
}

TEST_F(LifetimeTest, HostMayCallTheControlInsideItsEvents) {
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  sink.onEvent = [&](DISPID, VARIANT*, UINT) {
    VARIANT_BOOL editable = VARIANT_FALSE;
    EXPECT_EQ(control->get_IsEditable(&editable), S_OK);
    EXPECT_EQ(control->put_MaxUndoLevels(11), S_OK);
  };
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control->OpenFile(Text(document)), S_OK);
  EXPECT_EQ(sink.events.size(), 4U);
}

// More would fill the thread's queue, which then takes none.
TEST_F(LifetimeTest, AnAggregateIsLetGoOfByOneMessageHoweverManyEventsThereWere) {
  control.Reset();
  Aggregate whole;
  ASSERT_EQ(whole.QueryInterface(IID_PPV_ARGS(&control)), S_OK);
  Activate();
  Open();
  {
    const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
    PumpMessages(20);
    const ULONG before = whole.references;
    TurnThePage();
    TurnThePage();
    EXPECT_EQ(sink.events.size(), 2U);
    EXPECT_GT(whole.references, before + 1);
    MSG message = {};
    ASSERT_NE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE), FALSE);
    MSG further = {};
    EXPECT_EQ(PeekMessageW(&further, nullptr, WM_APP, WM_APP, PM_REMOVE), FALSE);
    DispatchMessageW(&message);
    EXPECT_EQ(whole.references, before);
  }
  container.LetGo();
  control.Reset();
  PumpMessages(20);
  whole.inner.Reset();
  EXPECT_EQ(whole.references, 1U);
}

BOOL WINAPI RefuseToPost(HWND /*window*/, UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) { return FALSE; }

TEST_F(LifetimeTest, AnAggregateIsLetGoOfAlthoughTheQueueOfItsThreadIsFull) {
  control.Reset();
  Aggregate whole;
  ASSERT_EQ(whole.QueryInterface(IID_PPV_ARGS(&control)), S_OK);
  Activate();
  Open();
  {
    const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
    PumpMessages(20);
    const ULONG before = whole.references;
    {
      const ImportPatch patch(Ocx::Library(), "PostMessageW", &RefuseToPost);
      TurnThePage();
      TurnThePage();
      EXPECT_EQ(sink.events.size(), 2U);
      EXPECT_GT(whole.references, before);
    }
    EXPECT_TRUE(PumpUntil([&] { return whole.references == before; }));
  }
  container.LetGo();
  control.Reset();
  PumpMessages(20);
  whole.inner.Reset();
  EXPECT_EQ(whole.references, 1U);
}

// They are let go of in another order each time.
TEST_F(LifetimeTest, ManyControlsComeAndGoWithoutTouchingEachOther) {
  constexpr int rounds = 20;
  constexpr std::int16_t together = 5;
  control.Reset();
  PumpMessages(20);
  ASSERT_TRUE(Ocx::CanUnload());
  const int ended = TracedTimes(scratch.Path(), "UserControl_Terminate");
  for (std::int16_t round = 0; round < rounds; ++round) {
    std::map<std::int16_t, ComPtr<_KwEditorLayers>> controls;
    for (std::int16_t i = 0; i < together; ++i) {
      controls[i] = Ocx::Create();
      ASSERT_NE(controls[i].Get(), nullptr);
      EXPECT_EQ(controls[i]->put_MaxUndoLevels(static_cast<std::int16_t>(10 * i + round + 5)), S_OK);
    }
    while (!controls.empty()) {
      for (const auto& [number, one] : controls) {
        std::int16_t levels = 0;
        EXPECT_EQ(one->get_MaxUndoLevels(&levels), S_OK);
        EXPECT_EQ(levels, 10 * number + round + 5);
      }
      EXPECT_FALSE(Ocx::CanUnload());
      controls.erase(std::next(controls.begin(), round % std::ssize(controls)));
    }
    EXPECT_TRUE(Ocx::CanUnload()) << round;
  }
  EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_Terminate") - ended, rounds * together);
}

}  // namespace
}  // namespace kw::test
