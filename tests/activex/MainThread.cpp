#include "activex/MainThread.h"

namespace kw::test {

LRESULT CALLBACK MainThread::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
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

}  // namespace kw::test
