#include "activex/MemberDescription.h"

#include "activex/KwEditor.h"
#include "activex/Module.h"
#include "components/base/Unicode.h"

namespace kw::activex {

HRESULT MemberDescription::Get(ITypeInfo** description) {
  if (info == nullptr) {
    const HRESULT result = Module::LoadTypeInfo(IID__KwEditorLayers, &info);
    if (FAILED(result)) return result;
  }
  *description = info.Get();
  return S_OK;
}

DISPID MemberDescription::NumberOf(const std::string& name) {
  ITypeInfo* description = nullptr;
  if (FAILED(Get(&description))) return DISPID_UNKNOWN;
  std::u16string wide = Utf16FromUtf8(name);
  auto* text = reinterpret_cast<LPOLESTR>(wide.data());
  MEMBERID number = DISPID_UNKNOWN;
  return SUCCEEDED(description->GetIDsOfNames(&text, 1, &number)) ? number : DISPID_UNKNOWN;
}

}  // namespace kw::activex
