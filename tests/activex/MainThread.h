#pragma once

#include <windows.h>

#include <functional>

namespace kw::test {

// Runs work on the thread that made it, from that thread's message loop, whoever runs the loop.
class MainThread {
public:
  MainThread();
  MainThread(const MainThread&) = delete;
  MainThread& operator=(const MainThread&) = delete;
  ~MainThread();

  // From another thread; returns when the work is done.
  void Run(const std::function<void()>& work) const;
  // The same without waiting for it.
  void Post(std::function<void()> work) const;

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND window;
};

}  // namespace kw::test
