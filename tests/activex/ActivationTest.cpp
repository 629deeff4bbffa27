// In-place activation in a container that checks the order of calls.

#include <windows.h>

#include <commctrl.h>
#include <olectl.h>

#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

using Calls = std::vector<std::string>;

class ActivationTest : public ControlTest {
protected:
  void SetUp() override {
    ControlTest::SetUp();
    container.Take(control.Get());
  }
  void TearDown() override {
    container.Forget();
    ControlTest::TearDown();
  }
  RECT PlaceOf(HWND window) const {
    RECT place = {};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, container.Window(), reinterpret_cast<POINT*>(&place), 2);
    return place;
  }

  StrictContainer container;
};

TEST_F(ActivationTest, ShowsItsWindowWhereTheContainerWantsIt) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  EXPECT_EQ(container.calls, (Calls{"CanInPlaceActivate", "OnInPlaceActivate", "GetWindowContext", "ShowObject"}));
  const HWND window = container.ControlWindow();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(GetParent(window), container.Window());
  EXPECT_TRUE(IsWindowVisible(window) != 0);
  const RECT place = PlaceOf(window);
  EXPECT_TRUE(EqualRect(&place, &container.place) != 0);
  container.LetGo();
  EXPECT_EQ(IsWindow(window), FALSE);
}

TEST_F(ActivationTest, BecomesTheActiveObjectAndGivesThatUpInOrder) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_EQ(container.calls, (Calls{"CanInPlaceActivate", "OnInPlaceActivate", "GetWindowContext", "ShowObject",
                                    "OnUIActivate", "SetActiveObject", "OnFocus"}));
  ASSERT_NE(container.ActiveObject(), nullptr);
  HWND active = nullptr;
  EXPECT_EQ(container.ActiveObject()->GetWindow(&active), S_OK);
  EXPECT_EQ(active, container.ControlWindow());
  EXPECT_TRUE(GetFocus() == active || IsChild(active, GetFocus()) != 0);
  container.calls.clear();
  EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_TRUE(container.calls.empty()) << "it is active already";
  EXPECT_EQ(container.As<IOleInPlaceObject>()->UIDeactivate(), S_OK);
  EXPECT_EQ(container.As<IOleInPlaceObject>()->UIDeactivate(), S_OK);
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate"}));
  container.calls.clear();
  EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
  EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
  EXPECT_EQ(container.calls, Calls{"OnInPlaceDeactivate"});
  EXPECT_EQ(container.ControlWindow(), nullptr);
  container.LetGo();
}

TEST_F(ActivationTest, CanBeActivatedAgainAndAgain) {
  for (int round = 0; round < 3; ++round) {
    ASSERT_EQ(container.DoVerb(OLEIVERB_PRIMARY), S_OK);
    EXPECT_TRUE(IsWindowVisible(container.ControlWindow()) != 0);
    EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(container.ControlWindow(), nullptr);
  }
  container.LetGo();
}

TEST_F(ActivationTest, StaysInactiveWhereTheContainerRefuses) {
  container.refusesActivation = true;
  EXPECT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), E_FAIL);
  EXPECT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), E_FAIL);
  EXPECT_EQ(container.calls, (Calls{"CanInPlaceActivate", "CanInPlaceActivate"}));
  EXPECT_EQ(container.ControlWindow(), nullptr);
  container.LetGo();
}

TEST_F(ActivationTest, GoesBackWhereTheContainerHasNoWindow) {
  container.DestroyWindowNow();
  EXPECT_HRESULT_FAILED(container.DoVerb(OLEIVERB_INPLACEACTIVATE));
  EXPECT_EQ(container.calls, (Calls{"CanInPlaceActivate", "OnInPlaceActivate", "OnInPlaceDeactivate"}));
  container.LetGo();
}

