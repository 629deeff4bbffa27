#include <windows.h>

#include <olectl.h>

#include "activex/ClassFactory.h"
#include "activex/KwEditor.h"
#include "activex/Module.h"
#include "activex/Registration.h"
#include "windows/base/Guard.h"
#include "windows/views/AccessibleSource.h"
#include "windows/views/ControlView.h"

// The DLL's exports, by which COM loads, unloads and registers the control.

using kw::activex::ClassFactory;
namespace Module = kw::activex::Module;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID isProcessEnding) {
  if (reason == DLL_PROCESS_ATTACH) Module::SetInstance(instance);
  if (reason == DLL_PROCESS_DETACH && isProcessEnding == nullptr) kw::windows::OwnWindowClass::Unregister();
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, LPVOID* object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  return classId == CLSID_KwEditorLayers ? ClassFactory::Only().QueryInterface(iid, object) : CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
  return Module::IsUnused() && !kw::windows::AccessibleWindow::AreObjectsHeld() ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() { return kw::windows::GuardOr(E_OUTOFMEMORY, &kw::activex::Register); }

STDAPI DllUnregisterServer() { return kw::windows::GuardOr(E_OUTOFMEMORY, &kw::activex::Unregister); }
