#include "activex/Registration.h"

#include <comcat.h>
#include <oleauto.h>
#include <olectl.h>
#include <wrl/client.h>

#include <span>
#include <string>

#include "activex/ClassesRoot.h"
#include "activex/KwEditor.h"
#include "activex/MiscStatus.h"
#include "activex/Module.h"
#include "activex/Verbs.h"
#include "resources/KwIcons.h"

// The compiler's headers lack them.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID guid, WORD major, WORD minor, LCID locale, SYSKIND system);

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;

constexpr wchar_t ProgId[] = L"KwEditor.KwEditorLayers";
constexpr wchar_t VersionedProgId[] = L"KwEditor.KwEditorLayers.1";
constexpr wchar_t PageName[] = L"Kw image annotation editor, property page";
#ifdef _WIN64
constexpr SYSKIND System = SYS_WIN64;
constexpr wchar_t SystemName[] = L"win64";
#else
constexpr SYSKIND System = SYS_WIN32;
constexpr wchar_t SystemName[] = L"win32";
#endif

std::wstring LibraryVersion() { return std::to_wstring(KW_LIBRARY_MAJOR) + L"." + std::to_wstring(KW_LIBRARY_MINOR); }

std::wstring ToText(REFGUID guid) {
  wchar_t text[39];
  StringFromGUID2(guid, text, 39);
  return text;
}

std::wstring KeyOfClass(REFCLSID classId) { return L"CLSID\\" + ToText(classId); }
std::wstring KeyOfInterface(REFIID iid) { return L"Interface\\" + ToText(iid); }
std::wstring KeyOfLibrary() { return L"TypeLib\\" + ToText(LIBID_KwEditor); }
// What only this architecture has of the library.
std::wstring KeyOfSystem() { return KeyOfLibrary() + L"\\" + LibraryVersion() + L"\\0\\" + SystemName; }

HRESULT Write(const ClassesRoot& classes, std::span<const RegistryRow> rows) {
  for (const RegistryRow& row : rows) {
    const HRESULT result = classes.Write(row);
    if (FAILED(result)) return result;
  }
  return S_OK;
}

HRESULT WriteClass(const ClassesRoot& classes) {
  const std::wstring path = Module::Path();
  const std::wstring classId = ToText(CLSID_KwEditorLayers);
  const std::wstring key = KeyOfClass(CLSID_KwEditorLayers);
  const std::wstring page = KeyOfClass(CLSID_KwEditorPage);
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
      {key + L"\\Version", nullptr, LibraryVersion()},
      {key + L"\\VersionIndependentProgID", nullptr, ProgId},
      {ProgId, nullptr, UserTypeName},
      {std::wstring(ProgId) + L"\\CLSID", nullptr, classId},
      {std::wstring(ProgId) + L"\\CurVer", nullptr, VersionedProgId},
      {VersionedProgId, nullptr, UserTypeName},
      {std::wstring(VersionedProgId) + L"\\CLSID", nullptr, classId},
      {page, nullptr, PageName},
      {page + L"\\InprocServer32", nullptr, path},
      {page + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
  };
  const HRESULT result = Write(classes, rows);
  if (FAILED(result)) return result;
  for (const Verb& verb : Verbs()) {
    const RegistryRow row[] = {{key + L"\\Verb\\" + std::to_wstring(verb.number), nullptr, verb.RegistryText()}};
    const HRESULT written = Write(classes, row);
    if (FAILED(written)) return written;
  }
  return S_OK;
}

// The system's manager of categories writes for all users only.
HRESULT WriteCategory(const ClassesRoot& classes, Users users) {
  if (users == Users::Current) {
    return classes.Write(
        {KeyOfClass(CLSID_KwEditorLayers) + L"\\Implemented Categories\\" + ToText(CATID_Control), nullptr, L""});
  }
  const ComApartment apartment;
  ComPtr<ICatRegister> manager;
  const HRESULT result =
      CoCreateInstance(CLSID_StdComponentCategoriesMgr, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&manager));
  CATID control = CATID_Control;
  return FAILED(result) ? result : manager->RegisterClassImplCategories(CLSID_KwEditorLayers, 1, &control);
}

HRESULT WriteTypeLibrary(Users users) {
  ComPtr<ITypeLib> library;
  std::wstring path = Module::Path();
  const HRESULT result = LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library);
  if (FAILED(result)) return result;
  return users == Users::Current ? RegisterTypeLibForUser(library.Get(), path.data(), nullptr)
                                 : RegisterTypeLib(library.Get(), path.data(), nullptr);
}

HRESULT RemoveTypeLibrary(const ClassesRoot& classes, Users users) {
  if (!classes.Has(KeyOfSystem())) return S_OK;
  const auto unregister = users == Users::Current ? &UnRegisterTypeLibForUser : &UnRegisterTypeLib;
  return unregister(LIBID_KwEditor, KW_LIBRARY_MAJOR, KW_LIBRARY_MINOR, LOCALE_NEUTRAL, System);
}

HRESULT WriteAll(Users users) {
  const ClassesRoot classes(users);
  HRESULT result = classes.Result();
  if (SUCCEEDED(result)) result = WriteClass(classes);
  if (SUCCEEDED(result)) result = WriteCategory(classes, users);
  if (SUCCEEDED(result)) result = WriteTypeLibrary(users);
  return result;
}

}  // namespace

HRESULT Register(Users users) {
  const HRESULT result = WriteAll(users);
  if (FAILED(result)) Unregister(users);
  return result;
}

HRESULT Unregister(Users users) {
  const ClassesRoot classes(users);
  HRESULT result = classes.Result();
  if (FAILED(result)) return result;
  const auto remove = [&](const std::wstring& key) {
    const HRESULT removed = classes.Remove(key);
    if (FAILED(removed)) result = removed;
  };
  const std::wstring classKey = KeyOfClass(CLSID_KwEditorLayers);
  remove(classKey);
  remove(KeyOfClass(CLSID_KwEditorPage));
  if (classes.OtherArchitectureHas(classKey)) {
    // The system would also remove what the type library has in common for both.
    remove(KeyOfSystem());
  } else {
    const HRESULT removed = RemoveTypeLibrary(classes, users);
    if (FAILED(removed)) result = removed;
    remove(ProgId);
    remove(VersionedProgId);
  }
  remove(KeyOfInterface(IID__KwEditorLayers));
  remove(KeyOfInterface(DIID___KwEditorLayers));
  return result;
}

}  // namespace kw::activex