TEST_F(ActivationTest, FollowsTheRectanglesOfTheContainer) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  const auto inPlace = container.As<IOleInPlaceObject>();
  const RECT larger = {5, 6, 605, 456};
  EXPECT_EQ(inPlace->SetObjectRects(&larger, &container.clip), S_OK);
  const RECT place = PlaceOf(container.ControlWindow());
  EXPECT_TRUE(EqualRect(&place, &larger) != 0);
  // The clip is a region of the window, in its own coordinates.
  const RECT half = {0, 0, 305, 1000};
  EXPECT_EQ(inPlace->SetObjectRects(&larger, &half), S_OK);
  const HRGN region = CreateRectRgn(0, 0, 0, 0);
  EXPECT_NE(GetWindowRgn(container.ControlWindow(), region), ERROR);
  RECT box = {};
  GetRgnBox(region, &box);
  DeleteObject(region);
  const RECT expected = {0, 0, 300, 450};
  EXPECT_TRUE(EqualRect(&box, &expected) != 0);
  // A container may shrink it to nothing.
  const RECT nothing = {5, 6, 5, 6};
  EXPECT_EQ(inPlace->SetObjectRects(&nothing, &container.clip), S_OK);
  container.LetGo();
}

TEST_F(ActivationTest, ExtentIsThatOfTheContainerAndOfTheWindow) {
  const auto object = container.As<IOleObject>();
  SIZEL extent = {};
  EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
  EXPECT_EQ(extent.cx, 10000);
  EXPECT_EQ(extent.cy, 8000);
  SIZEL negative = {-1, 100};
  EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, &negative), E_INVALIDARG);
  EXPECT_EQ(object->SetExtent(DVASPECT_ICON, &extent), DV_E_DVASPECT);
  EXPECT_EQ(object->GetExtent(DVASPECT_ICON, &extent), DV_E_DVASPECT);
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
  // 400 by 300 pixels.
  const HDC screen = GetDC(nullptr);
  EXPECT_EQ(extent.cx, MulDiv(400, 2540, GetDeviceCaps(screen, LOGPIXELSX)));
  EXPECT_EQ(extent.cy, MulDiv(300, 2540, GetDeviceCaps(screen, LOGPIXELSY)));
  ReleaseDC(nullptr, screen);
  container.LetGo();
}

TEST_F(ActivationTest, HidesAndShowsAgain) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_EQ(container.DoVerb(OLEIVERB_HIDE), S_OK);
  EXPECT_EQ(IsWindowVisible(container.ControlWindow()), FALSE);
  EXPECT_EQ(container.ActiveObject(), nullptr);
  EXPECT_EQ(container.DoVerb(OLEIVERB_SHOW), S_OK);
  EXPECT_TRUE(IsWindowVisible(container.ControlWindow()) != 0);
  container.LetGo();
}

TEST_F(ActivationTest, AnswersToEveryVerb) {
  EXPECT_EQ(container.DoVerb(OLEIVERB_OPEN), E_NOTIMPL);
  EXPECT_EQ(container.DoVerb(-1000), E_NOTIMPL);
  EXPECT_EQ(container.DoVerb(12), OLEOBJ_S_INVALIDVERB);
  EXPECT_EQ(container.DoVerb(OLEIVERB_DISCARDUNDOSTATE), S_OK);
  EXPECT_EQ(container.DoVerb(OLEIVERB_HIDE), S_OK);
  EXPECT_TRUE(container.calls.empty());
  container.LetGo();
}

TEST_F(ActivationTest, WorksWithoutAmbientProperties) {
  container.hasAmbients = false;
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const auto ole = container.As<IOleControl>();
  EXPECT_EQ(ole->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
  EXPECT_EQ(ole->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD), S_OK);
  EXPECT_TRUE(IsWindowEnabled(container.ControlWindow()) != 0);
  container.LetGo();
  EXPECT_EQ(As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD), S_OK);
}

TEST_F(ActivationTest, IgnoresTheUserWhileTheContainerSaysSo) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  const auto ole = container.As<IOleControl>();
  container.uiDead = true;
  EXPECT_EQ(ole->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD), S_OK);
  EXPECT_EQ(IsWindowEnabled(container.ControlWindow()), FALSE);
  container.uiDead = false;
  EXPECT_EQ(ole->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
  EXPECT_TRUE(IsWindowEnabled(container.ControlWindow()) != 0);
  container.LetGo();
}

TEST_F(ActivationTest, IgnoresTheUserFromTheStartIfTheContainerSaysSo) {
  container.uiDead = true;
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  EXPECT_EQ(IsWindowEnabled(container.ControlWindow()), FALSE);
  container.LetGo();
}

