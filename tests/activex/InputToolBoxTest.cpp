// The floating tool box of the real control in a user's hand: dragging and hiding it, its colours and its thickness.

#include <algorithm>
#include <functional>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/InputFixture.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

// The place of a window in its parent.
RECT PlaceIn(HWND window) {
  RECT place = {};
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

POINT OnScreen(HWND window, int x, int y) {
  POINT point = {x, y};
  ClientToScreen(window, &point);
  return point;
}

POINT MiddleOf(HWND window) {
  RECT client = {};
  GetClientRect(window, &client);
  return OnScreen(window, client.right / 2, client.bottom / 2);
}

bool IsShown(HWND window) { return IsWindowVisible(window) != FALSE; }

class InputToolBox : public InputTest {
protected:
  // Of the tool box, beside everything that lies on it.
  static constexpr POINT Background = {60, 9};

  void SetUp() override {
    InputTest::SetUp();
    hideButton = Named(L"Hide Tools");
    toolBox = GetParent(hideButton);
    foreground = Named(L"Foreground Color");
    background = Named(L"Background Color");
    slider = Named(L"Line Thickness");
    upperCaption = PartOf(toolBox, [](const RECT& place) { return place.top == 163; });
    lowerCaption = PartOf(toolBox, [](const RECT& place) { return place.top == 219; });
    sampleLine = PartOf(toolBox, [](const RECT& place) { return place.left == 10; });
    readOut = PartOf(GetParent(foreground), [](const RECT& place) { return place.top == 30; });
    ForgetTrace();
  }

  HWND Named(const std::wstring& name) const {
    for (const HWND window : VisibleWindows(editor)) {
      wchar_t text[64] = {};
      GetWindowTextW(window, static_cast<wchar_t*>(text), 64);
      if (name == static_cast<const wchar_t*>(text)) return window;
    }
    ADD_FAILURE() << "no window " << std::string(name.begin(), name.end());
    return nullptr;
  }
  // Hidden ones too.
  static HWND PartOf(HWND holder, const std::function<bool(const RECT&)>& isIt) {
    for (HWND child = GetWindow(holder, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
      if (isIt(PlaceIn(child))) return child;
    }
    ADD_FAILURE() << "a part of the tool box is missing";
    return nullptr;
  }
  // Null until it is shown for the first time.
  HWND Palette() const {
    HWND child = GetWindow(toolBox, GW_CHILD);
    while (child != nullptr && PlaceIn(child).top != 162) child = GetWindow(child, GW_HWNDNEXT);
    return child;
  }
  POINT OnBackground(int right = 0, int down = 0) const {
    return OnScreen(toolBox, Background.x + right, Background.y + down);
  }
  void PressAt(POINT point) {
    hand.MoveTo(point);
    hand.GlideTo(point);
    hand.Press();
  }
  int TimesTraced(const std::string& name) const { return TracedTimes(scratch.Path(), name); }
  // Longer than the time in which a second click makes a double one.
  void LetTheClickBeOver() const {
    const DWORD start = GetTickCount();
    EXPECT_TRUE(hand.Await([&] { return GetTickCount() - start > GetDoubleClickTime() + 50; }));
  }
  void OpenPalette(HWND swatch) {
    LetTheClickBeOver();
    hand.ClickAt(MiddleOf(swatch));
    ASSERT_TRUE(hand.Await([&] { return IsShown(Palette()) && GetFocus() == Palette(); }));
  }
  COLORREF ColourOfSwatch(HWND swatch) const { return Snapshot(swatch).At(10, 10); }
  void ExpectColour(HWND swatch, COLORREF colour) const {
    EXPECT_TRUE(hand.Await([&] { return ColourOfSwatch(swatch) == colour; }))
        << std::hex << ColourOfSwatch(swatch) << ", not " << colour;
  }
  int Thickness() const {
    const RECT line = PlaceIn(sampleLine);
    EXPECT_EQ(line.bottom + 1, PlaceIn(slider).top);
    return line.bottom - line.top;
  }
  // Double-clicks the swatch and answers its dialog.
  void FineTune(HWND swatch, WPARAM answer) {
    LetTheClickBeOver();
    bool wasOpen = true;
    {
      const Bystander user(DialogClass, L"Color", [&](HWND dialog) {
        wasOpen = IsShown(Palette());
        Hand::SendRelease();
        PostMessageW(dialog, WM_COMMAND, answer, 0);
      });
      hand.ClickAt(MiddleOf(swatch));
      EXPECT_TRUE(hand.Await([&] { return IsShown(Palette()); }));
      hand.Press();
      EXPECT_TRUE(user.HasActed());
    }
    EXPECT_FALSE(wasOpen) << "the dialog took the keyboard";
    EXPECT_FALSE(IsShown(Palette()));
  }

  HWND toolBox = nullptr;
  HWND hideButton = nullptr;
  HWND foreground = nullptr;
  HWND background = nullptr;
  HWND readOut = nullptr;
  HWND slider = nullptr;
  HWND sampleLine = nullptr;
  HWND upperCaption = nullptr;
  HWND lowerCaption = nullptr;
};

TEST_F(InputToolBox, FollowsTheMouseThatDragsItsBackground) {
  const RECT before = PlaceIn(toolBox);
  PressAt(OnBackground());
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_SIZEALL));
  hand.GlideTo(OnBackground(-50, -40));
  RECT moved = before;
  OffsetRect(&moved, -50, -40);
  EXPECT_TRUE(Is(PlaceIn(toolBox), moved));
  hand.Release();
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_ARROW));
  hand.GlideTo(OnBackground(20, 20));
  EXPECT_TRUE(Is(PlaceIn(toolBox), moved));
  for (const char* name : {"kwraTools_MouseDown", "kwraTools_MouseUp"}) EXPECT_EQ(TimesTraced(name), 1) << name;
}

