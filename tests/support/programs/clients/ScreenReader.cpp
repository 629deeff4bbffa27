// Another program that reads a window: ScreenReader WINDOW NAME EVENT EVENT
// WINDOW is the handle as a decimal number. It looks for a part of that name in it and in all windows below, keeps the
// object, sets the first event, waits for the second one, and asks the object once more.
// The exit code is 7 if it found the part and the object then failed, because its window was gone.

#include <windows.h>

#include <string>

#include "tests/support/win32/AccessibleClient.h"

namespace {

enum ExitCode { FoundAndGone = 7, BadArguments = 20, NotFound, NoEvents, StillThere };

kw::test::Accessible Find(HWND top, const std::wstring& name) {
  for (const HWND window : kw::test::WindowsBelow(top)) {
    kw::test::Accessible object = kw::test::AccessibleOf(window);
    if (object == nullptr) continue;
    for (const LONG part : kw::test::PartsOf(object)) {
      if (kw::test::NameOf(object, part) == name) return object;
    }
  }
  return nullptr;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 5) return BadArguments;
  const kw::test::ComOnThread com;
  const kw::test::Accessible object = Find(reinterpret_cast<HWND>(std::stoull(arguments[1])), arguments[2]);
  if (object == nullptr) return NotFound;
  const HANDLE held = OpenEventW(EVENT_MODIFY_STATE, FALSE, arguments[3]);
  const HANDLE gone = OpenEventW(SYNCHRONIZE, FALSE, arguments[4]);
  if (SetEvent(held) == FALSE || WaitForSingleObject(gone, 30000) != WAIT_OBJECT_0) return NoEvents;
  BSTR name = nullptr;
  return FAILED(object->get_accName(kw::test::ChildId(CHILDID_SELF), &name)) ? FoundAndGone : StillThere;
}
