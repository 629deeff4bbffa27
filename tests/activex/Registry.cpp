#include "tests/activex/Registry.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include "tests/activex/Ocx.h"

namespace kw::test {
namespace {

bool CanOpen(HKEY root, const std::wstring& path, REGSAM view) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

}  // namespace

std::wstring ToText(REFGUID guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, 39);
  return text;
}

DWORD RunProgram(std::wstring command) {
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process) == 0) {
    return GetLastError();
  }
  DWORD code = WAIT_TIMEOUT;
  if (WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0) GetExitCodeProcess(process.hProcess, &code);
  TerminateProcess(process.hProcess, 1);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

bool KeyExists(const std::wstring& path) { return CanOpen(HKEY_CLASSES_ROOT, path, 0); }

bool KeyExists(HKEY hive, const std::wstring& path, REGSAM view) {
  return CanOpen(hive, L"Software\\Classes\\" + path, view);
}

std::wstring Value(const std::wstring& path, const wchar_t* name) {
  wchar_t text[1024] = L"";
  DWORD size = sizeof text;
  if (RegGetValueW(HKEY_CLASSES_ROOT, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS) {
    return L"<none>";
  }
  return text;
}

DWORD RegSvr32(const std::wstring& switches) {
  return RunProgram(L"regsvr32.exe /s " + switches + L" \"" + Ocx::Path() + L"\"");
}

void ExpectNoKeys(HKEY hive) {
  for (const std::wstring& key : {L"CLSID\\" + ToText(CLSID_KwEditorLayers), L"CLSID\\" + ToText(CLSID_KwEditorPage),
                                  std::wstring(L"KwEditor.KwEditorLayers"), std::wstring(L"KwEditor.KwEditorLayers.1"),
                                  L"TypeLib\\" + ToText(LIBID_KwEditor), L"Interface\\" + ToText(IID__KwEditorLayers),
                                  L"Interface\\" + ToText(DIID___KwEditorLayers)}) {
    EXPECT_FALSE(KeyExists(hive, key)) << std::string(key.begin(), key.end());
  }
}

}  // namespace kw::test
