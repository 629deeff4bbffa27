#include "activex/EditorObject.h"

#include <memory>

#include "activex/ComBoundary.h"
#include "activex/Module.h"

namespace kw::activex {

// The interfaces that clients get: AddRef, Release and QueryInterface go to the controlling unknown.
class EditorObject::Families final : public EditorCore,
                                     public Automation,
                                     public Connections,
                                     public OleObject,
                                     public InPlaceObject,
                                     public ViewObject,
                                     public Persistence,
                                     public DataObject,
                                     public PropertyBrowsing {
public:
  explicit Families(IUnknown& controlling)
      : EditorCore(controlling),
        Automation(Core()),
        Connections(Core()),
        OleObject(Core()),
        InPlaceObject(Core()),
        ViewObject(Core()),
        Persistence(Core()),
        DataObject(Core()),
        PropertyBrowsing(Core()) {}

  // Looks up an interface in the control's one table; null if the control does not have it.
  IUnknown* Find(REFIID iid);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    return Life().Unknown().QueryInterface(iid, object);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return Life().Unknown().AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return Life().Unknown().Release(); }

private:
  EditorCore& Core() { return *this; }
};

namespace {

struct InterfaceRow {
  const IID* iid;
  IUnknown* (*find)(void* families);
};

template <class Families, class Family, class Interface = Family>
IUnknown* As(void* families) {
  return static_cast<Interface*>(static_cast<Family*>(static_cast<Families*>(families)));
}

}  // namespace

IUnknown* EditorObject::Families::Find(REFIID iid) {
  using F = Families;
  static const InterfaceRow rows[] = {
      {&IID__KwEditorLayers, &As<F, Automation, _KwEditorLayers>},
      {&IID_IDispatch, &As<F, Automation, _KwEditorLayers>},
      {&IID_IProvideClassInfo, &As<F, Automation, IProvideClassInfo2>},
      {&IID_IProvideClassInfo2, &As<F, Automation, IProvideClassInfo2>},
      {&IID_ISupportErrorInfo, &As<F, Automation, ISupportErrorInfo>},
      {&IID_IConnectionPointContainer, &As<F, Connections>},
      {&IID_IOleObject, &As<F, OleObject, IOleObject>},
      {&IID_IOleControl, &As<F, OleObject, IOleControl>},
      {&IID_IOleWindow, &As<F, InPlaceObject, IOleInPlaceObject>},
      {&IID_IOleInPlaceObject, &As<F, InPlaceObject, IOleInPlaceObject>},
      {&IID_IOleInPlaceActiveObject, &As<F, InPlaceObject, IOleInPlaceActiveObject>},
      {&IID_IViewObject, &As<F, ViewObject>},
      {&IID_IViewObject2, &As<F, ViewObject>},
      {&IID_IViewObjectEx, &As<F, ViewObject>},
      {&IID_IDataObject, &As<F, DataObject>},
      {&IID_IPersist, &As<F, Persistence, IPersistStreamInit>},
      {&IID_IPersistStreamInit, &As<F, Persistence, IPersistStreamInit>},
      {&IID_IPersistStorage, &As<F, Persistence, IPersistStorage>},
      {&IID_IPersistPropertyBag, &As<F, Persistence, IPersistPropertyBag>},
      {&IID_ISpecifyPropertyPages, &As<F, PropertyBrowsing, ISpecifyPropertyPages>},
      {&IID_IPerPropertyBrowsing, &As<F, PropertyBrowsing, IPerPropertyBrowsing>},
      {&IID_ICategorizeProperties, &As<F, PropertyBrowsing, ICategorizeProperties>},
  };
  for (const InterfaceRow& row : rows) {
    if (*row.iid == iid) return row.find(this);
  }
  return nullptr;
}

EditorObject::EditorObject(IUnknown* controlling)
    : families(new Families(controlling == nullptr ? *this : *controlling)) {
  if (controlling == nullptr) families->Life().CountIsOwn();
  Module::Lock();
}

EditorObject::~EditorObject() {
  delete families;
  Module::Unlock();
}

HRESULT EditorObject::Create(IUnknown* controlling, REFIID iid, void** object) {
  if (controlling != nullptr && iid != IID_IUnknown) return CLASS_E_NOAGGREGATION;
  auto* const created = new EditorObject(controlling);
  const HRESULT result = created->QueryInterface(iid, object);
  created->Release();
  return result;
}

STDMETHODIMP EditorObject::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  IUnknown* const found = iid == IID_IUnknown ? this : families->Find(iid);
  *object = found;
  if (found == nullptr) return E_NOINTERFACE;
  found->AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) EditorObject::AddRef() { return ++references; }

STDMETHODIMP_(ULONG) EditorObject::Release() {
  const ULONG left = --references;
  if (left > 0) return left;
  references = 1;  // AddRef and Release during the shut-down must not destroy the control a second time
  families->Life().Detach(*this);
  delete this;
  return 0;
}

}  // namespace kw::activex
