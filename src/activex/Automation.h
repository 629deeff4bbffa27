#pragma once

#include <windows.h>

#include <ocidl.h>

#include <cstdint>
#include <string>
#include <type_traits>

#include "activex/EditorCore.h"
#include "activex/KwEditor.h"
#include "members/Members.h"

namespace kw::activex {

// The type with which COM passes a value of the editor. Its Boolean and its 16-bit integer are one C++ type.
template <class Value>
struct ComTypeOf {};
template <>
struct ComTypeOf<bool> {
  using Type = VARIANT_BOOL;
};
template <>
struct ComTypeOf<std::int16_t> {
  using Type = short;
};
template <>
struct ComTypeOf<std::string> {
  using Type = BSTR;
};
template <class Value>
using ComType = typename ComTypeOf<Value>::Type;

// The control's methods and properties, and its type information.
class Automation : public _KwEditorLayers, public IProvideClassInfo2, public ISupportErrorInfo {
public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* badArgument) override;

  STDMETHODIMP SavePage() override;
  STDMETHODIMP OpenFile(BSTR fPath) override;
#define VARIABLE(name, number, type, help) PROPERTY(name, number, type, help)
#define PROPERTY(name, number, type, help)                       \
  STDMETHODIMP get_##name(ComType<types::type>* value) override; \
  LET_PROPERTY(name, number, type, help)
#define LET_PROPERTY(name, number, type, help) STDMETHODIMP put_##name(ComType<types::type> value) override;
#include "members/Members.def"

  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;

protected:
  explicit Automation(EditorCore& shared) : core(shared) {}
  ~Automation() = default;

private:
  // Reads or assigns a variable of the editor and converts between COM's types and its own.
  template <class Value, class Read>
  HRESULT Get(Value* value, Read read);
  template <class Value>
  HRESULT Let(ComType<Value> value, Value KwEditorLayers::*variable);
  // The same by a property procedure. In design mode the value is kept instead.
  template <class Value>
  HRESULT GetProperty(PropertyId property, ComType<Value>* value, Value (KwEditorLayers::*get)());
  template <class Value, class Procedure>
  HRESULT LetProperty(PropertyId property, ComType<Value> value, Procedure let);

  EditorCore& core;
};

}  // namespace kw::activex