TEST_F(ActivationTest, TakesItsUserOnlyIfItIsEnabledAndTheContainerSaysSoToo) {
  control->put_Enabled(VARIANT_FALSE);
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  const auto isEnabled = [this] { return IsWindowEnabled(container.ControlWindow()) != FALSE; };
  const auto ole = container.As<IOleControl>();
  EXPECT_FALSE(isEnabled()) << "it was disabled before it had a window";
  for (const DISPID property : {DISPID_UNKNOWN, DISPID_AMBIENT_UIDEAD}) {
    for (const bool uiDead : {true, false}) {
      for (const VARIANT_BOOL enabled : {VARIANT_TRUE, VARIANT_FALSE}) {
        container.uiDead = uiDead;
        EXPECT_EQ(ole->OnAmbientPropertyChange(property), S_OK);
        control->put_Enabled(enabled);
        EXPECT_EQ(isEnabled(), enabled != VARIANT_FALSE && !uiDead);
        EXPECT_EQ(ole->OnAmbientPropertyChange(property), S_OK);
        EXPECT_EQ(isEnabled(), enabled != VARIANT_FALSE && !uiDead);
      }
    }
  }
  container.LetGo();
}

// Refuses the thread's next window of a class, as a system that has none left.
class RefusedWindow {
public:
  explicit RefusedWindow(const wchar_t* className)
      : hook(SetWindowsHookExW(WH_CBT, &Watch, nullptr, GetCurrentThreadId())) {
    refused = className;
  }
  RefusedWindow(const RefusedWindow&) = delete;
  RefusedWindow& operator=(const RefusedWindow&) = delete;
  ~RefusedWindow() { UnhookWindowsHookEx(hook); }

private:
  static LRESULT CALLBACK Watch(int code, WPARAM wParam, LPARAM lParam) {
    wchar_t name[64] = {};
    GetClassNameW(reinterpret_cast<HWND>(wParam), static_cast<wchar_t*>(name), 64);
    const bool isRefused = code == HCBT_CREATEWND && std::wstring(static_cast<const wchar_t*>(name)) == refused;
    return isRefused ? 1 : CallNextHookEx(nullptr, code, wParam, lParam);
  }

  static inline std::wstring refused;
  HHOOK hook;
};

TEST_F(ActivationTest, IsInactiveAgainWhereTheSystemHasNoWindowLeft) {
  for (const LONG verb : {OLEIVERB_SHOW, OLEIVERB_UIACTIVATE}) {
    container.calls.clear();
    {
      const RefusedWindow refused(L"KwEditorView");
      EXPECT_HRESULT_FAILED(container.DoVerb(verb));
    }
    EXPECT_EQ(container.calls,
              (Calls{"CanInPlaceActivate", "OnInPlaceActivate", "GetWindowContext", "OnInPlaceDeactivate"}));
    EXPECT_EQ(container.ControlWindow(), nullptr);
  }
  ASSERT_EQ(container.DoVerb(OLEIVERB_SHOW), S_OK);
  EXPECT_TRUE(IsWindowVisible(container.ControlWindow()) != FALSE);
  container.LetGo();
}

TEST_F(ActivationTest, MovesToAnotherSite) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const auto object = container.As<IOleObject>();
  container.calls.clear();
  StrictContainer other;
  EXPECT_EQ(object->SetClientSite(static_cast<IOleClientSite*>(&other)), S_OK);
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_TRUE(other.calls.empty());
  EXPECT_EQ(container.References(), 1U);
  EXPECT_EQ(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, nullptr, nullptr), S_OK);
  EXPECT_EQ(GetParent(container.ControlWindow()), other.Window());
  EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
  EXPECT_EQ(other.References(), 1U);
}

TEST_F(ActivationTest, KeysThatItDoesNotWantGoToTheContainer) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.calls.clear();
  MSG key = {};
  key.hwnd = container.ControlWindow();
  key.message = WM_KEYDOWN;
  for (const WPARAM left : {VK_F5, VK_PRIOR, VK_DELETE}) {
    key.wParam = left;
    EXPECT_EQ(container.ActiveObject()->TranslateAccelerator(&key), S_FALSE);
    EXPECT_EQ(container.calls, Calls{"TranslateAccelerator 0"});
    container.calls.clear();
  }
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    EXPECT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"D.tif", 1))), S_OK);
  }
  container.calls.clear();
  EXPECT_EQ(key.wParam, WPARAM{VK_DELETE}) << "which a page has a use for";
  EXPECT_EQ(container.ActiveObject()->TranslateAccelerator(&key), S_OK);
  EXPECT_TRUE(container.calls.empty());
  container.LetGo();
}

