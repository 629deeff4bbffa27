#include "activex/ClassesRoot.h"

namespace kw::activex {
namespace {

constexpr wchar_t Classes[] = L"Software\\Classes";
#ifdef _WIN64
constexpr REGSAM OtherView = KEY_WOW64_32KEY;
#else
constexpr REGSAM OtherView = KEY_WOW64_64KEY;
#endif

HRESULT ToResult(LSTATUS status) { return HRESULT_FROM_WIN32(static_cast<DWORD>(status)); }

bool CanOpen(HKEY root, const std::wstring& path, REGSAM view) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

}  // namespace

ClassesRoot::ClassesRoot(Users users) : hive(users == Users::Current ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE) {
  LSTATUS status =
      RegCreateKeyExW(hive, Classes, 0, nullptr, 0, KEY_READ | KEY_WRITE | DELETE, nullptr, &classes, nullptr);
  if (status == ERROR_SUCCESS) status = RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
  result = ToResult(status);
}

ClassesRoot::~ClassesRoot() {
  if (SUCCEEDED(result)) RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
  if (classes != nullptr) RegCloseKey(classes);
}

HRESULT ClassesRoot::Write(const RegistryRow& row) const {
  HKEY key = nullptr;
  LSTATUS status = RegCreateKeyExW(classes, row.key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
  if (status == ERROR_SUCCESS) {
    status = RegSetValueExW(key, row.name, 0, REG_SZ, reinterpret_cast<const BYTE*>(row.value.c_str()),
                            static_cast<DWORD>((row.value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  }
  return ToResult(status);
}

HRESULT ClassesRoot::Remove(const std::wstring& key) const {
  const LSTATUS status = RegDeleteTreeW(classes, key.c_str());
  return status == ERROR_FILE_NOT_FOUND ? S_OK : ToResult(status);
}

bool ClassesRoot::Has(const std::wstring& key) const { return CanOpen(classes, key, 0); }

bool ClassesRoot::OtherArchitectureHas(const std::wstring& key) const {
  return CanOpen(hive, Classes + (L"\\" + key), OtherView);
}

}  // namespace kw::activex
