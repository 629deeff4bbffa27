#include "activex/OleObject.h"

#include <olectl.h>

#include <algorithm>
#include <iterator>

#include "activex/ComBoundary.h"
#include "activex/KwEditor.h"
#include "activex/MiscStatus.h"
#include "activex/PropertyBrowsing.h"
#include "activex/Verbs.h"

namespace kw::activex {

STDMETHODIMP OleObject::SetClientSite(IOleClientSite* site) {
  return AtComBoundary(core.Life(), [&] {
    // If the container changes the site without deactivating first, the control deactivates while the old site is still
    // there to be told.
    if (site != core.Site().Get()) core.Activation().DeactivateAnd([&] { core.Site().Set(site); });
    core.FollowLanguage();
    core.FollowUserMode();
    return S_OK;
  });
}

STDMETHODIMP OleObject::GetClientSite(IOleClientSite** site) {
  return AtComBoundary(core.Life(), [&] {
    if (site == nullptr) return E_POINTER;
    *site = core.Site().Get();
    if (*site != nullptr) (*site)->AddRef();
    return S_OK;
  });
}

// The control does not show the names.
STDMETHODIMP OleObject::SetHostNames(LPCOLESTR /*application*/, LPCOLESTR /*document*/) { return S_OK; }

STDMETHODIMP OleObject::Close(DWORD saveOption) {
  return AtComBoundary(core.Life(), [&] {
    const auto site = core.Site().As<IOleClientSite>();
    if (saveOption != OLECLOSE_NOSAVE && core.IsDirty() && site != nullptr) site->SaveObject();
    core.Activation().Deactivate();
    if (IOleAdviseHolder* const advises = core.Advises()) advises->SendOnClose();
    return S_OK;
  });
}

STDMETHODIMP OleObject::SetMoniker(DWORD /*which*/, IMoniker* /*moniker*/) { return E_NOTIMPL; }

STDMETHODIMP OleObject::GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) {
  return AtComBoundary(core.Life(), [&] {
    if (moniker == nullptr) return E_POINTER;
    *moniker = nullptr;
    const auto site = core.Site().As<IOleClientSite>();
    return site == nullptr ? E_UNEXPECTED : site->GetMoniker(assign, which, moniker);
  });
}

STDMETHODIMP OleObject::InitFromData(IDataObject* /*data*/, BOOL /*creation*/, DWORD /*reserved*/) { return E_NOTIMPL; }

