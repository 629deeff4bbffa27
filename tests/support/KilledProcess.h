#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "components/base/Unicode.h"

namespace kw::test {

// A program that is ended in the middle of its work, as a power cut or a user ends it: it gets no chance to tidy up.
class KilledProcess {
public:
  // Starts it; what it writes is thrown away. The first argument is the program's path. On Windows it gets no console,
  // whose own process would outlive it.
  explicit KilledProcess(const std::vector<std::string>& arguments) {
#ifdef _WIN32
    std::string line;
    for (const std::string& argument : arguments) line += (line.empty() ? "\"" : " \"") + argument + "\"";
    const std::u16string units = Utf16FromUtf8(line);
    std::wstring command(units.begin(), units.end());
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION information = {};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr, nullptr, &start,
                       &information) == FALSE) {
      ADD_FAILURE() << arguments[0] << " does not start: " << GetLastError();
      return;
    }
    CloseHandle(information.hThread);
    process = information.hProcess;
    number = information.dwProcessId;
#else
    std::vector<char*> list;
    list.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) list.push_back(const_cast<char*>(argument.c_str()));
    list.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
      posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
    pid_t started = 0;
    EXPECT_EQ(posix_spawn(&started, list[0], &actions, nullptr, list.data(), environ), 0) << arguments[0];
    posix_spawn_file_actions_destroy(&actions);
    number = started;
#endif
  }
  KilledProcess(const KilledProcess&) = delete;
  KilledProcess& operator=(const KilledProcess&) = delete;
  ~KilledProcess() { Kill(); }

  std::int64_t Number() const { return number; }

  // Ends it unless it has ended, and waits until it is gone. Whether it was still running.
  bool Kill() {
    if (isOver || number == 0) return false;
    isOver = true;
#ifdef _WIN32
    const bool wasRunning = WaitForSingleObject(process, 0) == WAIT_TIMEOUT && TerminateProcess(process, 1) != FALSE;
    WaitForSingleObject(process, INFINITE);
    CloseHandle(process);
    return wasRunning;
#else
    kill(static_cast<pid_t>(number), SIGKILL);
    int status = 0;
    waitpid(static_cast<pid_t>(number), &status, 0);
    return WIFSIGNALED(status);
#endif
  }

  // The exit code once it has ended; -1 if it did not end by itself.
  int ExitCode() {
    if (isOver || number == 0) return -1;
    isOver = true;
#ifdef _WIN32
    DWORD code = 0;
    WaitForSingleObject(process, INFINITE);
    GetExitCodeProcess(process, &code);
    CloseHandle(process);
    return static_cast<int>(code);
#else
    int status = 0;
    waitpid(static_cast<pid_t>(number), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
  }

private:
#ifdef _WIN32
  HANDLE process = nullptr;
#endif
  std::int64_t number = 0;
  bool isOver = false;
};

}  // namespace kw::test