TEST_F(InputToolBox, StopsSixPixelsFromTheEdgeUntilTheNextPress) {
  PressAt(OnBackground());
  hand.GlideTo(OnBackground(100, 0));
  EXPECT_EQ(PlaceIn(toolBox).right, PlaceIn(GetParent(canvas)).right - 6);
  const RECT stopped = PlaceIn(toolBox);
  hand.GlideTo(OnBackground(-80, 0));
  EXPECT_TRUE(Is(PlaceIn(toolBox), stopped));
  hand.Release();
  hand.DragFrom(OnBackground(), OnBackground(-30, 0));
  EXPECT_EQ(PlaceIn(toolBox).right, stopped.right - 30);
}

TEST_F(InputToolBox, ADragEndsWhereTheMouseIsTakenAway) {
  const auto dragAndLose = [this](const std::function<void()>& lose) {
    PressAt(OnBackground());
    hand.GlideTo(OnBackground(-20, -20));
    const RECT there = PlaceIn(toolBox);
    lose();
    hand.GlideTo(OnBackground(-30, -30));
    EXPECT_TRUE(Is(PlaceIn(toolBox), there));
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_ARROW));
    hand.Release();
  };
  dragAndLose([&] { SendMessageW(toolBox, WM_CANCELMODE, 0, 0); });
  dragAndLose([&] {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    EXPECT_HRESULT_SUCCEEDED(control->OpenFile(Text(scratch.File(L"page.bmp"))));
    EXPECT_EQ(user.Boxes().size(), 1U);
  });
}

TEST_F(InputToolBox, ItsButtonHidesItWhenThePressEndsOnTheButton) {
  const Snapshot before(hideButton);
  PressAt(MiddleOf(hideButton));
  EXPECT_TRUE(hand.Await([&] { return Snapshot(hideButton) != before; })) << "it looks pressed";
  EXPECT_EQ(TimesTraced("kwrpHideToolBox_MouseDown"), 0);
  EXPECT_TRUE(IsShown(toolBox));
  hand.Release();
  EXPECT_FALSE(IsShown(toolBox));
  EXPECT_EQ(TimesTraced("kwrpHideToolBox_MouseDown"), 1);
  VARIANT_BOOL isVisible = VARIANT_TRUE;
  control->get_IsToolboxVisible(&isVisible);
  EXPECT_EQ(isVisible, VARIANT_FALSE);
  control->put_IsToolboxVisible(VARIANT_TRUE);
  EXPECT_TRUE(hand.Await([&] { return Snapshot(hideButton) == before; }));
}

TEST_F(InputToolBox, APressOnItsButtonThatEndsBesideItHidesNothing) {
  const Snapshot before(hideButton);
  const POINT beside = OnScreen(hideButton, -8, 5);
  PressAt(MiddleOf(hideButton));
  hand.GlideTo(beside);
  EXPECT_TRUE(hand.Await([&] { return Snapshot(hideButton) == before; }));
  hand.Release();
  EXPECT_TRUE(IsShown(toolBox));
  EXPECT_EQ(TimesTraced("kwrpHideToolBox_MouseDown"), 1);
  // The other way round it is no press on the button.
  PressAt(OnBackground());
  hand.GlideTo(MiddleOf(hideButton));
  hand.Release();
  EXPECT_TRUE(IsShown(toolBox));
  EXPECT_EQ(TimesTraced("kwrpHideToolBox_MouseDown"), 1);
}

