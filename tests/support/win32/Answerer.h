#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <utility>

#include "tests/support/win32/Bystander.h"

namespace kw::test {

// Answers the next box or system dialog of that title as a user does, and says what it held.
class Answerer {
public:
  Answerer(std::wstring title, WPARAM answer, std::function<void(HWND box)> beforeAnswer = {})
      : act(std::move(beforeAnswer)), bystander(DialogClass, std::move(title), [this, answer](HWND box) {
          owner = GetWindow(box, GW_OWNER);
          hasCancel = GetDlgItem(box, IDCANCEL) != nullptr;
          if (act) act(box);
          PostMessageW(box, WM_COMMAND, answer, 0);
        }) {}

  HWND owner = nullptr;
  bool hasCancel = false;

private:
  std::function<void(HWND)> act;
  Bystander bystander;
};

}  // namespace kw::test
