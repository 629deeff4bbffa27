#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace kw::activex {

// The description of the control's public members in the type library, loaded when it is first needed.
class MemberDescription {
public:
  // The description stays this object's own.
  HRESULT Get(ITypeInfo** description);
  // The number of a member; DISPID_UNKNOWN for a name that is not public.
  DISPID NumberOf(const std::string& name);

private:
  Microsoft::WRL::ComPtr<ITypeInfo> info;
};

}  // namespace kw::activex
