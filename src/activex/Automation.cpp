#include "activex/Automation.h"

#include <functional>
#include <variant>

#include "activex/ComBoundary.h"
#include "activex/Module.h"
#include "activex/Text.h"

namespace kw::activex {
namespace {

void ToCom(bool value, VARIANT_BOOL* out) { *out = value ? VARIANT_TRUE : VARIANT_FALSE; }
void ToCom(std::int16_t value, short* out) { *out = value; }
void ToCom(const std::string& value, BSTR* out) { *out = Bstr(value).Detach(); }

template <class Value>
Value FromCom(ComType<Value> value) {
  if constexpr (std::is_same_v<Value, bool>) {
    return value != VARIANT_FALSE;
  } else if constexpr (std::is_same_v<Value, std::string>) {
    return FromBstr(value);
  } else {
    return value;
  }
}

}  // namespace

template <class Value, class Read>
HRESULT Automation::Get(Value* value, Read read) {
  return AtComBoundary(core.Life(), [&] {
    if (value == nullptr) return E_POINTER;
    *value = {};
    core.Start();
    ToCom(std::invoke(read, core.Editor()), value);
    return S_OK;
  });
}

template <class Value>
HRESULT Automation::GetProperty(PropertyId property, ComType<Value>* value, Value (KwEditorLayers::*get)()) {
  return Get(value,
             [&](KwEditorLayers& editor) { return std::get<Value>(editor.Designed(property, (editor.*get)())); });
}

template <class Value>
HRESULT Automation::Let(ComType<Value> value, Value KwEditorLayers::*variable) {
  return AtComBoundary(core.Life(), [&] {
    core.Start();
    core.Editor().*variable = FromCom<Value>(value);
    return S_OK;
  });
}

template <class Value, class Procedure>
HRESULT Automation::LetProperty(PropertyId property, ComType<Value> value, Procedure let) {
  return AtComBoundary(core.Life(), [&] {
    core.Start();
    if (core.Editor().IsDesigned()) {
      core.Editor().Design(property, FromCom<Value>(value));
    } else {
      std::invoke(let, core.Editor(), FromCom<Value>(value));
    }
    return S_OK;
  });
}

STDMETHODIMP Automation::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP Automation::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) {
  return AtComBoundary(core.Life(), [&] {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    const HRESULT result = core.Members().Get(info);
    if (SUCCEEDED(result)) (*info)->AddRef();
    return result;
  });
}

STDMETHODIMP Automation::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID /*locale*/, DISPID* ids) {
  return AtComBoundary(core.Life(), [&] {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (names == nullptr || ids == nullptr) return E_POINTER;
    ITypeInfo* info = nullptr;
    const HRESULT result = core.Members().Get(&info);
    return FAILED(result) ? result : info->GetIDsOfNames(names, count, ids);
  });
}

STDMETHODIMP Automation::Invoke(DISPID id, REFIID iid, LCID /*locale*/, WORD flags, DISPPARAMS* parameters,
                                VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
  return AtComBoundary(core.Life(), [&] {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (parameters == nullptr) return E_POINTER;
    ITypeInfo* info = nullptr;
    const HRESULT loaded = core.Members().Get(&info);
    if (FAILED(loaded)) return loaded;
    SetErrorInfo(0, nullptr);  // an earlier call's error must not be taken for this call's
    return info->Invoke(static_cast<_KwEditorLayers*>(this), id, flags, parameters, result, exception, badArgument);
  });
}

STDMETHODIMP Automation::SavePage() {
  return AtComBoundary(core.Life(), [&] {
    core.NeedRunTime("SavePage");
    core.Editor().SavePage();
    return S_OK;
  });
}

STDMETHODIMP Automation::OpenFile(BSTR fPath) {
  return AtComBoundary(core.Life(), [&] {
    core.NeedRunTime("OpenFile");
    core.Editor().OpenFile(FromBstr(fPath));
    return S_OK;
  });
}

#define VARIABLE(name, number, type, help)                                                                       \
  STDMETHODIMP Automation::get_##name(ComType<types::type>* value) { return Get(value, &KwEditorLayers::name); } \
  STDMETHODIMP Automation::put_##name(ComType<types::type> value) {                                              \
    return Let<types::type>(value, &KwEditorLayers::name);                                                       \
  }
#define PROPERTY(name, number, type, help)                                                \
  STDMETHODIMP Automation::get_##name(ComType<types::type>* value) {                      \
    return GetProperty<types::type>(PropertyId::name, value, &KwEditorLayers::Get##name); \
  }                                                                                       \
  LET_PROPERTY(name, number, type, help)
#define LET_PROPERTY(name, number, type, help)                                            \
  STDMETHODIMP Automation::put_##name(ComType<types::type> value) {                       \
    return LetProperty<types::type>(PropertyId::name, value, &KwEditorLayers::Let##name); \
  }
#include "members/Members.def"

STDMETHODIMP Automation::GetClassInfo(ITypeInfo** info) {
  return AtComBoundary(core.Life(), [&] {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    return Module::LoadTypeInfo(CLSID_KwEditorLayers, info);
  });
}

STDMETHODIMP Automation::GetGUID(DWORD kind, GUID* guid) {
  if (guid == nullptr) return E_POINTER;
  const bool known = kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID;
  *guid = known ? DIID___KwEditorLayers : GUID_NULL;
  return known ? S_OK : E_INVALIDARG;
}

STDMETHODIMP Automation::InterfaceSupportsErrorInfo(REFIID iid) { return iid == IID__KwEditorLayers ? S_OK : S_FALSE; }

}  // namespace kw::activex