TEST_F(ActivationTest, AClickMakesItTheActiveObject) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  ASSERT_EQ(container.ActiveObject(), nullptr);
  SendMessageW(container.ControlWindow(), WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(container.Window()),
               MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
  EXPECT_NE(container.ActiveObject(), nullptr);
  container.LetGo();
}

TEST_F(ActivationTest, DialogsDisableTheModelessWindowsOfTheFrame) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.calls.clear();
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    EXPECT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"D.tif", 1))), S_OK);
    EXPECT_EQ(user.Boxes().size(), 1U) << testing::PrintToString(user.Boxes());
  }
  EXPECT_EQ(container.calls, (Calls{"EnableModeless(false)", "EnableModeless"}));
  container.LetGo();
}

TEST_F(ActivationTest, AsksToBeSavedWhenItIsClosedWithChanges) {
  const auto object = container.As<IOleObject>();
  EXPECT_EQ(object->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
  EXPECT_TRUE(container.calls.empty());
  control->put_MaxUndoLevels(9);
  EXPECT_EQ(object->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
  EXPECT_EQ(container.calls, Calls{"SaveObject"});
  container.LetGo();
}

TEST_F(ActivationTest, RudeContainerTakesTheSiteAwayFirst) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const HWND window = container.ControlWindow();
  container.calls.clear();
  EXPECT_EQ(container.As<IOleObject>()->SetClientSite(nullptr), S_OK);
  EXPECT_EQ(container.calls, (Calls{"OnFocusLost", "SetActiveObject(null)", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(IsWindow(window), FALSE);
  EXPECT_EQ(container.References(), 1U);
}

TEST_F(ActivationTest, RudeContainerLetsGoOfAnActiveControl) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const HWND window = container.ControlWindow();
  container.SetActiveObject(nullptr, nullptr);
  container.calls.clear();
  container.Forget();
  control.Reset();
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload());
  EXPECT_EQ(IsWindow(window), FALSE);
  EXPECT_TRUE(container.calls.empty()) << "a control that dies calls nobody";
}

TEST_F(ActivationTest, RudeContainerDestroysItsWindowFirst) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const HWND window = container.ControlWindow();
  container.DestroyWindowNow();
  EXPECT_EQ(IsWindow(window), FALSE);
  EXPECT_EQ(container.ControlWindow(), nullptr);
  // The control still works, and goes through its states in order.
  EXPECT_EQ(control->put_IsToolboxVisible(VARIANT_FALSE), S_OK);
  EXPECT_EQ(container.As<IOleInPlaceObject>()->SetObjectRects(&container.place, &container.clip), E_UNEXPECTED);
  container.LetGo();
}

TEST_F(ActivationTest, WorksOnAfterTheSiteIsGone) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const auto object = container.As<IOleObject>();
  container.LetGo();
  container.calls.clear();
  EXPECT_EQ(object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, nullptr, 0, nullptr, nullptr), E_FAIL);
  ComPtr<IMoniker> moniker;
  EXPECT_EQ(object->GetMoniker(0, 0, &moniker), E_UNEXPECTED);
  MSG key = {};
  EXPECT_EQ(As<IOleInPlaceActiveObject>()->TranslateAccelerator(&key), S_FALSE);
  control->put_MaxUndoLevels(9);
  EXPECT_EQ(object->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"D.tif", 2))), S_OK);
  EXPECT_TRUE(FileExists(scratch.File(L"D_Page_1.tif")));
  EXPECT_TRUE(container.calls.empty());
}

TEST_F(ActivationTest, MakesRealControlsForItsForm) {
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  EXPECT_GE(ChildWindows(container.ControlWindow(), TOOLBARCLASSNAMEW).size(), 3U);
  container.LetGo();
}

}  // namespace
}  // namespace kw::test
