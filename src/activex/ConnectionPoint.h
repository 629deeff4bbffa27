#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <utility>
#include <vector>

#include "activex/Lifetime.h"

namespace kw::activex {

// One connection point of a control. It lives as long as the control, which its references keep alive.
class ConnectionPoint final : public IConnectionPoint {
public:
  // A sink is asked for `iid`, and for IDispatch if it does not know it and `takesDispatch` says so.
  ConnectionPoint(Lifetime& owner, REFIID iid, bool takesDispatch)
      : life(owner), interfaceId(iid), takesDispatch(takesDispatch) {}

  // The sinks as they are now; a sink may come or go while the others are being called.
  std::vector<Microsoft::WRL::ComPtr<IUnknown>> Sinks() const;
  // Lets go of all sinks. One of them may cut its connection meanwhile.
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
