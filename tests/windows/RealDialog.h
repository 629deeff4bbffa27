#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "tests/support/win32/PostedMessages.h"
#include "tests/windows/TestForm.h"
#include "windows/WindowsDesktop.h"
#include "windows/base/Text.h"

namespace kw::test {

// A dialog form in its real window, driven as a user drives it.
class RealDialog : public testing::Test {
protected:
  explicit RealDialog(const wchar_t* caption) : title(caption) {}

  // Calls `show`, which shows the dialog and waits, while a user does this on a thread of his own once it is ready.
  void Use(const std::function<void()>& show, const std::function<bool()>& isReady, const std::function<void()>& user) {
    desktop.owner = form.host;
    thread = GetCurrentThreadId();
    std::thread hand([&] {
      const bool isUp = WaitFor([&] { return IsWindowVisible(Dialog()) != FALSE && isReady(); });
      EXPECT_TRUE(isUp);
      if (isUp) user();
      // Whatever went wrong, the dialog goes.
      if (!WaitFor([&] { return Dialog() == nullptr; })) {
        ADD_FAILURE() << "the dialog is still up";
        PostMessageW(Dialog(), WM_CLOSE, 0, 0);
      }
    });
    show();
    hand.join();
  }
  HWND Dialog() const { return FindWindowW(nullptr, title); }
  template <class Condition>
  static bool WaitFor(Condition isDone) {
    for (int i = 0; i < 1000; ++i) {
      if (isDone()) return true;
      Sleep(10);
    }
    return false;
  }
  HWND Focus() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(thread, &info);
    return info.hwndFocus;
  }
  // What the field shows.
  static std::string TextIn(HWND field) {
    wchar_t text[600] = {};
    SendMessageW(field, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
    return windows::FromWide(text);
  }
  void Press(WPARAM key) const {
    PostMessageW(Focus(), WM_KEYDOWN, key, 1);
    PostMessageW(Focus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
    Settle();
  }
  void Mnemonic(wchar_t letter) const {
    PostMessageW(Focus(), WM_SYSCHAR, letter, 1 << 29);
    Settle();
  }
  void Type(const std::wstring& text) const {
    for (const wchar_t one : text) PostMessageW(Focus(), WM_CHAR, one, 1);
    Settle();
  }
  // Until what was posted is handled.
  void Settle() const {
    if (Dialog() != nullptr) PostedMessages::AreHandled(Dialog());
  }
  void PostClickAt(HWND window, int x, int y) const {
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    Settle();
  }
  void Click(const Control& control) const { PostClickAt(WindowOf(control), 8, 8); }

  class DialogDesktop final : public windows::WindowsDesktop {
  public:
    HWND owner = nullptr;

  protected:
    HWND DialogOwner() const override { return owner; }
  };

  TestForm form;
  DialogDesktop desktop;

private:
  const wchar_t* title;
  DWORD thread = 0;
};

}  // namespace kw::test