TEST_F(InputToolBox, APressOnItsButtonThatLosesTheMouseIsNone) {
  const Snapshot before(hideButton);
  PressAt(MiddleOf(hideButton));
  SendMessageW(hideButton, WM_CANCELMODE, 0, 0);
  EXPECT_TRUE(hand.Await([&] { return Snapshot(hideButton) == before; }));
  hand.Release();
  hand.Pump();
  EXPECT_TRUE(IsShown(toolBox));
  EXPECT_EQ(TimesTraced("kwrpHideToolBox_MouseDown"), 0);
}

TEST_F(InputToolBox, APressOnTheBackgroundOfTheStripChangesItsRows) {
  const HWND first = GetParent(ButtonOf(L"Save File").bar);
  const HWND second = GetParent(ButtonOf(L"Next Page").bar);
  const HWND viewport = GetParent(canvas);
  const RECT inOneRow = PlaceIn(second);
  EXPECT_EQ(inOneRow.top, PlaceIn(first).top);
  hand.ClickAt(OnScreen(first, 100, 1));
  ASSERT_TRUE(hand.Await([&] { return PlaceIn(second).top == PlaceIn(first).bottom + 1; }));
  EXPECT_EQ(PlaceIn(second).left, PlaceIn(first).left);
  EXPECT_EQ(PlaceIn(viewport).top, PlaceIn(second).bottom + 1);
  LetTheClickBeOver();
  hand.ClickAt(OnScreen(second, 100, 1));
  EXPECT_TRUE(hand.Await([&] { return EqualRect(&inOneRow, std::vector<RECT>{PlaceIn(second)}.data()) != FALSE; }));
  EXPECT_EQ(PlaceIn(viewport).top, PlaceIn(first).bottom + 1);
}

using InputColours = InputToolBox;

TEST_F(InputColours, AreTakenFromWhereThePaletteShowsThem) {
  struct Pick {
    HWND swatch;
    POINT at;
  };
  for (const auto& [swatch, at] : {Pick{foreground, {40, 50}}, {background, {110, 30}}, {foreground, {148, 20}}}) {
    const HWND other = swatch == foreground ? background : foreground;
    const COLORREF kept = ColourOfSwatch(other);
    OpenPalette(swatch);
    const COLORREF shown = Snapshot(Palette()).At(at.x, at.y);
    hand.ClickAt(OnScreen(Palette(), at.x, at.y));
    EXPECT_TRUE(hand.Await([&] { return !IsShown(Palette()); }));
    ExpectColour(swatch, shown);
    ExpectColour(other, kept);
  }
  EXPECT_EQ(ColourOfSwatch(foreground), RGB(202, 202, 202)) << "a grey of its right edge";
}

TEST_F(InputColours, AreReadOutUnderTheMouseAndPreviewedWhileItIsHeld) {
  OpenPalette(background);
  Snapshot shown(readOut);
  for (const POINT at : {POINT{20, 20}, {90, 70}}) {
    hand.GlideTo(OnScreen(Palette(), at.x, at.y));
    EXPECT_TRUE(hand.Await([&] { return Snapshot(readOut) != shown; }));
    shown = Snapshot(readOut);
    EXPECT_EQ(shown.At(2, 9), RGB(255, 255, 255)) << "its ground is the colour as it was";
  }
  hand.Press();
  hand.GlideTo(OnScreen(Palette(), 60, 40));
  const COLORREF pointed = Snapshot(Palette()).At(60, 40);
  EXPECT_TRUE(hand.Await([&] { return Snapshot(readOut).At(2, 9) == pointed; }));
  ExpectColour(background, RGB(255, 255, 255));
  hand.Release();
  ExpectColour(background, pointed);
}

TEST_F(InputColours, OfADialogThatIsCancelledStayAndTheNextClickOpensThePalette) {
  for (const HWND swatch : {foreground, background}) {
    const COLORREF before = ColourOfSwatch(swatch);
    FineTune(swatch, IDCANCEL);
    ExpectColour(swatch, before);
    OpenPalette(swatch);
    hand.Strike(VK_ESCAPE);
  }
  EXPECT_EQ(TimesTraced("SampleForeGroundColor_DblClick"), 1);
  EXPECT_EQ(TimesTraced("SampleBackGroundColor_DblClick"), 1);
}

TEST_F(InputColours, TheRightButtonPicksAndOpensTheDialogOnThem) {
  OpenPalette(background);
  const COLORREF shown = Snapshot(Palette()).At(30, 60);
  {
    const Bystander user(DialogClass, L"Color", [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDOK, 0); });
    hand.ClickAt(OnScreen(Palette(), 30, 60), Hand::Button::Right);
    EXPECT_TRUE(user.HasActed());
  }
  EXPECT_FALSE(IsShown(Palette()));
  ExpectColour(background, shown);
  OpenPalette(background);
}

