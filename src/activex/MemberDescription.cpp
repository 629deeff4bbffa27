#include "activex/MemberDescription.h"

#include "activex/KwEditor.h"
#include "activex/Module.h"

namespace kw::activex {

HRESULT MemberDescription::Get(ITypeInfo** description) {
  if (info == nullptr) {
    const HRESULT result = Module::LoadTypeInfo(IID__KwEditorLayers, &info);
    if (FAILED(result)) return result;
  }
  *description = info.Get();
  return S_OK;
}

}  // namespace kw::activex
