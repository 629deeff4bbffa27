// An ordinary program that shows the control, to learn from. EditorControl.cpp makes and places it, ControlSite.cpp
// answers it, Sinks.cpp listens to it, MainWindow.cpp calls it.
#include <windows.h>

#include <ole2.h>
#include <shellapi.h>

#include <filesystem>

#include "MainWindow.h"

namespace {

using kw::host::CommandLine;
using kw::host::ControlError;
using kw::host::MainWindow;
using kw::host::ParseCommandLine;
using kw::host::Usage;
using kw::host::UsageError;

struct Ole {
  Ole() { _com_util::CheckError(OleInitialize(nullptr)); }
  ~Ole() { OleUninitialize(); }
  Ole(const Ole&) = delete;
  Ole& operator=(const Ole&) = delete;
};

std::vector<std::wstring> Arguments() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> arguments(words + 1, words + count);
  LocalFree(words);
  return arguments;
}

// A folder that the control can write its files into when none is named.
std::wstring DefaultAppDir() {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / L"KwHost";
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  return (folder / L"").wstring();
}

int Complain(const std::wstring& message, int exitCode) {
  MessageBoxW(nullptr, message.c_str(), L"KwHost", MB_OK | MB_ICONERROR);
  return exitCode;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR /*arguments*/, int showCmd) {
  try {
    CommandLine line = ParseCommandLine(Arguments());
    // A control that is loaded has its folder from there.
    const bool isKept = !line.settings.empty() && std::filesystem::exists(line.settings);
    if (line.appDir.empty() && !isKept) line.appDir = DefaultAppDir();
    // Until AppDir is set the control writes its trace into the current folder.
    const std::wstring folder = line.appDir.empty() ? DefaultAppDir() : line.appDir;
    if (SetCurrentDirectoryW(folder.c_str()) == FALSE)
      return Complain(L"The folder " + folder + L" cannot be used.", 1);
    const Ole ole;
    MainWindow window(instance, line.settings);
    window.Start(line, showCmd);
    return window.Run();
  } catch (const UsageError& error) {
    return Complain(error.message + L"\n\n" + Usage, 2);
  } catch (const ControlError& error) {
    return Complain(error.message, 1);
  } catch (const _com_error& error) {
    return Complain(kw::host::ErrorText(error.Error()), 1);
  } catch (const std::exception& error) {
    MessageBoxA(nullptr, error.what(), "KwHost", MB_OK | MB_ICONERROR);
    return 1;
  }
}
