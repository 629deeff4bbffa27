#include "windows/views/AccessibleObject.h"

#include <algorithm>

#include "windows/views/AccessibleBoundary.h"

namespace kw::windows {
namespace {

using Microsoft::WRL::ComPtr;

// What a client cannot ask of the window or part.
constexpr HRESULT NotSupported = DISP_E_MEMBERNOTFOUND;

// The system's type library of IAccessible. Two of the compiler's libraries define constants for it and for the
// interface, and cannot be linked together if these are used.
constexpr GUID TypesOfAccessibility = {0x1EA4DBF0, 0x3C3B, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

HRESULT LoadType(ITypeInfo** info) {
  ComPtr<ITypeLib> library;
  const HRESULT result = LoadRegTypeLib(TypesOfAccessibility, 1, 1, LOCALE_NEUTRAL, &library);
  return FAILED(result) ? result : library->GetTypeInfoOfGuid(__uuidof(IAccessible), info);
}

}  // namespace

std::atomic<long> AccessibleObject::living = 0;

AccessibleObject* AccessibleObject::Make(HWND window, AccessibleSource& source) {
  ComPtr<IAccessible> standard;
  if (FAILED(CreateStdAccessibleObject(window, OBJID_CLIENT, IID_PPV_ARGS(&standard)))) return nullptr;
  auto* const made = new AccessibleObject(window, source);
  made->standard = standard;
  standard.As(&made->childWindows);
  return made;
}

STDMETHODIMP AccessibleObject::QueryInterface(REFIID iid, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(IAccessible))
    *result = static_cast<IAccessible*>(this);
  else if (iid == IID_IEnumVARIANT)
    *result = static_cast<IEnumVARIANT*>(this);
  else
    return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) AccessibleObject::AddRef() { return ++references; }

STDMETHODIMP_(ULONG) AccessibleObject::Release() {
  const ULONG left = --references;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP AccessibleObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP AccessibleObject::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return AtClient([&] { return index == 0 ? LoadType(info) : DISP_E_BADINDEX; });
}

STDMETHODIMP AccessibleObject::GetIDsOfNames(REFIID /*iid*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                             DISPID* ids) {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  return AtClient([&] {
    ComPtr<ITypeInfo> info;
    const HRESULT result = LoadType(&info);
    return FAILED(result) ? result : info->GetIDsOfNames(names, count, ids);
  });
}

STDMETHODIMP AccessibleObject::Invoke(DISPID member, REFIID /*iid*/, LCID /*locale*/, WORD flags, DISPPARAMS* arguments,
                                      VARIANT* result, EXCEPINFO* error, UINT* wrong) {
  if (arguments == nullptr) return E_POINTER;
  return AtClient([&] {
    ComPtr<ITypeInfo> info;
    const HRESULT loaded = LoadType(&info);
    if (FAILED(loaded)) return loaded;
    return info->Invoke(static_cast<IAccessible*>(this), member, flags, arguments, result, error, wrong);
  });
}

HRESULT AccessibleObject::Find(const VARIANT& child, AccessibleAnswer& found) const {
  if (child.vt != VT_I4) return E_INVALIDARG;
  if (child.lVal == CHILDID_SELF) {
    found = source->Whole();
    return S_OK;
  }
  if (source->HasSystemsParts()) return S_FALSE;
  for (AccessibleAnswer& part : source->Parts()) {
    if (part.id != child.lVal) continue;
    found = std::move(part);
    return S_OK;
  }
  return E_INVALIDARG;
}

HRESULT AccessibleObject::Text(const VARIANT& child, std::wstring AccessibleAnswer::*member,
                               HRESULT (STDMETHODCALLTYPE IAccessible::*systems)(VARIANT, BSTR*), BSTR* text) {
  AccessibleAnswer asked;
  const HRESULT found = Find(child, asked);
  if (FAILED(found)) return found;
  if (found == S_OK && !(asked.*member).empty()) {
    *text = SysAllocStringLen((asked.*member).c_str(), static_cast<UINT>((asked.*member).size()));
    return *text == nullptr ? E_OUTOFMEMORY : S_OK;
  }
  if (asked.id != CHILDID_SELF) return S_FALSE;
  return (standard.Get()->*systems)(child, text);
}

HRESULT AccessibleObject::SystemsText(const VARIANT& child,
                                      HRESULT (STDMETHODCALLTYPE IAccessible::*systems)(VARIANT, BSTR*), BSTR* text) {
  AccessibleAnswer asked;
  const HRESULT found = Find(child, asked);
  if (FAILED(found)) return found;
  return asked.id == CHILDID_SELF ? (standard.Get()->*systems)(child, text) : S_FALSE;
}

HRESULT AccessibleObject::Number(const VARIANT& child, LONG AccessibleAnswer::*member, bool isAdded,
                                 HRESULT (STDMETHODCALLTYPE IAccessible::*systems)(VARIANT, VARIANT*),
                                 VARIANT* number) {
  AccessibleAnswer asked;
  const HRESULT found = Find(child, asked);
  if (FAILED(found)) return found;
  const bool isPart = asked.id != CHILDID_SELF;
  if (!isPart && (isAdded || asked.*member == 0)) {
    const HRESULT result = (standard.Get()->*systems)(child, number);
    if (FAILED(result)) return result;
  }
  if (isPart || asked.*member != 0) {
    const LONG before = isAdded && number->vt == VT_I4 ? number->lVal : 0;
    number->vt = VT_I4;
    number->lVal = static_cast<LONG>(static_cast<ULONG>(before) | static_cast<ULONG>(asked.*member));
  }
  return S_OK;
}

STDMETHODIMP AccessibleObject::get_accName(VARIANT child, BSTR* name) {
  if (name == nullptr) return E_POINTER;
  *name = nullptr;
  return AtClient([&] { return Text(child, &AccessibleAnswer::name, &IAccessible::get_accName, name); });
}

STDMETHODIMP AccessibleObject::get_accValue(VARIANT child, BSTR* value) {
  if (value == nullptr) return E_POINTER;
  *value = nullptr;
  return AtClient([&] { return Text(child, &AccessibleAnswer::value, &IAccessible::get_accValue, value); });
}

STDMETHODIMP AccessibleObject::get_accDefaultAction(VARIANT child, BSTR* action) {
  if (action == nullptr) return E_POINTER;
  *action = nullptr;
  return AtClient([&] { return Text(child, &AccessibleAnswer::action, &IAccessible::get_accDefaultAction, action); });
}

STDMETHODIMP AccessibleObject::get_accDescription(VARIANT child, BSTR* description) {
  if (description == nullptr) return E_POINTER;
  *description = nullptr;
  return AtClient([&] { return SystemsText(child, &IAccessible::get_accDescription, description); });
}

STDMETHODIMP AccessibleObject::get_accHelp(VARIANT child, BSTR* help) {
  if (help == nullptr) return E_POINTER;
  *help = nullptr;
  return AtClient([&] { return SystemsText(child, &IAccessible::get_accHelp, help); });
}

STDMETHODIMP AccessibleObject::get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) {
  if (file == nullptr || topic == nullptr) return E_POINTER;
  *file = nullptr;
  *topic = 0;
  return AtClient([&] {
    AccessibleAnswer asked;
    const HRESULT found = Find(child, asked);
    return FAILED(found) ? found : NotSupported;
  });
}

