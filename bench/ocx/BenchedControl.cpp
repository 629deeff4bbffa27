#include "bench/ocx/BenchedControl.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "picture/PictureDocument.h"
#include "tests/activex/EditorWindows.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/windows/ImportPatch.h"

namespace kw::bench {
namespace {

int WINAPI AnswerAtOnce(HWND /*owner*/, LPCWSTR /*text*/, LPCWSTR /*title*/, UINT /*type*/) { return IDOK; }

// A dialog is a top-level window that has an owner.
LRESULT CALLBACK AnswerDialog(int code, WPARAM wParam, LPARAM lParam) {
  auto* const window = reinterpret_cast<HWND>(wParam);
  if (code == HCBT_ACTIVATE && GetWindow(window, GW_OWNER) != nullptr) test::AnswerBox(window, true);
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

LPARAM At(int x, int y) { return MAKELPARAM(x, y); }

}  // namespace

BenchedControl::BenchedControl() : control(test::Ocx::Create()) {
  static const test::ImportPatch boxes(test::Ocx::Library(), "MessageBoxW", &AnswerAtOnce);
  static const HHOOK hook = SetWindowsHookExW(WH_CBT, &AnswerDialog, nullptr, GetCurrentThreadId());
  static_cast<void>(hook);
  container.place = {0, 0, 900, 640};
  container.clip = {0, 0, 1200, 900};
  SetWindowPos(container.Window(), nullptr, 0, 0, 920, 680, SWP_NOZORDER | SWP_NOACTIVATE);
  container.Take(control.Get());
  container.DoVerb(OLEIVERB_UIACTIVATE);
  Paint();
}

BenchedControl::~BenchedControl() {
  container.LetGo();
  control.Reset();
  test::PumpMessages();
}

void BenchedControl::Open(const std::wstring& path) const {
  if (FAILED(control->OpenFile(test::Text(path)))) std::puts("OpenFile failed");
  Paint();
}

HWND BenchedControl::Canvas() const { return test::CanvasOf(Window()); }

void BenchedControl::AwaitTools() const {
  control->put_IsToolboxVisible(VARIANT_TRUE);
  control->put_IsEditable(VARIANT_TRUE);
  constexpr DWORD LongerThanTheDefaultToolsWait = 1300;
  test::PumpMessages(LongerThanTheDefaultToolsWait);
}

bool BenchedControl::Click(const std::string& toolTip) const {
  if (buttons.empty()) buttons = test::ToolBarButtons(Window());
  const auto button = buttons.find(toolTip);
  if (button == buttons.end() || !button->second.IsEnabled()) return false;
  button->second.Post();
  Paint();
  return true;
}

void BenchedControl::Stroke(int x, int y, int points, bool isPainted) const {
  const HWND canvas = Canvas();
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, At(x, y));
  for (int i = 1; i < points; ++i) {
    SendMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, At(x + i, y + i / 2));
    if (isPainted) Paint();
  }
  SendMessageW(canvas, WM_LBUTTONUP, 0, At(x + points, y + points / 2));
  if (isPainted) Paint();
}

void BenchedControl::Paint() const {
  test::PumpMessages();
  RedrawWindow(Window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void Write(const Bitmap& page, const std::wstring& path) {
  PictureDocument maker;
  maker.Replace(page);
  maker.Save(std::string(path.begin(), path.end()));
}

double Now() {
  LARGE_INTEGER now = {};
  LARGE_INTEGER second = {};
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&second);
  return 1000.0 * static_cast<double>(now.QuadPart) / static_cast<double>(second.QuadPart);
}

void Measure(const std::string& name, int count, const std::function<void()>& work,
             const std::function<void()>& prepare) {
  std::vector<double> times;
  for (int i = 0; i < count; ++i) {
    if (prepare) prepare();
    const double begin = Now();
    work();
    times.push_back(Now() - begin);
  }
  std::sort(times.begin(), times.end());
  std::printf("%-34s %10.3f %10.3f %10.3f\n", name.c_str(), times.front(), times[times.size() / 2], times.back());
  std::fflush(stdout);
}

void Tell(const std::string& name, double milliseconds) {
  std::printf("%-34s %10.3f\n", name.c_str(), milliseconds);
  std::fflush(stdout);
}

}  // namespace kw::bench
