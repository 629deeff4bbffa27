#include "activex/Connections.h"

#include <olectl.h>

#include "activex/ComBoundary.h"
#include "activex/Enumerator.h"

namespace kw::activex {

using Microsoft::WRL::ComPtr;

STDMETHODIMP Connections::EnumConnectionPoints(IEnumConnectionPoints** enumerator) {
  return AtComBoundary(core.Life(), [&] {
    if (enumerator == nullptr) return E_POINTER;
    return Enumerator<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>>::Create(
        {&core.Events().EventPoint(), &core.Events().PropertyPoint()}, enumerator);
  });
}

STDMETHODIMP Connections::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  return AtComBoundary(core.Life(), [&] {
    if (point == nullptr) return E_POINTER;
    *point = nullptr;
    for (ConnectionPoint* candidate : {&core.Events().EventPoint(), &core.Events().PropertyPoint()}) {
      IID known = {};
      candidate->GetConnectionInterface(&known);
      if (known != iid) continue;
      candidate->AddRef();
      *point = candidate;
      return S_OK;
    }
    return CONNECT_E_NOCONNECTION;
  });
}

}  // namespace kw::activex
