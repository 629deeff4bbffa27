#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

namespace kw::activex {

// The description of the control's public members in the type library, loaded when it is first needed.
class MemberDescription {
public:
  // The description stays this object's own.
  HRESULT Get(ITypeInfo** description);

private:
  Microsoft::WRL::ComPtr<ITypeInfo> info;
};

}  // namespace kw::activex
