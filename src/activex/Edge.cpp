#include "activex/Edge.h"

#include <oleauto.h>
#include <wrl/client.h>

#include "activex/KwEditor.h"
#include "activex/Module.h"
#include "activex/Text.h"

namespace kw::activex {
namespace {

void SetErrorText(const std::string& description, const std::string& source) noexcept {
  Microsoft::WRL::ComPtr<ICreateErrorInfo> created;
  Microsoft::WRL::ComPtr<IErrorInfo> info;
  if (FAILED(CreateErrorInfo(&created)) || FAILED(created.As(&info))) return;
  const Bstr text(description);
  const Bstr origin(source);
  created->SetGUID(IID__KwEditorLayers);
  created->SetDescription(text.Get());
  created->SetSource(origin.Get());
  SetErrorInfo(0, info.Get());
}

}  // namespace

HRESULT Report(const RunTimeError& error) noexcept {
  SetErrorText(error.Description(), error.Source());
  const std::int32_t number = error.Number();
  if (number < 0) return number;  // an automation error keeps its own code
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<unsigned>(number) & 0xFFFFU);
}

HRESULT Report(const std::exception& error) noexcept {
  SetErrorText(error.what(), "KwEditor");
  return E_FAIL;
}

}  // namespace kw::activex
