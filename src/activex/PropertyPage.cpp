#include "activex/PropertyPage.h"

#include <olectl.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "activex/ComBoundary.h"
#include "activex/Module.h"
#include "windows/properties/PropertyFields.h"

namespace kw::activex {
namespace {

constexpr wchar_t PageTitle[] = L"General";

std::string WhatIsAllowed() {
  return "Enter a whole number from " + std::to_string(windows::LeastNumber) + " to " +
         std::to_string(windows::GreatestNumber) + ".";
}

}  // namespace

PropertyPage::PropertyPage() : life(*this), entries(std::make_shared<windows::PropertyEntries>()) {
  life.CountIsOwn();
  Module::Lock();
}

PropertyPage::~PropertyPage() { Module::Unlock(); }

HRESULT PropertyPage::Create(IUnknown* controlling, REFIID iid, void** object) {
  if (controlling != nullptr) return CLASS_E_NOAGGREGATION;
  auto* const created = new PropertyPage;
  const HRESULT result = created->QueryInterface(iid, object);
  created->Release();
  return result;
}

STDMETHODIMP PropertyPage::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  const bool isKnown = iid == IID_IUnknown || iid == IID_IPropertyPage || iid == IID_IPropertyPage2;
  *object = isKnown ? static_cast<IPropertyPage2*>(this) : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) PropertyPage::AddRef() { return ++references; }

STDMETHODIMP_(ULONG) PropertyPage::Release() {
  const ULONG left = --references;
  if (left > 0) return left;
  references = 1;  // AddRef and Release while its parts go must not destroy it a second time
  delete this;
  return 0;
}

STDMETHODIMP PropertyPage::SetPageSite(IPropertyPageSite* pageSite) {
  return AtComBoundary(life, [&] {
    site = pageSite;
    return S_OK;
  });
}

STDMETHODIMP PropertyPage::Activate(HWND parent, LPCRECT place, BOOL /*modal*/) {
  return AtComBoundary(life, [&] {
    if (place == nullptr) return E_POINTER;
    if (HasWindow() || !objects.AreThere()) return E_UNEXPECTED;
    ReadObjects();
    window = windows::PropertyPageWindow::Create(
        parent, entries, {[this] { TellStatus(); }, [this] { return std::make_shared<Lifetime::Outgoing>(life); }});
    return Move(place);
  });
}

STDMETHODIMP PropertyPage::Deactivate() {
  return AtComBoundary(life, [&] {
    if (!HasWindow()) return E_UNEXPECTED;
    // The frame hears that the window goes, and may activate the page again.
    const auto closing = std::exchange(window, nullptr);
    closing->Close();
    return S_OK;
  });
}

STDMETHODIMP PropertyPage::GetPageInfo(PROPPAGEINFO* info) {
  return AtComBoundary(life, [&] {
    if (info == nullptr) return E_POINTER;
    *info = {sizeof(PROPPAGEINFO), nullptr, windows::PropertyPageWindow::WantedSize(), nullptr, nullptr, 0};
    info->pszTitle = static_cast<LPOLESTR>(CoTaskMemAlloc(sizeof PageTitle));
    if (info->pszTitle == nullptr) return E_OUTOFMEMORY;
    std::copy(std::begin(PageTitle), std::end(PageTitle), info->pszTitle);
    return S_OK;
  });
}

STDMETHODIMP PropertyPage::SetObjects(ULONG count, IUnknown** unknowns) {
  return AtComBoundary(life, [&] {
    const HRESULT result = objects.Set(count, unknowns);
    if (FAILED(result) || count == 0) return result;
    *entries = windows::PropertyEntries();
    if (HasWindow()) ReadObjects();
    return S_OK;
  });
}

STDMETHODIMP PropertyPage::Show(UINT command) {
  return AtComBoundary(life, [&] {
    if (command != SW_SHOW && command != SW_SHOWNORMAL && command != SW_HIDE) return E_INVALIDARG;
    if (!HasWindow()) return E_UNEXPECTED;
    ShowWindow(window->Handle(), static_cast<int>(command));
    if (command != SW_HIDE && wanted) window->Focus(*wanted);
    wanted.reset();
    return S_OK;
  });
}

