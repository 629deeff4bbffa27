#include "bench/ocx/BenchedControl.h"

#include <cstdio>

#include "bench/ocx/Table.h"
#include "tests/activex/EditorWindows.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/windows/ImportPatch.h"

namespace kw::bench {
namespace {

int answeredBoxes = 0;

int WINAPI AnswerAtOnce(HWND /*owner*/, LPCWSTR /*text*/, LPCWSTR title, UINT /*type*/) {
  ++answeredBoxes;
  if (title != nullptr && std::wstring(title) == L"Critical Error") std::puts("the control reports a critical error");
  return IDOK;
}

// A dialog is a top-level window that has an owner.
LRESULT CALLBACK AnswerDialog(int code, WPARAM wParam, LPARAM lParam) {
  auto* const window = reinterpret_cast<HWND>(wParam);
  if (code == HCBT_ACTIVATE && GetWindow(window, GW_OWNER) != nullptr) test::AnswerBox(window, true);
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

LPARAM At(int x, int y) { return MAKELPARAM(x, y); }

}  // namespace

BenchedControl::BenchedControl() {
  static const test::ImportPatch boxes(test::Ocx::Library(), "MessageBoxW", &AnswerAtOnce);
  static const HHOOK hook = SetWindowsHookExW(WH_CBT, &AnswerDialog, nullptr, GetCurrentThreadId());
  static_cast<void>(hook);
  container.place = {0, 0, 900, 640};
  container.clip = {0, 0, 1200, 900};
  SetWindowPos(container.Window(), nullptr, 0, 0, 920, 680, SWP_NOZORDER | SWP_NOACTIVATE);
  test::PumpMessages();
  const auto timeOf = [](const auto& step) {
    const double begin = Now();
    step();
    return Now() - begin;
  };
  made.create = timeOf([&] { control = test::Ocx::Create(); });
  made.take = timeOf([&] { container.Take(control.Get()); });
  made.activate = timeOf([&] { container.DoVerb(OLEIVERB_UIACTIVATE); });
  made.paint = timeOf([&] { Paint(); });
  control->put_AppDir(test::Text(folder.Path()));
}

// All controls of a thread have one folder, and this one goes: a later control could not write its trace and would
// report that as a critical error.
BenchedControl::~BenchedControl() {
  if (!IsEnabled()) std::puts("the control was disabled by a critical error: its rows above count for nothing");
  container.LetGo();
  control.Reset();
  test::PumpMessages();
  test::Ocx::ForgetFolder();
}

bool BenchedControl::IsEnabled() const {
  VARIANT_BOOL isEnabled = VARIANT_FALSE;
  control->get_Enabled(&isEnabled);
  return isEnabled != VARIANT_FALSE;
}

void BenchedControl::Open(const std::wstring& path) const {
  if (FAILED(control->OpenFile(test::Text(path)))) std::puts("OpenFile failed");
  Paint();
}

void BenchedControl::AwaitTools() const {
  control->put_IsToolboxVisible(VARIANT_TRUE);
  control->put_IsEditable(VARIANT_TRUE);
  constexpr DWORD LongerThanTheDefaultToolsWait = 1300;
  test::PumpMessages(LongerThanTheDefaultToolsWait);
  buttons = test::ToolBarButtons(Window());
  canvas = test::CanvasOf(Window());
  // The first press in a canvas without the focus draws nothing.
  SetFocus(canvas);
  Paint();
}

bool BenchedControl::Click(const std::string& toolTip) const {
  const auto button = buttons.find(toolTip);
  if (button == buttons.end() || !button->second.IsEnabled()) return false;
  button->second.Post();
  Paint();
  return true;
}

bool BenchedControl::Choose(const std::string& toolTip) const {
  const auto button = buttons.find(toolTip);
  if (button == buttons.end()) return false;
  button->second.Click();
  Paint();
  return button->second.IsPressed();
}

void BenchedControl::DoVerb(LONG verb) const {
  container.DoVerb(verb);
  Paint();
}

void BenchedControl::Press(int x, int y) const {
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, At(x, y));
  SendMessageW(canvas, WM_LBUTTONUP, 0, At(x, y));
  Paint();
}

void BenchedControl::Stroke(POINT start, int points, bool isDown, bool isPainted) const {
  const auto at = [&](int i) { return At(start.x + i, start.y + (isDown ? i : -i) / 10); };
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, at(0));
  for (int i = 1; i < points; ++i) {
    SendMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, at(i));
    if (isPainted) Paint();
  }
  SendMessageW(canvas, WM_LBUTTONUP, 0, at(points));
  if (isPainted) Paint();
}

void BenchedControl::Paint() const {
  test::PumpMessages();
  RedrawWindow(Window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  if (canvas != nullptr) RedrawWindow(canvas, nullptr, nullptr, RDW_INTERNALPAINT | RDW_UPDATENOW);
}

void BenchedControl::PaintCanvas() const {
  RedrawWindow(canvas, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void BenchedControl::Resize(int width, int height) const {
  const RECT place = {0, 0, width, height};
  container.As<IOleInPlaceObject>()->SetObjectRects(&place, &container.clip);
  Paint();
}

int BenchedControl::Boxes() { return answeredBoxes; }

}  // namespace kw::bench
