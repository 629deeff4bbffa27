#include "activex/Automation.h"

#include <functional>

#include "activex/ComBoundary.h"
#include "activex/Module.h"
#include "activex/Text.h"

namespace kw::activex {
namespace {

// VARIANT_BOOL and SHORT are the same C++ type, so the editor's type decides which conversion is meant.
void ToCom(bool value, VARIANT_BOOL* out) { *out = value ? VARIANT_TRUE : VARIANT_FALSE; }
void ToCom(std::int16_t value, short* out) { *out = value; }
void ToCom(const std::string& value, BSTR* out) {
  *out = Bstr(value).Detach();
  if (*out == nullptr) throw std::bad_alloc();
}

}  // namespace

template <class Value, class Read>
HRESULT Automation::Get(Value* value, Read read) {
  return AtComBoundary(core.Life(), [&] {
    if (value == nullptr) return E_POINTER;
    *value = {};
    ToCom(std::invoke(read, core.Editor()), value);
    return S_OK;
  });
}

template <class Write>
HRESULT Automation::LetBoolean(VARIANT_BOOL value, Write write) {
  return AtComBoundary(core.Life(), [&] {
    std::invoke(write, core.Editor(), value != VARIANT_FALSE);
    return S_OK;
  });
}

template <class Write>
HRESULT Automation::LetText(BSTR value, Write write) {
  return AtComBoundary(core.Life(), [&] {
    std::invoke(write, core.Editor(), FromBstr(value));
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

STDMETHODIMP Automation::get_m_IsFileChanged(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::m_IsFileChanged);
}
STDMETHODIMP Automation::put_m_IsFileChanged(VARIANT_BOOL value) {
  return LetBoolean(value, [](KwEditorLayers& editor, bool changed) { editor.m_IsFileChanged = changed; });
}

STDMETHODIMP Automation::get_SaveFilePath(BSTR* value) { return Get(value, &KwEditorLayers::SaveFilePath); }
STDMETHODIMP Automation::put_SaveFilePath(BSTR value) {
  return LetText(value, [](KwEditorLayers& editor, std::string path) { editor.SaveFilePath = std::move(path); });
}

STDMETHODIMP Automation::SavePage() {
  return AtComBoundary(core.Life(), [&] {
    core.Editor().SavePage();
    return S_OK;
  });
}

STDMETHODIMP Automation::OpenFile(BSTR fPath) { return LetText(fPath, &KwEditorLayers::OpenFile); }

STDMETHODIMP Automation::get_IsToShowBackImage(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::GetIsToShowBackImage);
}
STDMETHODIMP Automation::put_IsToShowBackImage(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsToShowBackImage);
}

STDMETHODIMP Automation::get_IsFileChanged(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::GetIsFileChanged);
}
STDMETHODIMP Automation::put_IsFileChanged(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsFileChanged);
}

STDMETHODIMP Automation::get_IsToLightenBackImage(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::GetIsToLightenBackImage);
}
STDMETHODIMP Automation::put_IsToLightenBackImage(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsToLightenBackImage);
}

STDMETHODIMP Automation::get_IsToolboxVisible(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::GetIsToolboxVisible);
}
STDMETHODIMP Automation::put_IsToolboxVisible(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsToolboxVisible);
}

STDMETHODIMP Automation::put_SignatureFilePath(BSTR value) {
  return LetText(value, &KwEditorLayers::LetSignatureFilePath);
}

STDMETHODIMP Automation::put_BGImage(BSTR value) { return LetText(value, &KwEditorLayers::LetBGImage); }

STDMETHODIMP Automation::get_Enabled(VARIANT_BOOL* value) { return Get(value, &KwEditorLayers::GetEnabled); }
STDMETHODIMP Automation::put_Enabled(VARIANT_BOOL value) { return LetBoolean(value, &KwEditorLayers::LetEnabled); }

STDMETHODIMP Automation::get_IsOpenButtonVisible(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::GetIsOpenButtonVisible);
}
STDMETHODIMP Automation::put_IsOpenButtonVisible(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsOpenButtonVisible);
}

STDMETHODIMP Automation::get_IsToSaveAsMultiPageFile(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::GetIsToSaveAsMultiPageFile);
}
STDMETHODIMP Automation::put_IsToSaveAsMultiPageFile(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsToSaveAsMultiPageFile);
}

STDMETHODIMP Automation::get_IsToAllowChooseColor(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::GetIsToAllowChooseColor);
}
STDMETHODIMP Automation::put_IsToAllowChooseColor(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsToAllowChooseColor);
}

STDMETHODIMP Automation::get_MaxUndoLevels(short* value) { return Get(value, &KwEditorLayers::GetMaxUndoLevels); }
STDMETHODIMP Automation::put_MaxUndoLevels(short value) {
  return AtComBoundary(core.Life(), [&] {
    core.Editor().LetMaxUndoLevels(value);
    return S_OK;
  });
}

STDMETHODIMP Automation::get_IsEditable(VARIANT_BOOL* value) { return Get(value, &KwEditorLayers::GetIsEditable); }
STDMETHODIMP Automation::put_IsEditable(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsEditable);
}

STDMETHODIMP Automation::get_IsSaveButtonEnabled(VARIANT_BOOL* value) {
  return Get(value, &KwEditorLayers::GetIsSaveButtonEnabled);
}
STDMETHODIMP Automation::put_IsSaveButtonEnabled(VARIANT_BOOL value) {
  return LetBoolean(value, &KwEditorLayers::LetIsSaveButtonEnabled);
}

STDMETHODIMP Automation::get_AppDir(BSTR* value) { return Get(value, &KwEditorLayers::GetAppDir); }
STDMETHODIMP Automation::put_AppDir(BSTR value) { return LetText(value, &KwEditorLayers::LetAppDir); }

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
