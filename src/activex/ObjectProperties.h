#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <optional>
#include <string>
#include <vector>

#include "members/Members.h"
#include "windows/properties/PropertyEntries.h"

namespace kw::activex {

// The properties of the controls that a property page is open for, by their dispatch interface. A control may be gone
// while another program still holds it; then its calls fail.
class ObjectProperties {
public:
  // E_NOINTERFACE if one of the objects is no such control; the former ones stay then.
  HRESULT Set(ULONG count, IUnknown** unknowns);
  void Clear() { objects.clear(); }
  bool AreThere() const { return !objects.empty(); }

  // The value that all of them have; empty if they differ or one cannot tell.
  std::optional<windows::PropertyValue> Get(PropertyId property) const;
  // Assigns it to each until one fails; `reason` tells why.
  HRESULT Put(PropertyId property, const windows::PropertyValue& value, std::string& reason) const;

private:
  using Objects = std::vector<Microsoft::WRL::ComPtr<IDispatch>>;

  Objects objects;
};

}  // namespace kw::activex
