#pragma once

#include <windows.h>

#include <ocidl.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "activex/Module.h"
#include "windows/base/Guard.h"

namespace kw::activex {

// Copies an item for the caller of an enumerator, who then owns the copy or reference. False if memory runs out.
inline bool HandOut(const Microsoft::WRL::ComPtr<IConnectionPoint>& item, IConnectionPoint*& given) {
  item.CopyTo(&given);
  return true;
}
inline bool HandOut(const std::pair<Microsoft::WRL::ComPtr<IUnknown>, DWORD>& item, CONNECTDATA& given) {
  given = {nullptr, item.second};
  item.first.CopyTo(&given.pUnk);
  return true;
}
// It names no target device, so there is nothing to copy.
inline bool HandOut(const FORMATETC& item, FORMATETC& given) {
  given = item;
  return true;
}

// Implements the enumerator interface `Interface` over a snapshot of items.
template <class Interface, class Given, class Item>
class Enumerator final : public Interface {
public:
  static HRESULT Create(std::vector<Item> items, Interface** enumerator) {
    *enumerator = new (std::nothrow) Enumerator(std::move(items), 0);
    return *enumerator == nullptr ? E_OUTOFMEMORY : S_OK;
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = iid == IID_IUnknown || iid == __uuidof(Interface) ? static_cast<Interface*>(this) : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP Next(ULONG wanted, Given* given, ULONG* fetched) override {
    if (given == nullptr || (fetched == nullptr && wanted != 1)) return E_POINTER;
    ULONG count = 0;
    HRESULT shortage = S_FALSE;
    for (; count < wanted && position < items.size(); ++count, ++position) {
      if (HandOut(items[position], given[count])) continue;
      shortage = count == 0 ? E_OUTOFMEMORY : S_FALSE;  // the caller who asks for the rest gets the reason
      break;
    }
    if (fetched != nullptr) *fetched = count;
    return count == wanted ? S_OK : shortage;
  }
  STDMETHODIMP Skip(ULONG count) override {
    const std::size_t step = std::min<std::size_t>(count, items.size() - position);
    position += step;
    return step == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() override {
    position = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** clone) override {
    if (clone == nullptr) return E_POINTER;
    *clone = windows::GuardOr(static_cast<Interface*>(nullptr), [this] { return new Enumerator(items, position); });
    return *clone == nullptr ? E_OUTOFMEMORY : S_OK;
  }

private:
  Enumerator(std::vector<Item> newItems, std::size_t start) : items(std::move(newItems)), position(start) {
    Module::Lock();
  }
  ~Enumerator() { Module::Unlock(); }

  std::atomic<ULONG> references = 1;
  std::vector<Item> items;
  std::size_t position;
};

}  // namespace kw::activex