STDMETHODIMP PropertyPage::Move(LPCRECT place) {
  return AtComBoundary(life, [&] {
    if (place == nullptr) return E_POINTER;
    if (!HasWindow()) return E_UNEXPECTED;
    MoveWindow(window->Handle(), place->left, place->top, place->right - place->left, place->bottom - place->top, TRUE);
    return S_OK;
  });
}

STDMETHODIMP PropertyPage::IsPageDirty() {
  return AtComBoundary(life, [&] { return entries->HasChanges() ? S_OK : S_FALSE; });
}

// Nothing is assigned while one of the entries cannot be. What was assigned is the objects' from then on, also if one
// that follows fails.
STDMETHODIMP PropertyPage::Apply() {
  return AtComBoundary(life, [&] {
    if (!objects.AreThere()) return E_UNEXPECTED;
    const std::size_t count = windows::PropertyFields().size();
    for (std::size_t i = 0; i < count; ++i) {
      if (entries->IsChanged(i) && !entries->Value(i)) return Refuse(i, WhatIsAllowed(), E_INVALIDARG);
    }
    HRESULT result = S_OK;
    for (std::size_t i = 0; i < count && SUCCEEDED(result); ++i) {
      if (entries->IsChanged(i)) result = ApplyField(i);
    }
    ReadObjects();  // one property may have changed another
    TellStatus();
    return result;
  });
}

HRESULT PropertyPage::ApplyField(std::size_t field) {
  const auto value = entries->Value(field);
  std::string reason;
  const HRESULT result = objects.Put(windows::PropertyFields()[field].id, *value, reason);
  if (FAILED(result)) return Refuse(field, reason, result);
  // An event of the assignment may have let the user enter another value.
  if (entries->Value(field) == value) entries->Keep(field);
  return S_OK;
}

HRESULT PropertyPage::Refuse(std::size_t field, const std::string& reason, HRESULT result) {
  if (!HasWindow()) return result;
  const auto shown = window;
  const Lifetime::Outgoing outgoing(life);
  shown->Complain(std::string(windows::PropertyFields()[field].name) + ": " + reason);
  if (shown->Handle() != nullptr) shown->Focus(field);
  return result;
}

void PropertyPage::ReadObjects() {
  for (std::size_t i = 0; i < windows::PropertyFields().size(); ++i) {
    const auto& field = windows::PropertyFields()[i];
    // The pictures can only be assigned.
    if (field.kind != windows::PropertyField::Kind::Picture) entries->Show(i, objects.Get(field.id));
  }
  if (HasWindow()) window->ShowEntries();
}

void PropertyPage::TellStatus() {
  const Lifetime::Outgoing outgoing(life);
  const Microsoft::WRL::ComPtr<IPropertyPageSite> told = site;
  if (told != nullptr) told->OnStatusChange(entries->HasChanges() ? PROPPAGESTATUS_DIRTY : PROPPAGESTATUS_CLEAN);
}

STDMETHODIMP PropertyPage::Help(LPCOLESTR /*folder*/) { return E_NOTIMPL; }

STDMETHODIMP PropertyPage::TranslateAccelerator(MSG* message) {
  return AtComBoundary(life, [&] {
    if (message == nullptr) return E_POINTER;
    if (!HasWindow()) return E_UNEXPECTED;
    const auto shown = window;
    const auto leave = [&] {
      const Microsoft::WRL::ComPtr<IPropertyPageSite> frame = site;
      return frame != nullptr && frame->TranslateAccelerator(message) == S_OK;
    };
    return shown->TakesKey(*message, leave) ? S_OK : S_FALSE;
  });
}

STDMETHODIMP PropertyPage::EditProperty(DISPID property) {
  return AtComBoundary(life, [&] {
    const auto field = windows::FieldOf(static_cast<PropertyId>(property));
    if (!field) return E_INVALIDARG;
    wanted = field;
    if (HasWindow() && IsWindowVisible(window->Handle()) != FALSE) {
      window->Focus(*field);
      wanted.reset();
    }
    return S_OK;
  });
}

}  // namespace kw::activex
