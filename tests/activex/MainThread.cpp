#include "tests/activex/MainThread.h"

#include <memory>
#include <utility>

namespace kw::test {

LRESULT CALLBACK MainThread::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_APP + 1) {
    const std::unique_ptr<std::function<void()>> work(reinterpret_cast<std::function<void()>*>(lParam));
    (*work)();
    return 0;
  }
  if (message != WM_APP) return DefWindowProcW(window, message, wParam, lParam);
  (*reinterpret_cast<const std::function<void()>*>(lParam))();
  return 0;
}

MainThread::MainThread()
    : window(CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
}

MainThread::~MainThread() { DestroyWindow(window); }

void MainThread::Run(const std::function<void()>& work) const {
  SendMessageW(window, WM_APP, 0, reinterpret_cast<LPARAM>(&work));
}

void MainThread::Post(std::function<void()> work) const {
  auto posted = std::make_unique<std::function<void()>>(std::move(work));
  if (PostMessageW(window, WM_APP + 1, 0, reinterpret_cast<LPARAM>(posted.get())) != FALSE)
    static_cast<void>(posted.release());
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the window that receives the message takes what was posted
}

}  // namespace kw::test
