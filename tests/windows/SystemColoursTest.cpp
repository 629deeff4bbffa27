// What stands on the system's ground is seen on a bright one and on a dark one.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "tests/windows/TestForm.h"

namespace kw::test {
namespace {

// The system's colours while one of these lives.
class DarkColours {
public:
  DarkColours() { Exchange(); }
  DarkColours(const DarkColours&) = delete;
  DarkColours& operator=(const DarkColours&) = delete;
  ~DarkColours() { Exchange(); }

private:
  void Exchange() {
    COLORREF before[2] = {GetSysColor(names[0]), GetSysColor(names[1])};
    SetSysColors(2, names, colours);
    std::swap(before, colours);
  }

  const INT names[2] = {COLOR_3DFACE, COLOR_BTNTEXT};
  COLORREF colours[2] = {RGB(45, 45, 48), RGB(240, 240, 240)};
};

// The darkest and the brightest green of a part of a window.
std::pair<int, int> Contrast(HWND window, const RECT& part) {
  Paint(window);
  std::pair<int, int> found = {255, 0};
  for (int y = part.top; y < part.bottom; ++y) {
    for (int x = part.left; x < part.right; ++x) {
      const int green = GetGValue(PixelOf(window, x, y));
      found = {std::min(found.first, green), std::max(found.second, green)};
    }
  }
  return found;
}

std::pair<int, int> ContrastOfButton(const ToolBar& bar, int index) {
  RECT place = {};
  SendMessageW(WindowOf(bar), TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
  InflateRect(&place, -3, -3);
  return Contrast(WindowOf(bar), place);
}

constexpr int Hollow = 4;  // the button of the rectangle: ink alone
constexpr int Legible = 110;

TEST(SystemColours, ThePicturesInkIsSeenOnADarkFace) {
  {
    const TestForm bright;
    const auto [ink, face] = ContrastOfButton(bright.tools, Hollow);
    EXPECT_GT(face - ink, Legible);
  }
  const DarkColours dark;
  const TestForm form;
  const auto [face, ink] = ContrastOfButton(form.tools, Hollow);
  EXPECT_LT(face, 60);
  EXPECT_GT(ink - face, Legible);
}

TEST(SystemColours, CaptionsOnTheFormHaveTheSystemsColour) {
  const DarkColours dark;
  TestForm form;
  const RECT left = {0, 0, 60, 14};
  EXPECT_GT(Contrast(WindowOf(form.label), left).second, 200);
  form.label.SetForeColor(MakeColour(200, 0, 0));
  EXPECT_LT(Contrast(WindowOf(form.label), left).second, 100) << "a colour of its own";
}

// The system tells top-level windows alone; a host passes it on.
TEST(SystemColours, AWindowFollowsTheSystem) {
  for (const UINT message : {WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_THEMECHANGED}) {
    SCOPED_TRACE(message);
    const TestForm form;
    {
      const DarkColours dark;
      SendMessageW(form.window->Handle(), message, 0, 0);
      const auto [face, ink] = ContrastOfButton(form.tools, Hollow);
      EXPECT_GT(ink - face, Legible);
      EXPECT_LT(face, 60);
    }
    SendMessageW(form.window->Handle(), message, 0, 0);
    const auto [ink, face] = ContrastOfButton(form.tools, Hollow);
    EXPECT_GT(face, 200);
    EXPECT_LT(ink, 110);
  }
}

}  // namespace
}  // namespace kw::test
