#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/activex/Hand.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/Bystander.h"
#include "tests/support/win32/Snapshot.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {

// The control in an active container that shows a page, and a user's hand. The page is white and has parts to work on.
class InputTest : public ControlTest {
protected:
  static constexpr COLORREF White = RGB(255, 255, 255);
  static constexpr COLORREF Red = RGB(200, 30, 30);
  static constexpr COLORREF Blue = RGB(30, 30, 200);
  // The colour whose number is 20.
  static constexpr COLORREF Twenty = RGB(20, 0, 0);
  // Parts of the page, in its pixels: three patches of colour, a black outline of one pixel, and a pattern of which no
  // two pixels that are neighbours have the same colour.
  static constexpr RECT RedPatch = {400, 20, 440, 60};
  static constexpr RECT BluePatch = {450, 20, 490, 60};
  static constexpr RECT TwentyPatch = {450, 70, 490, 110};
  static constexpr RECT Outline = {350, 250, 450, 350};
  static constexpr RECT Pattern = {20, 300, 60, 340};

  void SetUp() override;
  void TearDown() override;

  static COLORREF ColourOfPage(int x, int y);
  // Shows the control in the container, with such a page.
  void Show();
  // Opens a new page.
  void OpenPage();

  // The button with that tool tip.
  ToolBarButton ButtonOf(const std::wstring& toolTip) const;
  // Clicks the button of a tool and waits until it is pressed. The notice of the selection tool is answered.
  void Choose(const std::wstring& toolTip);
  // Takes the colours of the page's patches with the colour picker.
  void ChooseRedOnBlue();

  // A point of the canvas on the screen.
  POINT OnCanvas(int x, int y) const;
  // Drags on the canvas, and waits until that shows something.
  void DrawFrom(POINT start, POINT end);
  // The same, with a look at the canvas while the button is down.
  void DrawFrom(POINT start, POINT end, Snapshot& whileDown);
  Snapshot Look() const { return Snapshot(canvas); }
  // Waits until the canvas shows this colour.
  bool Shows(int x, int y, COLORREF colour) const;
  // Waits until the canvas looks like that again.
  bool ShowsAgain(const Snapshot& before) const;
  // Whether a line of the trace file is this name.
  bool HasTraced(const std::string& name) const;
  void ForgetTrace() const;
  // The last lines of the trace, which name an error that was reported.
  std::string TraceEnd() const;

  StrictContainer container;
  Hand hand{container};
  HWND editor = nullptr;
  HWND canvas = nullptr;
};

// Whether a rectangle is this one, with a message that tells both.
testing::AssertionResult Is(const RECT& found, const RECT& expected);
// Whether it lies in that one and is not empty.
testing::AssertionResult LiesWithin(const RECT& found, const RECT& outer);

}  // namespace kw::test
