// A host whose events come to another thread, which is reached by marshalling and may be busy. Wine 8 reaches 63 such
// threads in the life of a process and hangs at the next: repeat these tests at most 15 times.

#include <windows.h>

#include <ole2.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/activex/MainThread.h"
#include "tests/activex/Sinks.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

// An apartment with a sink. It handles no messages while it is busy.
class OtherApartment {
public:
  OtherApartment() : thread([this] { Run(); }) {
    while (!isReady) Sleep(1);
  }
  OtherApartment(const OtherApartment&) = delete;
  OtherApartment& operator=(const OtherApartment&) = delete;
  ~OtherApartment() { End(); }

  // The sink as this thread reaches it.
  ComPtr<IDispatch> Proxy() {
    ComPtr<IDispatch> proxy;
    EXPECT_HRESULT_SUCCEEDED(CoGetInterfaceAndReleaseStream(marshalled, IID_PPV_ARGS(&proxy)));
    marshalled = nullptr;
    return proxy;
  }
  void End() {
    if (!thread.joinable()) return;
    PostThreadMessageW(number, WM_QUIT, 0, 0);
    thread.join();
  }

  std::atomic<DWORD> busy = 0;      // milliseconds before the next message is handled
  std::function<void()> whileBusy;  // then
  EventSink sink;                   // to be looked at when the thread has ended

private:
  void Run() {
    EXPECT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    number = GetCurrentThreadId();
    EXPECT_HRESULT_SUCCEEDED(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, &sink, &marshalled));
    isReady = true;
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
      if (const DWORD pause = busy.exchange(0); pause > 0) {
        Sleep(pause);
        if (whileBusy) whileBusy();
      }
      DispatchMessageW(&message);
    }
    OleUninitialize();
  }

  std::atomic<bool> isReady = false;
  std::atomic<DWORD> number = 0;
  IStream* marshalled = nullptr;
  std::thread thread;
};

class LateSink : public ControlTest {
protected:
  void SetUp() override {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    ControlTest::SetUp();
    document = scratch.WriteTiff(L"D.tif", 2);
  }
  void TearDown() override {
    ControlTest::TearDown();
    OleUninitialize();
  }

  std::wstring document;
};

TEST_F(LateSink, GetsEveryEventInItsOrder) {
  OtherApartment other;
  {
    const Connection connection(control.Get(), DIID___KwEditorLayers, other.Proxy().Get());
    ASSERT_EQ(connection.Result(), S_OK);
    other.busy = 700;
    const BoxAnswerer user({Once(ListOfPendingWork)});
    EXPECT_EQ(control->OpenFile(Text(document)), S_OK);
  }
  other.End();
  ASSERT_EQ(other.sink.events.size(), 3U);
  EXPECT_EQ(other.sink.events[2], "PageChanged(1)");
}

TEST_F(LateSink, MayBeGoneWithItsApartment) {
  OtherApartment other;
  Connection connection(control.Get(), DIID___KwEditorLayers, other.Proxy().Get());
  ASSERT_EQ(connection.Result(), S_OK);
  other.End();
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control->OpenFile(Text(document)), S_OK);
  EXPECT_TRUE(FileExists(scratch.File(L"D_Page_2.tif")));
  connection.Cut();
}

// While an event is under way, the thread of the control handles the messages that are sent to it.
TEST_F(LateSink, TheHostMayUseTheControlWhileAnEventIsUnderWay) {
  OtherApartment other;
  bool isDone = false;
  {
    const Connection connection(control.Get(), DIID___KwEditorLayers, other.Proxy().Get());
    const BoxAnswerer user({Once(ListOfPendingWork)});
    const MainThread mainThread;
    other.whileBusy = [&] {
      mainThread.Run([&] {
        VARIANT_BOOL isEditable = VARIANT_FALSE;
        EXPECT_EQ(control->get_IsEditable(&isEditable), S_OK);
        EXPECT_EQ(control->put_MaxUndoLevels(31), S_OK);
        isDone = true;
      });
    };
    other.busy = 300;
    EXPECT_EQ(control->OpenFile(Text(document)), S_OK);
  }
  EXPECT_TRUE(isDone);
  other.End();
  EXPECT_EQ(other.sink.events.size(), 3U);
}

TEST_F(LateSink, TheHostMayLetGoWhileAnEventIsUnderWay) {
  OtherApartment other;
  StrictContainer container;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  Connection connection(control.Get(), DIID___KwEditorLayers, other.Proxy().Get());
  connection.Forget();
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    const MainThread mainThread;
    other.whileBusy = [&] {
      mainThread.Run([&] {
        container.LetGo();
        control.Reset();
        container.DestroyWindowNow();
      });
    };
    other.busy = 300;
    EXPECT_EQ(control.Get()->OpenFile(Text(document)), S_OK);
  }
  EXPECT_EQ(control, nullptr) << "the event did not wait";
  PumpMessages(50);
  EXPECT_TRUE(Ocx::CanUnload());
}

}  // namespace
}  // namespace kw::test
