#pragma once

#include <windows.h>

#include <comdef.h>

#include <string>
#include <vector>

namespace kw::host {

// A value as a user reads it; empty if it has no text. (_variant_t itself would make -1 and 0 of a Boolean.)
std::wstring TextOf(const VARIANT& value);

// The text of a BSTR, which the call takes over.
std::wstring Take(BSTR text);

// A property as the type library describes it.
struct Property {
  DISPID id = DISPID_UNKNOWN;
  std::wstring name;
  std::wstring help;
  VARTYPE type = VT_EMPTY;
  bool isReadable = false;
};

// Every property that can be set, in the order of the type library.
std::vector<Property> SettableProperties(ITypeInfo& info);

HRESULT GetProperty(IDispatch& object, DISPID id, _variant_t& value);

// Sets a property, converting the value to its type. In case of failure `error` says what is wrong.
HRESULT PutProperty(IDispatch& object, DISPID id, _variant_t& value, std::wstring& error);

// "PageChanged: PageNo = 2" for an event of `info` with these arguments.
std::wstring EventText(ITypeInfo& info, DISPID event, const DISPPARAMS& arguments);

// The system's text about a failure.
std::wstring ErrorText(HRESULT error);
// What the object itself says about the failure of its interface `iid`, by IErrorInfo, else the system. To be called
// before any other call of COM.
std::wstring ErrorText(HRESULT error, IUnknown& object, REFIID iid);

}  // namespace kw::host
