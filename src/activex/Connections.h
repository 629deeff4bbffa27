#pragma once

#include <windows.h>

#include <ocidl.h>

#include "activex/EditorCore.h"

namespace kw::activex {

// Where a host connects its event sinks: the events, which are the default, and the property notifications.
class Connections : public IConnectionPointContainer {
public:
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** enumerator) override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

protected:
  explicit Connections(EditorCore& shared) : core(shared) {}
  ~Connections() = default;

private:
  EditorCore& core;
};

}  // namespace kw::activex
