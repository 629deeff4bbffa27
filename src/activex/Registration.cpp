#include "activex/Registration.h"

#include <oleauto.h>
#include <olectl.h>
#include <wrl/client.h>

#include <string>

#include "activex/KwEditor.h"
#include "activex/MiscStatus.h"
#include "activex/Module.h"
#include "activex/Verbs.h"
#include "resources/KwIcons.h"

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;

constexpr wchar_t ProgId[] = L"KwEditor.KwEditorLayers";
constexpr wchar_t VersionedProgId[] = L"KwEditor.KwEditorLayers.1";
constexpr WORD TypeLibraryMajor = 1;
constexpr WORD TypeLibraryMinor = 0;
#ifdef _WIN64
constexpr SYSKIND System = SYS_WIN64;
#else
constexpr SYSKIND System = SYS_WIN32;
#endif

std::wstring ToText(REFGUID guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, 39);
  return text;
}

std::wstring ClassKey() { return L"CLSID\\" + ToText(CLSID_KwEditorLayers); }

struct RegistryRow {
  std::wstring key;
  const wchar_t* name;  // null: the key's default value
  std::wstring value;
};

HRESULT Write(const RegistryRow& row) {
  HKEY key = nullptr;
  LSTATUS status =
      RegCreateKeyExW(HKEY_CLASSES_ROOT, row.key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
  if (status == ERROR_SUCCESS) {
    status = RegSetValueExW(key, row.name, 0, REG_SZ, reinterpret_cast<const BYTE*>(row.value.c_str()),
                            static_cast<DWORD>((row.value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  }
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

HRESULT WriteClass() {
  const std::wstring path = Module::Path();
  const std::wstring classId = ToText(CLSID_KwEditorLayers);
  const std::wstring key = ClassKey();
  const RegistryRow rows[] = {
      {key, nullptr, UserTypeName},
      {key + L"\\Control", nullptr, L""},
      {key + L"\\InprocServer32", nullptr, path},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\MiscStatus", nullptr, L"0"},
      {key + L"\\MiscStatus\\1", nullptr, std::to_wstring(MiscStatus)},
      {key + L"\\ProgID", nullptr, VersionedProgId},
      {key + L"\\Programmable", nullptr, L""},
      {key + L"\\ToolboxBitmap32", nullptr, path + L", " + std::to_wstring(ToolboxBitmapId)},
      {key + L"\\TypeLib", nullptr, ToText(LIBID_KwEditor)},
      {key + L"\\Version", nullptr, std::to_wstring(TypeLibraryMajor) + L"." + std::to_wstring(TypeLibraryMinor)},
      {key + L"\\VersionIndependentProgID", nullptr, ProgId},
      {ProgId, nullptr, UserTypeName},
      {std::wstring(ProgId) + L"\\CLSID", nullptr, classId},
      {std::wstring(ProgId) + L"\\CurVer", nullptr, VersionedProgId},
      {VersionedProgId, nullptr, UserTypeName},
      {std::wstring(VersionedProgId) + L"\\CLSID", nullptr, classId},
  };
  for (const RegistryRow& row : rows) {
    const HRESULT result = Write(row);
    if (FAILED(result)) return result;
  }
  for (const Verb& verb : Verbs()) {
    const HRESULT result = Write({key + L"\\Verb\\" + std::to_wstring(verb.number), nullptr, verb.RegistryText()});
    if (FAILED(result)) return result;
  }
  return S_OK;
}

HRESULT RemoveTree(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  return status == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

}  // namespace

HRESULT Register() {
  HRESULT result = WriteClass();
  if (SUCCEEDED(result)) {
    ComPtr<ITypeLib> library;
    result = LoadTypeLibEx(Module::Path().c_str(), REGKIND_REGISTER, &library);
  }
  if (FAILED(result)) Unregister();
  return result;
}

HRESULT Unregister() {
  HRESULT result = S_OK;
  BSTR path = nullptr;
  if (SUCCEEDED(QueryPathOfRegTypeLib(LIBID_KwEditor, TypeLibraryMajor, TypeLibraryMinor, LOCALE_NEUTRAL, &path))) {
    SysFreeString(path);
    result = UnRegisterTypeLib(LIBID_KwEditor, TypeLibraryMajor, TypeLibraryMinor, LOCALE_NEUTRAL, System);
  }
  for (const std::wstring& key : {ClassKey(), std::wstring(ProgId), std::wstring(VersionedProgId)}) {
    const HRESULT removed = RemoveTree(key);
    if (FAILED(removed)) result = removed;
  }
  return result;
}

}  // namespace kw::activex
