#include "tests/containers/ForeignProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

constexpr DWORD LongestRun = 60000;
constexpr UINT Killed = 99;

struct BoxSearch {
  DWORD process;
  HWND box = nullptr;
};

BOOL CALLBACK FindBoxOfProcess(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<BoxSearch*>(parameter);
  DWORD process = 0;
  const DWORD thread = GetWindowThreadProcessId(window, &process);
  if (process != search.process) return TRUE;
  search.box = BoxOf(thread);
  return static_cast<BOOL>(search.box == nullptr);
}

HANDLE OpenOutput(const std::wstring& path) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  return CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                     nullptr);
}

}  // namespace

ForeignRun RunForeignProgram(std::wstring command, const std::wstring& outputFile) {
  ForeignRun run;
  const HANDLE output = OpenOutput(outputFile);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = output;
  start.hStdError = output;
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process) == FALSE) {
    run.exitCode = GetLastError();
    ADD_FAILURE() << "the program does not start: " << run.exitCode;
    CloseHandle(output);
    return run;
  }
  HWND answered = nullptr;
  for (const DWORD begin = GetTickCount(); WaitForSingleObject(process.hProcess, 20) == WAIT_TIMEOUT;) {
    if (GetTickCount() - begin > LongestRun) TerminateProcess(process.hProcess, Killed);
    BoxSearch search{process.dwProcessId};
    EnumWindows(&FindBoxOfProcess, reinterpret_cast<LPARAM>(&search));
    if (search.box == nullptr || search.box == answered) continue;
    run.boxes.push_back(WordsOf(search.box));
    PostMessageW(search.box, WM_COMMAND, IDOK, 0);
    answered = search.box;
  }
  GetExitCodeProcess(process.hProcess, &run.exitCode);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  CloseHandle(output);
  std::ifstream file(std::filesystem::path(outputFile), std::ios::binary);
  run.output.assign(std::istreambuf_iterator<char>(file), {});
  return run;
}

}  // namespace kw::test
