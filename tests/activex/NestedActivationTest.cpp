// What a container does to the control while the control is on its way to be active: it takes the control away, gives
// it another window or another container.

#include <windows.h>

#include <ole2.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/WatchedWindow.h"

namespace kw::test {
namespace {

using Calls = std::vector<std::string>;

class NestedActivation : public ControlTest {
protected:
  void SetUp() override {
    ControlTest::SetUp();
    container.Take(control.Get());
  }
  // That function, doing `work` when it is called for the first time.
  std::function<void()> Once(std::function<void()> work) {
    return [this, work = std::move(work)] {
      if (std::exchange(isTold, true)) return;
      work();
    };
  }
  // When the control wants to be the active object, does that once and agrees.
  void WhenToBeActiveObject(std::function<void()> work) {
    container.onUiActivate = [once = Once(std::move(work))] {
      once();
      return S_OK;
    };
  }
  void Reactivate(LONG verb) {
    EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(container.DoVerb(verb), S_OK);
  }
  void MoveTo(StrictContainer& other) {
    const auto object = container.As<IOleObject>();
    EXPECT_EQ(object->SetClientSite(static_cast<IOleClientSite*>(&other)), S_OK);
    EXPECT_EQ(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, nullptr, nullptr), S_OK);
  }
  HWND ShowInPlace() {
    EXPECT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
    return container.ControlWindow();
  }
  void Click(HWND editor) const {
    SendMessageW(editor, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(container.Window()),
                 MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
  }
  static int ChildrenOf(HWND parent) {
    int count = 0;
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) ++count;
    return count;
  }
  long long CountOf(const char* call) const { return std::ranges::count(container.calls, call); }
  void ExpectOneWindow() {
    PumpMessages(20);
    EXPECT_EQ(ChildrenOf(container.Window()), 1) << testing::PrintToString(container.calls);
    EXPECT_EQ(GetParent(container.ControlWindow()), container.Window());
    EXPECT_EQ(IsWindowVisible(container.ControlWindow()), TRUE);
  }
  void ExpectActiveInAnotherWindowThan(HWND editor) {
    EXPECT_TRUE(isTold);
    EXPECT_EQ(IsWindow(editor), FALSE);
    EXPECT_NE(container.ActiveObject(), nullptr);
    EXPECT_EQ(CountOf("SetActiveObject"), 1) << testing::PrintToString(container.calls);
    ExpectOneWindow();
    container.LetGo();
  }
  void ExpectInPlaceIn(StrictContainer& other) {
    PumpMessages(20);
    EXPECT_EQ(ChildrenOf(container.Window()), 0);
    EXPECT_EQ(GetParent(container.ControlWindow()), other.Window());
    EXPECT_EQ(other.ActiveObject(), nullptr) << "which was not asked";
    EXPECT_EQ(other.calls, (Calls{"CanInPlaceActivate", "OnInPlaceActivate", "GetWindowContext", "ShowObject"}));
    container.LetGo();
    EXPECT_EQ(other.References(), 1U);
  }

  StrictContainer container;
  bool isTold = false;
};

TEST_F(NestedActivation, WantedBackWhileItsWindowIsBeingDestroyed) {
  SetFocus(ShowInPlace());
  ASSERT_NE(container.ActiveObject(), nullptr);
  container.calls.clear();
  {
    std::vector<HRESULT> results;
    const WatchedWindow parent(container.Window(), [&](UINT message, WPARAM /*wParam*/) {
      if (message == WM_SETFOCUS) results.push_back(container.DoVerb(OLEIVERB_UIACTIVATE));
    });
    EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_HRESULT_FAILED(results[0]);
  }
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(ChildrenOf(container.Window()), 0);
  EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  ExpectOneWindow();
  container.LetGo();
}

TEST_F(NestedActivation, WantedBackWhenItLosesTheFocus) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.calls.clear();
  container.onFocus = [this](BOOL gotFocus) {
    if (gotFocus != FALSE) return;
    EXPECT_HRESULT_FAILED(container.DoVerb(OLEIVERB_UIACTIVATE));
  };
  EXPECT_EQ(container.As<IOleInPlaceObject>()->UIDeactivate(), S_OK);
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate"}));
  container.onFocus = {};
  EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_NE(container.ActiveObject(), nullptr);
  container.LetGo();
}

TEST_F(NestedActivation, DeactivatedWhenItLosesTheFocus) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.calls.clear();
  container.onFocus = [this](BOOL /*gotFocus*/) {
    EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
  };
  EXPECT_EQ(container.As<IOleInPlaceObject>()->UIDeactivate(), S_OK);
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(ChildrenOf(container.Window()), 0);
  container.LetGo();
}

