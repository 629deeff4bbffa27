#pragma once

#include <windows.h>

#include <string>

namespace kw::test {

// Another program at the clipboard.
class OtherProgram {
public:
  // Has it do that and waits until it has ended: "image", "text" or "empty".
  static void LeaveOnTheClipboard(const std::wstring& what);

  // While it lives, that program keeps the clipboard open.
  OtherProgram();
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram();

private:
  HANDLE isHeld;
  HANDLE isOver;
  HANDLE process = nullptr;
};

}  // namespace kw::test
