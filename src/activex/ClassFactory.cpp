#include "activex/ClassFactory.h"

#include "activex/ComBoundary.h"
#include "activex/EditorObject.h"
#include "activex/KwEditor.h"
#include "activex/Module.h"
#include "activex/PropertyPage.h"

namespace kw::activex {

ClassFactory* ClassFactory::Find(REFCLSID classId) {
  static ClassFactory editor(&EditorObject::Create);
  static ClassFactory page(&PropertyPage::Create);
  if (classId == CLSID_KwEditorLayers) return &editor;
  return classId == CLSID_KwEditorPage ? &page : nullptr;
}

STDMETHODIMP ClassFactory::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = iid == IID_IUnknown || iid == IID_IClassFactory ? static_cast<IClassFactory*>(this) : nullptr;
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

// The factory is never freed; its reference count only keeps the library loaded.
STDMETHODIMP_(ULONG) ClassFactory::AddRef() {
  Module::Lock();
  return 2;
}

STDMETHODIMP_(ULONG) ClassFactory::Release() {
  Module::Unlock();
  return 1;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* controlling, REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  Lifetime life(*this);
  return AtComBoundary(life, [&] { return create(controlling, iid, object); });
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
  if (lock != 0) {
    Module::Lock();
  } else {
    Module::Unlock();
  }
  return S_OK;
}

}  // namespace kw::activex
