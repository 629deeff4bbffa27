#pragma once

#include <windows.h>

#include "activex/Automation.h"
#include "activex/Connections.h"
#include "activex/DataObject.h"
#include "activex/EditorCore.h"
#include "activex/InPlaceObject.h"
#include "activex/OleObject.h"
#include "activex/Persistence.h"
#include "activex/PropertyBrowsing.h"
#include "activex/ViewObject.h"

namespace kw::activex {

// The COM object: all interface families under one identity. It can be aggregated.
class EditorObject final : public IUnknown {
public:
  // `controlling` is the aggregate's unknown, or null. An aggregate may request IUnknown only.
  static HRESULT Create(IUnknown* controlling, REFIID iid, void** object);

  // The object's own, non-delegating IUnknown.
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

private:
  class Families;

  explicit EditorObject(IUnknown* controlling);
  ~EditorObject();

  ULONG references = 1;
  Families* families;
};

}  // namespace kw::activex