STDMETHODIMP AccessibleObject::get_accKeyboardShortcut(VARIANT child, BSTR* key) {
  if (key == nullptr) return E_POINTER;
  *key = nullptr;
  return AtClient([&] { return SystemsText(child, &IAccessible::get_accKeyboardShortcut, key); });
}

STDMETHODIMP AccessibleObject::get_accRole(VARIANT child, VARIANT* role) {
  if (role == nullptr) return E_POINTER;
  role->vt = VT_EMPTY;
  return AtClient([&] { return Number(child, &AccessibleAnswer::role, false, &IAccessible::get_accRole, role); });
}

STDMETHODIMP AccessibleObject::get_accState(VARIANT child, VARIANT* state) {
  if (state == nullptr) return E_POINTER;
  state->vt = VT_EMPTY;
  return AtClient([&] { return Number(child, &AccessibleAnswer::state, true, &IAccessible::get_accState, state); });
}

STDMETHODIMP AccessibleObject::get_accParent(IDispatch** parent) {
  if (parent == nullptr) return E_POINTER;
  *parent = nullptr;
  return AtClient([&] { return standard->get_accParent(parent); });
}

STDMETHODIMP AccessibleObject::accSelect(LONG flags, VARIANT child) {
  return AtClient([&] {
    AccessibleAnswer asked;
    const HRESULT found = Find(child, asked);
    if (FAILED(found)) return found;
    if (asked.id == CHILDID_SELF) return standard->accSelect(flags, child);
    constexpr unsigned Known = SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION;
    const auto wanted = static_cast<unsigned>(flags);
    if (wanted == 0 || (wanted & ~Known) != 0) return E_INVALIDARG;
    if (asked.action.empty()) return NotSupported;
    if ((wanted & SELFLAG_TAKEFOCUS) != 0) SetFocus(window);
    // The new owner of the focus may have closed this window.
    if (source == nullptr) return CO_E_OBJNOTCONNECTED;
    source->Do(asked.id);
    return S_OK;
  });
}

STDMETHODIMP AccessibleObject::accDoDefaultAction(VARIANT child) {
  return AtClient([&] {
    AccessibleAnswer asked;
    const HRESULT found = Find(child, asked);
    if (FAILED(found)) return found;
    if (found == S_OK && !asked.action.empty()) {
      source->Do(asked.id);
      return S_OK;
    }
    return asked.id == CHILDID_SELF ? standard->accDoDefaultAction(child) : NotSupported;
  });
}

STDMETHODIMP AccessibleObject::put_accName(VARIANT child, BSTR /*name*/) {
  return AtClient([&] {
    AccessibleAnswer asked;
    const HRESULT found = Find(child, asked);
    return FAILED(found) ? found : NotSupported;
  });
}

STDMETHODIMP AccessibleObject::put_accValue(VARIANT child, BSTR value) {
  return AtClient([&] {
    AccessibleAnswer asked;
    const HRESULT found = Find(child, asked);
    if (FAILED(found)) return found;
    return asked.id == CHILDID_SELF ? standard->put_accValue(child, value) : NotSupported;
  });
}

}  // namespace kw::windows