TEST_F(NestedActivation, DeactivatedWhenItBecomesTheActiveObject) {
  container.onActiveObject = Once([this] { EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK); });
  EXPECT_HRESULT_FAILED(container.DoVerb(OLEIVERB_UIACTIVATE));
  EXPECT_EQ(container.ActiveObject(), nullptr);
  EXPECT_EQ(CountOf("OnFocus"), 0);
  EXPECT_EQ(container.calls.back(), "OnInPlaceDeactivate");
  container.LetGo();
}

TEST_F(NestedActivation, DeactivatedWhenAFieldOfTheContainerLosesTheFocus) {
  SetFocus(container.Window());
  {
    const WatchedWindow field(container.Window(), [this](UINT message, WPARAM /*wParam*/) {
      if (message != WM_KILLFOCUS) return;
      EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    });
    EXPECT_HRESULT_FAILED(container.DoVerb(OLEIVERB_UIACTIVATE));
  }
  EXPECT_EQ(CountOf("OnFocus"), 0);
  EXPECT_EQ(container.calls.back(), "OnInPlaceDeactivate");
  EXPECT_EQ(ChildrenOf(container.Window()), 0);
  container.LetGo();
}

// The container's window hears of the windows in it.
TEST_F(NestedActivation, TakenAwayWhenTheContainersWindowHearsOfIt) {
  int heard = 0;
  {
    const WatchedWindow parent(container.Window(), [&](UINT message, WPARAM wParam) {
      if (message != WM_PARENTNOTIFY || LOWORD(wParam) != WM_CREATE) return;
      ++heard;
      EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    });
    EXPECT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  }
  EXPECT_EQ(heard, 0) << "the window is not ready yet";
  ExpectOneWindow();
  const LONG style = GetWindowLongW(container.ControlWindow(), GWL_EXSTYLE);
  EXPECT_EQ(style & WS_EX_NOPARENTNOTIFY, 0) << "the container hears of clicks";
  container.LetGo();
}

TEST_F(NestedActivation, TakenAwayWhenItsWindowIsResized) {
  const HWND editor = ShowInPlace();
  const WatchedWindow moved(editor, [this](UINT message, WPARAM /*wParam*/) {
    if (message != WM_SIZE) return;
    EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
  });
  const RECT place = {0, 0, 300, 200};
  EXPECT_EQ(container.As<IOleInPlaceObject>()->SetObjectRects(&place, &place), S_OK);
  EXPECT_EQ(IsWindow(editor), FALSE);
  EXPECT_EQ(container.calls.back(), "OnInPlaceDeactivate");
  container.LetGo();
}

TEST_F(NestedActivation, TakenAwayWhenTheFocusLeavesWhatIsHidden) {
  control->put_IsOpenButtonVisible(VARIANT_TRUE);
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const std::vector<HWND> all = VisibleWindows(container.ControlWindow());
  control->put_IsOpenButtonVisible(VARIANT_FALSE);
  const std::vector<HWND> left = VisibleWindows(container.ControlWindow());
  control->put_IsOpenButtonVisible(VARIANT_TRUE);
  const auto hidden = std::ranges::find_if(all, [&](HWND one) { return std::ranges::count(left, one) == 0; });
  ASSERT_NE(hidden, all.end());
  SetFocus(*hidden);
  EXPECT_EQ(container.As<IOleInPlaceObject>()->UIDeactivate(), S_OK);
  container.calls.clear();
  control->put_IsOpenButtonVisible(VARIANT_FALSE);
  EXPECT_EQ(GetFocus(), container.ControlWindow());
  EXPECT_EQ(CountOf("OnUIActivate"), 0) << "the focus only moved within the control";
  container.LetGo();
}

TEST_F(NestedActivation, ShownAgainAfterItsWindowWasDestroyed) {
  const HWND first = ShowInPlace();
  DestroyWindow(first);
  container.calls.clear();
  EXPECT_EQ(container.DoVerb(OLEIVERB_SHOW), S_OK);
  ExpectOneWindow();
  EXPECT_EQ(container.calls, (Calls{"OnInPlaceDeactivate", "CanInPlaceActivate", "OnInPlaceActivate",
                                    "GetWindowContext", "ShowObject"}));
  DestroyWindow(container.ControlWindow());
  EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  ExpectOneWindow();
  EXPECT_NE(container.ActiveObject(), nullptr);
  container.LetGo();
}

TEST_F(NestedActivation, WantedBackByTheContainerThatItLeaves) {
  ShowInPlace();
  const auto object = container.As<IOleObject>();
  container.onInPlaceDeactivate = Once([this] { EXPECT_HRESULT_FAILED(container.DoVerb(OLEIVERB_INPLACEACTIVATE)); });
  EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
  EXPECT_TRUE(isTold);
  EXPECT_EQ(ChildrenOf(container.Window()), 0);
  EXPECT_EQ(container.References(), 1U);
  container.LetGo();
}

