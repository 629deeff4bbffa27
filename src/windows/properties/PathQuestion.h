#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace kw::windows {

// Asks with the system's dialog for a file that is there, or for a folder, and begins at `start` if that is there. A
// folder ends with a backslash. Empty if the user cancelled or there is no dialog. Needs COM on this thread.
std::optional<std::wstring> AskForFile(HWND owner, const std::wstring& start);
std::optional<std::wstring> AskForFolder(HWND owner, const std::wstring& start);

}  // namespace kw::windows
