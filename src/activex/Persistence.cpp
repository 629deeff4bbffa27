#include "activex/Persistence.h"

#include <utility>

#include "activex/ComBoundary.h"
#include "activex/HostBag.h"
#include "activex/KwEditor.h"
#include "activex/StreamBag.h"

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;

// The storage's stream that holds the properties.
constexpr wchar_t StreamName[] = L"Contents";

}  // namespace

void Persistence::Read(PropertyBag& bag) {
  core.Editor().UserControl_ReadProperties(bag);
  core.SetDirty(false);
}

HRESULT Persistence::LoadStream(IStream& stream) {
  core.Start();
  EncodedBag bag;
  const HRESULT result = LoadBag(bag, stream);
  if (SUCCEEDED(result)) Read(bag);
  return result;
}

HRESULT Persistence::Write(PropertyBag& bag) {
  core.Start();
  return core.Editor().UserControl_WriteProperties(bag) ? S_OK : E_OUTOFMEMORY;
}

HRESULT Persistence::SaveStream(IStream& stream) {
  EncodedBag bag;
  const HRESULT result = Write(bag);
  return SUCCEEDED(result) ? SaveBag(bag, stream) : result;
}

STDMETHODIMP Persistence::GetClassID(CLSID* classId) {
  if (classId == nullptr) return E_POINTER;
  *classId = CLSID_KwEditorLayers;
  return S_OK;
}

STDMETHODIMP Persistence::IsDirty() { return core.IsDirty() ? S_OK : S_FALSE; }

// A new control keeps the properties of its start-up.
STDMETHODIMP Persistence::InitNew() {
  return AtComBoundary(core.Life(), [&] {
    core.Start();
    core.SetDirty(false);
    return S_OK;
  });
}

STDMETHODIMP Persistence::Load(IStream* stream) {
  return AtComBoundary(core.Life(), [&] { return stream == nullptr ? E_POINTER : LoadStream(*stream); });
}

STDMETHODIMP Persistence::Save(IStream* stream, BOOL clearDirty) {
  return AtComBoundary(core.Life(), [&] {
    if (stream == nullptr) return E_POINTER;
    const HRESULT result = SaveStream(*stream);
    if (SUCCEEDED(result) && clearDirty != 0) core.SetDirty(false);
    return result;
  });
}

STDMETHODIMP Persistence::GetSizeMax(ULARGE_INTEGER* size) {
  return AtComBoundary(core.Life(), [&] {
    if (size == nullptr) return E_POINTER;
    EncodedBag bag;
    const HRESULT result = Write(bag);
    size->QuadPart = bag.Encode().size();
    return result;
  });
}

STDMETHODIMP Persistence::InitNew(IStorage* storage) {
  return AtComBoundary(core.Life(), [&] {
    if (storage == nullptr) return E_POINTER;
    if (storageState != StorageState::None) return CO_E_ALREADYINITIALIZED;
    const HRESULT result = InitNew();
    if (SUCCEEDED(result)) storageState = StorageState::Scribble;
    return result;
  });
}

STDMETHODIMP Persistence::Load(IStorage* storage) {
  return AtComBoundary(core.Life(), [&] {
    if (storage == nullptr) return E_POINTER;
    if (storageState != StorageState::None) return CO_E_ALREADYINITIALIZED;
    ComPtr<IStream> stream;
    HRESULT result = storage->OpenStream(StreamName, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream);
    if (SUCCEEDED(result)) result = LoadStream(*stream.Get());
    if (SUCCEEDED(result)) storageState = StorageState::Scribble;
    return result;
  });
}

STDMETHODIMP Persistence::Save(IStorage* storage, BOOL sameAsLoad) {
  return AtComBoundary(core.Life(), [&] {
    if (storage == nullptr) return E_POINTER;
    // No storage is held between calls, so the control can be saved to any storage.
    if (storageState == StorageState::NoScribble || storageState == StorageState::HandsOff) return E_UNEXPECTED;
    ComPtr<IStream> stream;
    HRESULT result = storage->CreateStream(StreamName, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, &stream);
    if (SUCCEEDED(result)) result = SaveStream(*stream.Get());
    if (FAILED(result)) return result;
    storageState = StorageState::NoScribble;
    saved = sameAsLoad != FALSE ? Saved::Own : Saved::Copy;
    return result;
  });
}

STDMETHODIMP Persistence::SaveCompleted(IStorage* storage) {
  return AtComBoundary(core.Life(), [&] {
    if (storageState == StorageState::HandsOff && storage == nullptr) return E_INVALIDARG;
    if (storageState != StorageState::NoScribble && storageState != StorageState::HandsOff) return E_UNEXPECTED;
    storageState = StorageState::Scribble;
    const Saved before = std::exchange(saved, Saved::None);
    if (before == Saved::None || (before == Saved::Copy && storage == nullptr)) return S_OK;
    core.SetDirty(false);
    if (IOleAdviseHolder* const advises = core.Advises()) advises->SendOnSave();
    return S_OK;
  });
}

STDMETHODIMP Persistence::HandsOffStorage() {
  if (storageState == StorageState::None) return E_UNEXPECTED;
  storageState = StorageState::HandsOff;
  return S_OK;
}

STDMETHODIMP Persistence::Load(IPropertyBag* bag, IErrorLog* errors) {
  return AtComBoundary(core.Life(), [&] {
    if (bag == nullptr) return E_POINTER;
    core.Start();
    HostBag hostBag(*bag, errors);
    Read(hostBag);
    return S_OK;
  });
}

STDMETHODIMP Persistence::Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) {
  return AtComBoundary(core.Life(), [&] {
    if (bag == nullptr) return E_POINTER;
    HostBag hostBag(*bag, saveAll != 0);
    const HRESULT written = Write(hostBag);
    const HRESULT result = SUCCEEDED(hostBag.Result()) ? written : hostBag.Result();
    if (SUCCEEDED(result) && clearDirty != 0) core.SetDirty(false);
    return result;
  });
}

}  // namespace kw::activex
