#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <vector>

namespace kw::host {

// A VARIANT that frees what it holds.
struct Variant : VARIANT {
  Variant() { VariantInit(this); }
  explicit Variant(bool value);
  explicit Variant(const std::wstring& value);
  ~Variant() { VariantClear(this); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  // As a user reads it; empty when it has no text.
  std::wstring Text();
};

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

HRESULT GetProperty(IDispatch& object, DISPID id, Variant& value);

// Sets a property, converting the value to its type. In case of failure `error` says what is wrong.
HRESULT PutProperty(IDispatch& object, DISPID id, Variant& value, std::wstring& error);

// "PageChanged: PageNo = 2" for an event of `info` with these arguments.
std::wstring EventText(ITypeInfo& info, DISPID event, const DISPPARAMS& arguments);

// What the system says about a failure.
std::wstring ErrorText(HRESULT error);

}  // namespace kw::host
