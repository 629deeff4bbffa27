#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <utility>
#include <vector>

#include "activex/Lifetime.h"

namespace kw::activex {

// A connection point of a control. It is part of the control: a reference to it keeps the control alive.
class ConnectionPoint final : public IConnectionPoint {
public:
  // A sink is queried for `iid`; if it lacks that and `takesDispatch` is set, for IDispatch.
  ConnectionPoint(Lifetime& owner, REFIID iid, bool takesDispatch)
      : life(owner), interfaceId(iid), takesDispatch(takesDispatch) {}

  // A copy of the list of sinks, because a sink may come or go while the others are called.
  std::vector<Microsoft::WRL::ComPtr<IUnknown>> Sinks() const;
  // Releases all sinks. A sink may disconnect itself during the call.
  void Clear() { std::exchange(connections, {}); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return life.Unknown().AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return life.Unknown().Release(); }

  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** enumerator) override;

private:
  Lifetime& life;
  IID interfaceId;
  bool takesDispatch;
  DWORD lastCookie = 0;
  std::vector<std::pair<Microsoft::WRL::ComPtr<IUnknown>, DWORD>> connections;
};

}  // namespace kw::activex
