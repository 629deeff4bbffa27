#pragma once

#include <windows.h>

#include <ocidl.h>

#include "activex/EditorCore.h"
#include "control/PropertyBag.h"

namespace kw::activex {

// How a container persists the control: in a stream, a storage or a property bag. All three hold the same properties,
// which the control itself reads and writes.
class Persistence : public IPersistStreamInit, public IPersistStorage, public IPersistPropertyBag {
public:
  STDMETHODIMP GetClassID(CLSID* classId) override;
  STDMETHODIMP IsDirty() override;

  STDMETHODIMP InitNew() override;
  STDMETHODIMP Load(IStream* stream) override;
  STDMETHODIMP Save(IStream* stream, BOOL clearDirty) override;
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;

  STDMETHODIMP InitNew(IStorage* storage) override;
  STDMETHODIMP Load(IStorage* storage) override;
  STDMETHODIMP Save(IStorage* storage, BOOL sameAsLoad) override;
  STDMETHODIMP SaveCompleted(IStorage* storage) override;
  STDMETHODIMP HandsOffStorage() override;

  STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* errors) override;
  STDMETHODIMP Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) override;

protected:
  explicit Persistence(EditorCore& shared) : core(shared) {}
  ~Persistence() = default;

private:
  // The use of its storage that the container allows the control between calls.
  enum class StorageState : unsigned char { None, Scribble, NoScribble, HandsOff };
  // What was saved since SaveCompleted: the control to its own storage, or to another one. That becomes its own if
  // SaveCompleted brings one; else it is a copy, and the control has changes as before.
  enum class Saved : unsigned char { None, Own, Copy };

  void Read(PropertyBag& bag);
  HRESULT Write(PropertyBag& bag);
  HRESULT LoadStream(IStream& stream);
  HRESULT SaveStream(IStream& stream);

  EditorCore& core;
  StorageState storageState = StorageState::None;
  Saved saved = Saved::None;
};

}  // namespace kw::activex
