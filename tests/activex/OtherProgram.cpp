#include "activex/OtherProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "activex/Ocx.h"

namespace kw::test {
namespace {

constexpr DWORD Deadline = 30000;

// Null where it cannot be started.
HANDLE Start(const std::wstring& arguments) {
  const std::filesystem::path folder = std::filesystem::path(Ocx::Path()).parent_path() / L"tests";
  std::wstring command = L"\"" + (folder / L"ClipboardUser.exe").wstring() + L"\" " + arguments;
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process) ==
      FALSE) {
    ADD_FAILURE() << "the other program does not start: " << GetLastError();
    return nullptr;
  }
  CloseHandle(process.hThread);
  return process.hProcess;
}

void ExpectItsEnd(HANDLE process) {
  if (process == nullptr) return;
  EXPECT_EQ(WaitForSingleObject(process, Deadline), WAIT_OBJECT_0);
  DWORD code = 99;
  EXPECT_NE(GetExitCodeProcess(process, &code), FALSE);
  EXPECT_EQ(code, 0U) << "of the other program";
  CloseHandle(process);
}

std::wstring NameOfEvent(const wchar_t* what) {
  return L"KwClipboard" + std::wstring(what) + std::to_wstring(GetCurrentProcessId());
}

}  // namespace

void OtherProgram::LeaveOnTheClipboard(const std::wstring& what) { ExpectItsEnd(Start(what)); }

OtherProgram::OtherProgram()
    : isHeld(CreateEventW(nullptr, TRUE, FALSE, NameOfEvent(L"Held").c_str())),
      isOver(CreateEventW(nullptr, TRUE, FALSE, NameOfEvent(L"Over").c_str())),
      process(Start(L"hold " + NameOfEvent(L"Held") + L" " + NameOfEvent(L"Over"))) {
  EXPECT_EQ(WaitForSingleObject(isHeld, Deadline), WAIT_OBJECT_0);
}

OtherProgram::~OtherProgram() {
  SetEvent(isOver);
  ExpectItsEnd(process);
  CloseHandle(isHeld);
  CloseHandle(isOver);
}

}  // namespace kw::test
