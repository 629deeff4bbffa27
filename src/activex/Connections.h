#pragma once

#include <windows.h>

#include <ocidl.h>

#include "activex/EditorCore.h"

namespace kw::activex {

// The control's two connection points: its events (the default) and its property notifications.
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
