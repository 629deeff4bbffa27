#include "activex/ComBoundary.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <new>
#include <string_view>

#include "activex/KwEditor.h"
#include "components/base/RunTimeError.h"

namespace kw::activex {
namespace {

// Returns null if memory runs out. It does not throw, unlike Bstr, because an error is being handled already.
BSTR ToBstr(std::string_view text) noexcept {
  const auto length = static_cast<int>(text.size());
  const int count = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
  const BSTR converted = SysAllocStringLen(nullptr, static_cast<UINT>(count));
  if (converted != nullptr) MultiByteToWideChar(CP_UTF8, 0, text.data(), length, converted, count);
  return converted;
}

void SetErrorText(std::string_view description, std::string_view source) noexcept {
  Microsoft::WRL::ComPtr<ICreateErrorInfo> created;
  Microsoft::WRL::ComPtr<IErrorInfo> info;
  if (FAILED(CreateErrorInfo(&created)) || FAILED(created.As(&info))) return;
  const BSTR text = ToBstr(description);
  const BSTR origin = ToBstr(source);
  created->SetGUID(IID__KwEditorLayers);
  created->SetDescription(text);
  created->SetSource(origin);
  SysFreeString(text);
  SysFreeString(origin);
  SetErrorInfo(0, info.Get());
}

}  // namespace

HRESULT Report(const std::exception* error) noexcept {
  if (error == nullptr) return E_UNEXPECTED;
  if (dynamic_cast<const std::bad_alloc*>(error) != nullptr) return E_OUTOFMEMORY;
  const auto* const known = dynamic_cast<const RunTimeError*>(error);
  if (known == nullptr) {
    SetErrorText(error->what(), "KwEditor");
    return E_FAIL;
  }
  SetErrorText(known->Description(), known->Source());
  const std::int32_t number = known->Number();
  if (number < 0) return number;  // it is an HRESULT already
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<unsigned>(number) & 0xFFFFU);
}

}  // namespace kw::activex
