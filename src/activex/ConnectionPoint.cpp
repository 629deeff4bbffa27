#include "activex/ConnectionPoint.h"

#include <olectl.h>

#include <algorithm>

#include "activex/ComBoundary.h"
#include "activex/Enumerator.h"

namespace kw::activex {

using Microsoft::WRL::ComPtr;

std::vector<ComPtr<IUnknown>> ConnectionPoint::Sinks() const {
  std::vector<ComPtr<IUnknown>> sinks;
  for (const auto& connection : connections) sinks.push_back(connection.first);
  return sinks;
}

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = iid == IID_IUnknown || iid == IID_IConnectionPoint ? static_cast<IConnectionPoint*>(this) : nullptr;
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* iid) {
  if (iid == nullptr) return E_POINTER;
  *iid = interfaceId;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (container == nullptr) return E_POINTER;
  return life.Unknown().QueryInterface(IID_PPV_ARGS(container));
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  return AtComBoundary(life, [&] {
    if (cookie == nullptr) return E_POINTER;
    *cookie = 0;
    if (sink == nullptr) return E_POINTER;
    ComPtr<IUnknown> asked;
    if (FAILED(sink->QueryInterface(interfaceId, reinterpret_cast<void**>(asked.GetAddressOf()))) &&
        (!takesDispatch ||
         FAILED(sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(asked.ReleaseAndGetAddressOf()))))) {
      return CONNECT_E_CANNOTCONNECT;
    }
    connections.emplace_back(std::move(asked), ++lastCookie);
    *cookie = lastCookie;
    return S_OK;
  });
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) {
  return AtComBoundary(life, [&] {
    const auto found = std::find_if(connections.begin(), connections.end(),
                                    [&](const auto& connection) { return connection.second == cookie; });
    if (found == connections.end()) return CONNECT_E_NOCONNECTION;
    const ComPtr<IUnknown> sink =
        std::move(found->first);  // released only after the list is consistent again: a release may call back
    connections.erase(found);
    return S_OK;
  });
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** enumerator) {
  return AtComBoundary(life, [&] {
    if (enumerator == nullptr) return E_POINTER;
    return Enumerator<IEnumConnections, CONNECTDATA, std::pair<ComPtr<IUnknown>, DWORD>>::Create(connections,
                                                                                                 enumerator);
  });
}

}  // namespace kw::activex
