#include "Automation.h"

#include <wrl/client.h>

#include <algorithm>
#include <array>

namespace kw::host {
namespace {

Property& Entry(std::vector<Property>& properties, DISPID id) {
  const auto known = std::find_if(properties.begin(), properties.end(), [id](const Property& p) { return p.id == id; });
  if (known != properties.end()) return *known;
  properties.emplace_back().id = id;
  return properties.back();
}

}  // namespace

std::wstring Take(BSTR text) {
  const _bstr_t taken(text, false);
  return {text, taken.length()};
}

std::wstring TextOf(const VARIANT& value) {
  _variant_t text;
  if (FAILED(VariantChangeType(&text, const_cast<VARIANT*>(&value), VARIANT_ALPHABOOL, VT_BSTR))) return {};
  return {V_BSTR(&text), SysStringLen(V_BSTR(&text))};
}

std::vector<Property> SettableProperties(ITypeInfo& info) {
  std::vector<Property> properties;
  FUNCDESC* function = nullptr;
  for (UINT index = 0; SUCCEEDED(info.GetFuncDesc(index, &function)); ++index) {
    if (function->invkind == INVOKE_PROPERTYGET) Entry(properties, function->memid).isReadable = true;
    if (function->invkind == INVOKE_PROPERTYPUT) {
      Property& property = Entry(properties, function->memid);
      property.type = function->lprgelemdescParam[0].tdesc.vt;
      BSTR name = nullptr;
      BSTR help = nullptr;
      info.GetDocumentation(function->memid, &name, &help, nullptr, nullptr);
      property.name = Take(name);
      property.help = Take(help);
    }
    info.ReleaseFuncDesc(function);
  }
  std::erase_if(properties, [](const Property& property) { return property.type == VT_EMPTY; });
  return properties;
}

HRESULT GetProperty(IDispatch& object, DISPID id, _variant_t& value) {
  DISPPARAMS none = {};
  return object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr);
}

HRESULT PutProperty(IDispatch& object, DISPID id, _variant_t& value, std::wstring& error) {
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS arguments = {&value, &put, 1, 1};
  EXCEPINFO exception = {};
  const HRESULT result =
      object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &arguments, nullptr, &exception, nullptr);
  if (SUCCEEDED(result)) return result;
  if (result == DISP_E_EXCEPTION && exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  error = Take(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  if (error.empty()) error = ErrorText(result);
  return result;
}

std::wstring EventText(ITypeInfo& info, DISPID event, const DISPPARAMS& arguments) {
  std::array<BSTR, 16> names = {};  // the event's own name, then those of its arguments
  UINT count = 0;
  info.GetNames(event, names.data(), static_cast<UINT>(names.size()), &count);
  std::wstring text;
  for (UINT index = 0; index < count; ++index) {
    const std::wstring name = Take(names[index]);
    if (index == 0) {
      text = name;
    } else if (index <= arguments.cArgs) {
      _variant_t value;
      VariantCopyInd(&value, &arguments.rgvarg[arguments.cArgs - index]);  // the last argument comes first
      text += (index == 1 ? L": " : L", ") + name + L" = " + TextOf(value);
    }
  }
  return text;
}

std::wstring ErrorText(HRESULT error) {
  wchar_t* message = nullptr;
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                     nullptr, static_cast<DWORD>(error), 0, reinterpret_cast<wchar_t*>(&message), 0, nullptr);
  std::wstring text(message, length);
  LocalFree(message);
  text.erase(text.find_last_not_of(L"\r\n ") + 1);
  return text.empty() ? L"Error " + std::to_wstring(error) : text;
}

std::wstring ErrorText(HRESULT error, IUnknown& object, REFIID iid) {
  Microsoft::WRL::ComPtr<ISupportErrorInfo> support;
  IErrorInfo* info = nullptr;
  if (FAILED(object.QueryInterface(IID_PPV_ARGS(&support))) || support->InterfaceSupportsErrorInfo(iid) != S_OK ||
      GetErrorInfo(0, &info) != S_OK) {
    return ErrorText(error);
  }
  const _bstr_t described = _com_error(error, info).Description();  // it takes `info` over
  return described.length() == 0 ? ErrorText(error) : std::wstring(described);
}

}  // namespace kw::host
