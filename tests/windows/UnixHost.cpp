#include "tests/windows/UnixHost.h"

#include <windows.h>

#include "tests/support/TemporaryFolder.h"
#include "windows/base/Text.h"

namespace kw::test {

std::string UnixHost::PathOf(const std::string& path) {
  using Convert = char*(CDECL*)(const wchar_t*);
  const auto convert = reinterpret_cast<Convert>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
  if (convert == nullptr) return {};
  char* const text = convert(windows::ToWide(path).c_str());
  std::string result = text == nullptr ? "" : text;
  HeapFree(GetProcessHeap(), 0, text);
  return result;
}

bool UnixHost::Run(const std::string& command, const std::string& doneFile) {
  std::wstring line = L"/bin/sh -c \"" + windows::ToWide(command + "; touch " + PathOf(doneFile)) + L"\"";
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(L"\\\\?\\unix\\bin\\sh", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                     &process) == FALSE) {
    return false;
  }
  if (process.hProcess != nullptr) CloseHandle(process.hProcess);
  if (process.hThread != nullptr) CloseHandle(process.hThread);
  for (int i = 0; i < 6000; ++i) {
    if (Exists(doneFile)) return true;
    Sleep(10);
  }
  return false;
}

}  // namespace kw::test