TEST_F(InputColours, ThePaletteClosesWhateverElseTheUserDoes) {
  const POINT ways[] = {OnBackground(), ButtonOf(L"Line").Middle(), ButtonOf(L"Zoom In").Middle(), OnCanvas(300, 300)};
  for (const POINT& way : ways) {
    OpenPalette(foreground);
    hand.ClickAt(way);
    EXPECT_TRUE(hand.Await([&] { return !IsShown(Palette()); })) << way.x << ", " << way.y;
    EXPECT_NE(IsChild(container.Window(), GetFocus()), FALSE) << "the keyboard stays in the control";
  }
  for (const WORD key : {WORD{VK_ESCAPE}, WORD{VK_RETURN}, WORD{VK_TAB}}) {
    OpenPalette(foreground);
    ForgetTrace();
    hand.Strike(key);
    EXPECT_TRUE(hand.Await([&] { return !IsShown(Palette()); })) << key;
    hand.Pump();
    EXPECT_FALSE(HasTraced("UserControl_KeyPress")) << "the key was the palette's";
  }
  OpenPalette(foreground);
  SetFocus(container.Window());
  EXPECT_TRUE(hand.Await([&] { return !IsShown(Palette()); }));
  OpenPalette(foreground);
  control->put_Enabled(VARIANT_FALSE);
  EXPECT_TRUE(hand.Await([&] { return !IsShown(Palette()); }));
  control->put_Enabled(VARIANT_TRUE);
}

TEST_F(InputColours, ThePaletteChangesFromOneSwatchToTheOther) {
  OpenPalette(foreground);
  hand.ClickAt(MiddleOf(background));
  ASSERT_TRUE(hand.Await([&] { return TimesTraced("SampleBackGroundColor_Click") == 1; }));
  EXPECT_TRUE(IsShown(Palette()));
  const COLORREF shown = Snapshot(Palette()).At(80, 40);
  hand.ClickAt(OnScreen(Palette(), 80, 40));
  ExpectColour(background, shown);
  ExpectColour(foreground, RGB(0, 0, 0));
}

using InputThickness = InputToolBox;

TEST_F(InputThickness, IsThatOfTheSliderAndShowsInItsSampleAndItsCaptions) {
  EXPECT_EQ(Thickness(), 2);
  const Snapshot upper(upperCaption);
  const LONG left = PlaceIn(lowerCaption).left;
  hand.ClickAt(MiddleOf(slider));
  ASSERT_TRUE(hand.Await([&] { return GetFocus() == slider; }));
  const int clicked = Thickness();
  hand.Strike(VK_RIGHT);
  EXPECT_TRUE(hand.Await([&] { return Thickness() == clicked + 1; }));
  EXPECT_TRUE(hand.Await([&] { return Snapshot(upperCaption) != upper; }));
  EXPECT_GT(PlaceIn(lowerCaption).left, left);
  hand.Strike(VK_END);
  EXPECT_TRUE(hand.Await([&] { return Thickness() == 10; }));
  EXPECT_EQ(PlaceIn(lowerCaption).right, PlaceIn(slider).right);
  hand.ClickAt(OnCanvas(300, 300));
  EXPECT_TRUE(hand.Await([&] { return HasTraced("sldLineHeight_LostFocus"); }));
}

// The slider is 152 pixels wide and goes from 1 to 10.
TEST_F(InputThickness, IsDraggedFromBothCaptions) {
  for (const HWND caption : {upperCaption, lowerCaption}) {
    PressAt(MiddleOf(caption));
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_SIZEWE));
    EXPECT_EQ(Thickness(), 2) << "a press alone changes nothing";
    const POINT start = MiddleOf(caption);
    hand.GlideTo({start.x + 52, start.y});
    EXPECT_EQ(Thickness(), 5);
    hand.GlideTo({start.x + 18, start.y + 40});
    EXPECT_EQ(Thickness(), 3);
    hand.GlideTo({start.x + 400, start.y});
    EXPECT_EQ(Thickness(), 10);
    hand.GlideTo(start);
    EXPECT_EQ(Thickness(), 2);
    hand.Release();
    hand.GlideTo({start.x + 52, start.y});
    EXPECT_EQ(Thickness(), 2) << "the button is up";
  }
  EXPECT_EQ(TimesTraced("lblLineSize2_MouseDown"), 1);
  EXPECT_EQ(TimesTraced("lblLineSize1_MouseDown"), 2);
}

}  // namespace
}  // namespace kw::test