STDMETHODIMP OleObject::GetClipboardData(DWORD /*reserved*/, IDataObject** data) {
  if (data == nullptr) return E_POINTER;
  *data = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP OleObject::DoVerb(LONG verb, LPMSG message, IOleClientSite* site, LONG /*index*/, HWND parent,
                               LPCRECT /*position*/) {
  return AtComBoundary(core.Life(), [&] {
    core.FollowUserMode();
    core.Start();
    InPlaceActivation& activation = core.Activation();
    switch (verb) {
      case OLEIVERB_PRIMARY:
      case OLEIVERB_UIACTIVATE:
        return activation.ActivateUi(site, message);
      case OLEIVERB_SHOW:
      case OLEIVERB_INPLACEACTIVATE:
        return activation.Activate(site);
      case OLEIVERB_HIDE:
        return activation.Hide();
      case OLEIVERB_PROPERTIES:
        return ShowProperties(core, parent);
      case OLEIVERB_DISCARDUNDOSTATE:
        return S_OK;  // the control keeps no data for its container
      default:
        // OLEIVERB_OPEN too: the control has no window of its own to open in.
        return verb < 0 ? E_NOTIMPL : RunVerb(core, verb);
    }
  });
}

STDMETHODIMP OleObject::EnumVerbs(IEnumOLEVERB** enumerator) {
  return AtComBoundary(core.Life(), [&] { return enumerator == nullptr ? E_POINTER : EnumerateVerbs(enumerator); });
}

STDMETHODIMP OleObject::Update() { return S_OK; }
STDMETHODIMP OleObject::IsUpToDate() { return S_OK; }

STDMETHODIMP OleObject::GetUserClassID(CLSID* classId) {
  if (classId == nullptr) return E_POINTER;
  *classId = CLSID_KwEditorLayers;
  return S_OK;
}

STDMETHODIMP OleObject::GetUserType(DWORD /*form*/, LPOLESTR* type) {
  if (type == nullptr) return E_POINTER;
  *type = static_cast<LPOLESTR>(CoTaskMemAlloc(sizeof UserTypeName));
  if (*type == nullptr) return E_OUTOFMEMORY;
  std::copy(std::begin(UserTypeName), std::end(UserTypeName), *type);
  return S_OK;
}

STDMETHODIMP OleObject::SetExtent(DWORD aspect, SIZEL* size) {
  return AtComBoundary(core.Life(), [&] {
    if (size == nullptr) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (size->cx < 0 || size->cy < 0) return E_INVALIDARG;
    core.SetExtent(*size);
    return S_OK;
  });
}

STDMETHODIMP OleObject::GetExtent(DWORD aspect, SIZEL* size) {
  if (size == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  *size = core.Extent();
  return S_OK;
}

STDMETHODIMP OleObject::Advise(IAdviseSink* sink, DWORD* connection) {
  return AtComBoundary(core.Life(), [&] {
    if (connection == nullptr) return E_POINTER;
    *connection = 0;
    if (sink == nullptr) return E_POINTER;
    IOleAdviseHolder* const advises = core.Advises();
    return advises == nullptr ? E_OUTOFMEMORY : advises->Advise(sink, connection);
  });
}

STDMETHODIMP OleObject::Unadvise(DWORD connection) {
  return AtComBoundary(core.Life(), [&] {
    IOleAdviseHolder* const advises = core.Advises();
    return advises == nullptr ? E_OUTOFMEMORY : advises->Unadvise(connection);
  });
}

STDMETHODIMP OleObject::EnumAdvise(IEnumSTATDATA** enumerator) {
  return AtComBoundary(core.Life(), [&] {
    if (enumerator == nullptr) return E_POINTER;
    *enumerator = nullptr;
    IOleAdviseHolder* const advises = core.Advises();
    return advises == nullptr ? E_OUTOFMEMORY : advises->EnumAdvise(enumerator);
  });
}

STDMETHODIMP OleObject::GetMiscStatus(DWORD aspect, DWORD* status) {
  if (status == nullptr) return E_POINTER;
  *status = aspect == DVASPECT_CONTENT ? MiscStatus : 0;
  return S_OK;
}

STDMETHODIMP OleObject::SetColorScheme(LOGPALETTE* /*palette*/) { return E_NOTIMPL; }

STDMETHODIMP OleObject::GetControlInfo(CONTROLINFO* info) {
  return AtComBoundary(core.Life(), [&] {
    if (info == nullptr) return E_POINTER;
    if (info->cb < sizeof(CONTROLINFO)) return E_INVALIDARG;
    *info = {sizeof(CONTROLINFO), nullptr, 0, core.Activation().EatenKeys()};  // no mnemonics
    return S_OK;
  });
}

STDMETHODIMP OleObject::OnMnemonic(MSG* /*message*/) { return S_OK; }

STDMETHODIMP OleObject::OnAmbientPropertyChange(DISPID property) {
  return AtComBoundary(core.Life(), [&] {
    if (property == DISPID_AMBIENT_LOCALEID || property == DISPID_UNKNOWN) core.FollowLanguage();
    if (property == DISPID_AMBIENT_USERMODE || property == DISPID_UNKNOWN) core.FollowUserMode();
    if (property == DISPID_AMBIENT_UIDEAD || property == DISPID_UNKNOWN) core.Activation().FollowUiDead();
    return S_OK;
  });
}

STDMETHODIMP OleObject::FreezeEvents(BOOL freeze) {
  return AtComBoundary(core.Life(), [&] {
    if (freeze != 0) {
      core.Events().Freeze();
    } else {
      core.Events().Thaw();
    }
    return S_OK;
  });
}

}  // namespace kw::activex
