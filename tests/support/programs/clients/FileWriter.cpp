// A program that writes to a file that others write to at the same time: FileWriter EVENT WHAT PATH NAME COUNT
//   lines   appends so many lines of its name and a number to the file PATH
//   stamps  adds so many stamps of its name and a number to the list in the folder PATH
// It counts up the semaphore EVENTReady and begins once the event is set. The exit code is 0 where all was done.

#include <windows.h>

#include <string>

#include "components/base/Files.h"
#include "components/base/RunTimeError.h"
#include "components/controls/LightWeightMarker.h"
#include "components/controls/Log.h"
#include "stamps/StampList.h"
#include "trap/Trap.h"
#include "windows/WindowsDesktop.h"
#include "windows/base/Text.h"

namespace {

using kw::windows::FromWide;

void AppendLines(const std::string& path, const std::string& name, int count) {
  for (int i = 0; i < count; ++i) kw::AppendToFile(path, name + std::to_string(i) + "\r\n");
}

// Stamps are added without a container.
class NoEvents : public kw::EditorEvents {
  void Raise(kw::EventId /*event*/, std::span<const Argument> /*arguments*/) override {}
  void PropertyChanged(kw::PropertyId /*property*/) override {}
};

void AddStamps(const std::string& folder, const std::string& name, int count) {
  kw::AppDir = folder;
  kw::windows::WindowsDesktop desktop;
  kw::LightWeightMarker anyControl("anyControl");
  kw::Log log("log");
  NoEvents events;
  kw::Trap trap(desktop, events, anyControl, anyControl, anyControl, log);
  kw::StampList list(desktop, trap);
  for (int i = 0; i < count; ++i) list.AddStamp(name + std::to_string(i));
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 6) return 2;
  const HANDLE event = OpenEventW(SYNCHRONIZE, FALSE, arguments[1]);
  const HANDLE ready = OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, (arguments[1] + std::wstring(L"Ready")).c_str());
  ReleaseSemaphore(ready, 1, nullptr);
  CloseHandle(ready);
  constexpr DWORD longest = 30000;
  if (event == nullptr || WaitForSingleObject(event, longest) != WAIT_OBJECT_0) return 3;
  CloseHandle(event);
  const std::wstring what = arguments[2];
  try {
    (what == L"lines" ? AppendLines : AddStamps)(FromWide(arguments[3]), FromWide(arguments[4]),
                                                 std::stoi(arguments[5]));
  } catch (const kw::RunTimeError& error) {
    return error.Number();
  }
  return 0;
}