TEST_F(NestedActivation, MovedWhenItIsHidden) {
  StrictContainer other;
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.onUiDeactivate = Once([&] { MoveTo(other); });
  EXPECT_EQ(container.DoVerb(OLEIVERB_HIDE), S_OK);
  EXPECT_EQ(IsWindowVisible(container.ControlWindow()), TRUE);
  ExpectInPlaceIn(other);
}

TEST_F(NestedActivation, WantedBackWhenItIsNoLongerTheActiveObject) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.calls.clear();
  container.onUiDeactivate = Once([this] { EXPECT_HRESULT_FAILED(container.DoVerb(OLEIVERB_UIACTIVATE)); });
  EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(ChildrenOf(container.Window()), 0);
  container.LetGo();
}

TEST_F(NestedActivation, WantedBackAsTheActiveObjectOnly) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.calls.clear();
  container.onUiDeactivate = Once([this] { EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK); });
  EXPECT_EQ(container.As<IOleInPlaceObject>()->UIDeactivate(), S_OK);
  EXPECT_NE(container.ActiveObject(), nullptr);
  ExpectOneWindow();
  container.LetGo();
}

TEST_F(NestedActivation, DeactivatedWhenItIsNoLongerTheActiveObject) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.calls.clear();
  container.onUiDeactivate = Once([this] { EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK); });
  EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(ChildrenOf(container.Window()), 0);
  container.LetGo();
}

TEST_F(NestedActivation, AnotherContainerWhenItIsNoLongerTheActiveObject) {
  StrictContainer other;
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.calls.clear();
  const auto object = container.As<IOleObject>();
  container.onUiDeactivate =
      Once([&] { EXPECT_EQ(object->SetClientSite(static_cast<IOleClientSite*>(&other)), S_OK); });
  EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, nullptr, nullptr), S_OK);
  ExpectInPlaceIn(other);
}

TEST_F(NestedActivation, AnotherWindowAtAClick) {
  const HWND editor = ShowInPlace();
  WhenToBeActiveObject([this] { Reactivate(OLEIVERB_INPLACEACTIVATE); });
  Click(editor);
  ExpectActiveInAnotherWindowThan(editor);
}

TEST_F(NestedActivation, AnotherWindowWhenTheFocusComes) {
  const HWND editor = ShowInPlace();
  WhenToBeActiveObject([this] { Reactivate(OLEIVERB_INPLACEACTIVATE); });
  SetFocus(editor);
  ExpectActiveInAnotherWindowThan(editor);
}

TEST_F(NestedActivation, ActiveInAnotherWindowAtAClick) {
  const HWND editor = ShowInPlace();
  WhenToBeActiveObject([this] { Reactivate(OLEIVERB_UIACTIVATE); });
  Click(editor);
  ExpectActiveInAnotherWindowThan(editor);
}

TEST_F(NestedActivation, AnotherContainerAtAClick) {
  const HWND editor = ShowInPlace();
  StrictContainer other;
  WhenToBeActiveObject([&] { MoveTo(other); });
  Click(editor);
  EXPECT_EQ(IsWindow(editor), FALSE);
  ExpectInPlaceIn(other);
}

TEST_F(NestedActivation, ActivatedWhileItIsBeingActivated) {
  container.onInPlaceActivate = Once([this] { EXPECT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK); });
  EXPECT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  EXPECT_EQ(CountOf("GetWindowContext"), 1);
  ExpectOneWindow();
  container.LetGo();
}

TEST_F(NestedActivation, AnotherWindowWhileTheFirstIsBeingMade) {
  container.onWindowContext = Once([this] { Reactivate(OLEIVERB_INPLACEACTIVATE); });
  EXPECT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  ExpectOneWindow();
  container.LetGo();
}

TEST_F(NestedActivation, TakenAwayWhileItsWindowIsBeingMade) {
  container.onWindowContext = Once([this] { EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK); });
  EXPECT_HRESULT_FAILED(container.DoVerb(OLEIVERB_INPLACEACTIVATE));
  EXPECT_EQ(ChildrenOf(container.Window()), 0);
  container.LetGo();
}

TEST_F(NestedActivation, AnotherContainerWhileItsWindowIsBeingMade) {
  StrictContainer other;
  container.onWindowContext = Once([&] { MoveTo(other); });
  EXPECT_HRESULT_FAILED(container.DoVerb(OLEIVERB_INPLACEACTIVATE));
  ExpectInPlaceIn(other);
}

}  // namespace
}  // namespace kw::test
