#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "components/base/Unicode.h"

namespace kw::host::test {

inline std::wstring Wide(const std::string& text) {
  const std::u16string utf16 = Utf16FromUtf8(text);
  return {utf16.begin(), utf16.end()};
}

struct Search {
  DWORD process;
  const wchar_t* className;
  HWND found;
};

inline std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

inline BOOL CALLBACK IsWanted(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner != search.process || IsWindowVisible(window) == FALSE || ClassOf(window) != search.className) return TRUE;
  search.found = window;
  return FALSE;
}

inline BOOL CALLBACK IsList(HWND child, LPARAM parameter) {
  if (ClassOf(child) != L"ListBox") return TRUE;
  *reinterpret_cast<HWND*>(parameter) = child;
  return FALSE;
}

// The program as a user starts it, beside this test's folder.
class Program {
public:
  // Without a `folderOfWork` the program's current folder is the test's.
  Program(const std::wstring& name, const std::wstring& arguments, const std::wstring& folderOfWork = {}) {
    std::vector<wchar_t> own(32768);
    GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size()));
    std::wstring folder = own.data();
    for (int level = 0; level < 2; ++level) folder.erase(folder.find_last_of(L'\\'));
    std::wstring command = L"\"" + folder + L"\\" + name + L"\" " + arguments;
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    isStarted = CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                               folderOfWork.empty() ? nullptr : folderOfWork.c_str(), &start, &process) != FALSE;
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    if (!isStarted) return;
    TerminateProcess(process.hProcess, 99);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
  }

  bool IsStarted() const { return isStarted; }

  // The program's visible top-level window of that class; null where there is none.
  HWND WindowOf(const wchar_t* className) const {
    Search search = {process.dwProcessId, className, nullptr};
    EnumWindows(&IsWanted, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }

  // Presses OK in every box until `isDone`; false when that has not come within a minute.
  bool AnswerUntil(const std::function<bool()>& isDone) const {
    for (int i = 0; i < 6000; ++i) {
      if (isDone()) return true;
      if (const HWND box = WindowOf(L"#32770")) PostMessageW(box, WM_COMMAND, IDOK, 0);
      Sleep(10);
    }
    return false;
  }

  // The exit code; STILL_ACTIVE where it does not end within the time.
  DWORD ExitCode(DWORD milliseconds) const {
    WaitForSingleObject(process.hProcess, milliseconds);
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(process.hProcess, &code);
    return code;
  }

private:
  PROCESS_INFORMATION process = {};
  bool isStarted = false;
};

// The lines of the only list box below a window.
inline std::vector<std::wstring> LinesOfListIn(HWND window) {
  HWND list = nullptr;
  EnumChildWindows(window, &IsList, reinterpret_cast<LPARAM>(&list));
  std::vector<std::wstring> lines;
  const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    std::vector<wchar_t> text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0)) +
                              1);
    SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
    lines.emplace_back(text.data());
  }
  return lines;
}

// A black page of 8 x 8 pixels.
inline std::string SmallBmp() {
  std::string bytes("BM\x7e\0\0\0\0\0\0\0\x3e\0\0\0\x28\0\0\0\x08\0\0\0\x08\0\0\0\x01\0\x01\0", 30);
  bytes.append(32, '\0');                     // no compression, the rest by default, black
  bytes += std::string("\xff\xff\xff\0", 4);  // and white
  bytes.resize(0x3e, '\0');
  bytes.append(std::size_t{8} * 4, '\0');
  return bytes;
}

// Besides the text a box may have an icon, which has none.
inline std::wstring PromptOf(HWND box) {
  std::wstring prompt;
  for (HWND label = nullptr; (label = FindWindowExW(box, label, L"Static", nullptr)) != nullptr;) {
    std::vector<wchar_t> text(200);
    SendMessageW(label, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    prompt += text.data();
  }
  return prompt;
}

// Whether a menu of the window's thread has dropped down.
inline bool HasMenuUp(HWND window) {
  HWND menu = nullptr;
  while ((menu = FindWindowExW(nullptr, menu, L"#32768", nullptr)) != nullptr) {
    if (GetWindowThreadProcessId(menu, nullptr) == GetWindowThreadProcessId(window, nullptr) &&
        IsWindowVisible(menu) != 0)
      return true;
  }
  return false;
}

// As the keyboard does it: opens a menu by its letter, then chooses an entry by its own.
inline void ChooseFromMenu(HWND window, wchar_t menu, WPARAM entry) {
  PostMessageW(window, WM_SYSCOMMAND, SC_KEYMENU, menu);
  for (int i = 0; i < 1000 && !HasMenuUp(window); ++i) Sleep(10);
  PostMessageW(window, WM_KEYDOWN, entry, 1);
}

}  // namespace kw::host::test
