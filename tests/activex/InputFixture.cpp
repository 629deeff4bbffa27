#include "tests/activex/InputFixture.h"

#include <commctrl.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "tests/activex/EditorWindows.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

constexpr int PageWidth = 500;
constexpr int PageHeight = 400;

bool IsIn(const RECT& part, int x, int y) {
  return x >= part.left && y >= part.top && x < part.right && y < part.bottom;
}

std::ostream& Write(std::ostream& out, const RECT& place) {
  return out << place.left << ", " << place.top << " to " << place.right << ", " << place.bottom;
}

}  // namespace

testing::AssertionResult Is(const RECT& found, const RECT& expected) {
  if (EqualRect(&found, &expected) != FALSE) return testing::AssertionSuccess();
  testing::AssertionResult failure = testing::AssertionFailure();
  std::ostringstream text;
  Write(Write(text, found) << " and not ", expected);
  return failure << text.str();
}

testing::AssertionResult LiesWithin(const RECT& found, const RECT& outer) {
  RECT both = {};
  UnionRect(&both, &found, &outer);
  if (IsRectEmpty(&found) == FALSE && EqualRect(&both, &outer) != FALSE) return testing::AssertionSuccess();
  std::ostringstream text;
  Write(Write(text, found) << " is not within ", outer);
  return testing::AssertionFailure() << text.str();
}

COLORREF InputTest::ColourOfPage(int x, int y) {
  if (IsIn(RedPatch, x, y)) return Red;
  if (IsIn(BluePatch, x, y)) return Blue;
  if (IsIn(TwentyPatch, x, y)) return Twenty;
  if (IsIn(Pattern, x, y)) return RGB(x * 4, y / 2, (x + y) % 2 * 200);
  RECT inside = Outline;
  InflateRect(&inside, -1, -1);
  return IsIn(Outline, x, y) && !IsIn(inside, x, y) ? RGB(0, 0, 0) : White;
}

void InputTest::OpenPage() {
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    ASSERT_HRESULT_SUCCEEDED(
        control->OpenFile(Text(scratch.WriteBitmap(L"page.bmp", PageWidth, PageHeight, &ColourOfPage))));
    const auto boxes = user.Boxes();
    EXPECT_EQ(boxes.size(), 1U) << testing::PrintToString(boxes);
  }
  // A second from now the default tools are chosen, and then no more. They may have been chosen before, too.
  ForgetTrace();
  ASSERT_TRUE(hand.Await([&] { return HasTraced("tmrDefaultToolsSelection_Timer"); }));
  ASSERT_TRUE(ButtonOf(L"Text").IsPressed());
}

void InputTest::SetUp() {
  ControlTest::SetUp();
  container.place = {0, 0, 900, 640};
  SetWindowPos(container.Window(), nullptr, 0, 0, 900, 640, SWP_NOZORDER | SWP_NOACTIVATE);
  Show();
}

void InputTest::Show() {
  container.Take(control.Get());
  ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_UIACTIVATE));
  editor = container.ControlWindow();
  control->put_IsToolboxVisible(VARIANT_TRUE);
  control->put_IsToAllowChooseColor(VARIANT_TRUE);
  SetForegroundWindow(container.Window());
  ASSERT_TRUE(hand.Await([&] { return GetForegroundWindow() == container.Window(); }));
  OpenPage();
  canvas = CanvasOf(editor);
  ASSERT_NE(canvas, nullptr);
  ASSERT_TRUE(Shows(RedPatch.left, RedPatch.top, Red));
}

void InputTest::TearDown() {
  if (control != nullptr) {
    VARIANT_BOOL isEnabled = VARIANT_FALSE;
    EXPECT_HRESULT_SUCCEEDED(control->get_Enabled(&isEnabled));
    EXPECT_NE(isEnabled, VARIANT_FALSE) << "an error was reported:\n" << TraceEnd();
    VARIANT_BOOL isChanged = VARIANT_TRUE;
    EXPECT_HRESULT_SUCCEEDED(control->get_IsFileChanged(&isChanged));
    EXPECT_EQ(isChanged, VARIANT_FALSE) << "layers float above the page";
    container.LetGo();
  }
  ControlTest::TearDown();
}

std::string InputTest::TraceEnd() const {
  constexpr std::size_t Enough = 1500;
  std::ifstream file(std::filesystem::path(scratch.Path()) / L"FunctionsInExecution.txt", std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return text.size() <= Enough ? text : text.substr(text.size() - Enough);
}

ToolBarButton InputTest::ButtonOf(const std::wstring& toolTip) const {
  const std::map<std::string, ToolBarButton> buttons = ToolBarButtons(editor);
  const std::string name(toolTip.begin(), toolTip.end());
  const auto found = buttons.find(name);
  if (found != buttons.end()) return found->second;
  ADD_FAILURE() << "no button " << name;
  return {};
}

void InputTest::Choose(const std::wstring& toolTip) {
  const ToolBarButton button = ButtonOf(toolTip);
  ASSERT_TRUE(button.IsFound() && button.IsEnabled());
  const BoxAnswerer user({Perhaps("NoTools")});
  hand.ClickAt(button.Middle());
  ASSERT_TRUE(hand.Await([&] { return button.IsPressed(); }));
}

void InputTest::ChooseRedOnBlue() {
  Choose(L"Color Picker");
  hand.ClickAt(OnCanvas(RedPatch.left + 5, RedPatch.top + 5));
  hand.ClickAt(OnCanvas(BluePatch.left + 5, BluePatch.top + 5), Hand::Button::Left, VK_SHIFT);
}

POINT InputTest::OnCanvas(int x, int y) const {
  POINT point = {x, y};
  ClientToScreen(canvas, &point);
  return point;
}

void InputTest::DrawFrom(POINT start, POINT end) {
  const Snapshot before = Look();
  hand.DragFrom(OnCanvas(start.x, start.y), OnCanvas(end.x, end.y));
  EXPECT_TRUE(hand.Await([&] { return Look() != before; }));
}

void InputTest::DrawFrom(POINT start, POINT end, Snapshot& whileDown) {
  const Snapshot before = Look();
  hand.MoveTo(OnCanvas(start.x, start.y));
  hand.GlideTo(OnCanvas(start.x, start.y));
  hand.Press();
  hand.GlideTo(OnCanvas(end.x, end.y));
  EXPECT_TRUE(hand.Await([&] { return Look() != before; }));
  whileDown = Look();
  hand.Release();
  EXPECT_TRUE(hand.Await([&] { return Look() != whileDown; }));
}

bool InputTest::Shows(int x, int y, COLORREF colour) const {
  return hand.Await([&] { return Look().At(x, y) == colour; });
}

bool InputTest::ShowsAgain(const Snapshot& before) const {
  return hand.Await([&] { return Look() == before; });
}

bool InputTest::HasTraced(const std::string& name) const {
  std::ifstream file(std::filesystem::path(scratch.File(L"FunctionsInExecution.txt")), std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    if (line == name + "\r") return true;
  }
  return false;
}

void InputTest::ForgetTrace() const { DeleteFileW(scratch.File(L"FunctionsInExecution.txt").c_str()); }

}  // namespace kw::test
