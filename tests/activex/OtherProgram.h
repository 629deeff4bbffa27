#pragma once

#include <string>

#include "tests/support/win32/Process.h"

namespace kw::test {

// Another program at the clipboard.
class OtherProgram {
public:
  // Has it do that and waits until it has ended: "image", "bitmap", "text" or "empty".
  static void LeaveOnTheClipboard(const std::wstring& what);

  // While it lives, that program keeps the clipboard open.
  OtherProgram();
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram();

private:
  SharedEvent isHeld{L"ClipboardHeld"};
  SharedEvent isOver{L"ClipboardOver"};
  Process process;
};

}  // namespace kw::test
