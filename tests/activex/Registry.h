#pragma once

#include <windows.h>

#include <string>

namespace kw::test {

// The registry's form of a number.
std::wstring ToText(REFGUID guid);

// Whether a class key is there: as all programs see it, or below one of the two hives, for 64 or 32 bits.
bool KeyExists(const std::wstring& path);
bool KeyExists(HKEY hive, const std::wstring& path, REGSAM view = 0);
// "<none>" where it is not there or no text.
std::wstring Value(const std::wstring& path, const wchar_t* name = nullptr);

// Runs a program of the system and returns its exit code.
DWORD RunProgram(std::wstring command);
// Runs regsvr32 with the control's library.
DWORD RegSvr32(const std::wstring& switches);

// Fails the test for each key that the control may write and that is below the hive.
void ExpectNoKeys(HKEY hive);

}  // namespace kw::test
