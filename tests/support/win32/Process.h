#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace kw::test {

// A program that lies beside the test's own and runs beside it.
class Process {
public:
  Process(const std::wstring& program, const std::wstring& arguments) {
    std::wstring own(32768, L'\0');
    own.resize(GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size())));
    const std::filesystem::path path = std::filesystem::path(own).parent_path() / program;
    const std::wstring command = L"\"" + path.wstring() + L"\" " + arguments;
    DWORD error = Start(command);
    if (error == ERROR_INTERNAL_ERROR) {
      // Seen once in many thousand starts, from Wine, which had not begun to load the program.
      std::printf("%ls did not start (error %lu); it is started again\n", program.c_str(), error);
      error = Start(command);
    }
    if (error != 0) ADD_FAILURE() << path << " does not start: " << error;
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  // A program that is still running is ended.
  ~Process() {
    if (process == nullptr) return;
    if (WaitForSingleObject(process, 0) == WAIT_TIMEOUT) TerminateProcess(process, Killed);
    CloseHandle(process);
  }

  // The exit code once it has ended, which must not take longer than half a minute.
  DWORD ExitCode() const {
    DWORD code = Killed;
    if (process == nullptr) return code;
    constexpr DWORD deadline = 30000;
    EXPECT_EQ(WaitForSingleObject(process, deadline), WAIT_OBJECT_0) << "the program does not end";
    EXPECT_NE(GetExitCodeProcess(process, &code), FALSE);
    return code;
  }

private:
  // 0 or why the program does not start.
  DWORD Start(std::wstring command) {
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION information = {};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &information) ==
        FALSE) {
      return GetLastError();
    }
    CloseHandle(information.hThread);
    process = information.hProcess;
    return 0;
  }

  static constexpr DWORD Killed = 99;
  HANDLE process = nullptr;
};

// An event that several programs know by its name.
class SharedEvent {
public:
  explicit SharedEvent(const wchar_t* what)
      : name(L"Kw" + std::wstring(what) + std::to_wstring(GetCurrentProcessId())),
        handle(CreateEventW(nullptr, TRUE, FALSE, name.c_str())) {}
  SharedEvent(const SharedEvent&) = delete;
  SharedEvent& operator=(const SharedEvent&) = delete;
  ~SharedEvent() { CloseHandle(handle); }

  const std::wstring& Name() const { return name; }
  HANDLE Handle() const { return handle; }
  void Set() const { SetEvent(handle); }

private:
  std::wstring name;
  HANDLE handle;
};

}  // namespace kw::test
