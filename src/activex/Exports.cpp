#include <windows.h>

#include <olectl.h>

#include <cwchar>

#include "activex/ClassFactory.h"
#include "activex/Module.h"
#include "activex/Registration.h"
#include "windows/base/Guard.h"
#include "windows/views/AccessibleSource.h"
#include "windows/views/ControlView.h"

// The DLL's exports, by which COM loads, unloads and registers the control.

using kw::activex::ClassFactory;
using kw::activex::Users;
namespace Module = kw::activex::Module;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID isProcessEnding) {
  if (reason == DLL_PROCESS_ATTACH) Module::SetInstance(instance);
  if (reason == DLL_PROCESS_DETACH && isProcessEnding == nullptr) kw::windows::OwnWindowClass::Unregister();
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, LPVOID* object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  ClassFactory* const factory = ClassFactory::Find(classId);
  return factory == nullptr ? CLASS_E_CLASSNOTAVAILABLE : factory->QueryInterface(iid, object);
}

STDAPI DllCanUnloadNow() {
  return Module::IsUnused() && !kw::windows::AccessibleWindow::AreObjectsHeld() ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
  return kw::windows::GuardOr(E_OUTOFMEMORY, [] { return kw::activex::Register(Users::All); });
}

STDAPI DllUnregisterServer() {
  return kw::windows::GuardOr(E_OUTOFMEMORY, [] { return kw::activex::Unregister(Users::All); });
}

// "user" registers for the calling user, who needs no rights for that; without a word it is as DllRegisterServer.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
  return kw::windows::GuardOr(E_OUTOFMEMORY, [&]() -> HRESULT {
    const wchar_t* const words = commandLine == nullptr ? L"" : commandLine;
    const bool isForUser = _wcsicmp(words, L"user") == 0;
    if (!isForUser && *words != L'\0') return E_INVALIDARG;
    const Users users = isForUser ? Users::Current : Users::All;
    return install != FALSE ? kw::activex::Register(users) : kw::activex::Unregister(users);
  });
}
