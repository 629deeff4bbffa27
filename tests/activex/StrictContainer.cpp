#include "tests/activex/StrictContainer.h"

#include <gtest/gtest.h>
#include <olectl.h>

namespace kw::test {

StrictContainer::StrictContainer()
    : StrictContainer(CreateWindowExW(0, L"Static", L"Strict container", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0,
                                      700, 500, nullptr, nullptr, nullptr, nullptr)) {}

StrictContainer::StrictContainer(HWND own) : window(own) {}

StrictContainer::~StrictContainer() {
  // A test that was given up midway must not take the others with it: the control would call a container that is gone.
  if (control != nullptr && testing::Test::HasFailure()) LetGo();
  control.Reset();
  active.Reset();
  EXPECT_EQ(references, 1U) << "the control keeps a reference to its container";
  EXPECT_EQ(modelessOff, 0) << "the control left the container's modeless windows disabled";
  DestroyWindowNow();
}

void StrictContainer::DestroyWindowNow() {
  if (window != nullptr) DestroyWindow(window);
  window = nullptr;
}

void StrictContainer::Take(IUnknown* newControl) {
  ASSERT_HRESULT_SUCCEEDED(newControl->QueryInterface(IID_PPV_ARGS(&control)));
  DWORD status = 0;
  ASSERT_HRESULT_SUCCEEDED(control->GetMiscStatus(DVASPECT_CONTENT, &status));
  ASSERT_TRUE((status & OLEMISC_SETCLIENTSITEFIRST) != 0);
  ASSERT_HRESULT_SUCCEEDED(control->SetClientSite(this));
  ASSERT_HRESULT_SUCCEEDED(As<IPersistStreamInit>()->InitNew());
  SIZEL extent = {10000, 8000};
  ASSERT_HRESULT_SUCCEEDED(control->SetExtent(DVASPECT_CONTENT, &extent));
}

void StrictContainer::SetUserMode(bool value) {
  userMode = value;
  EXPECT_EQ(As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE), S_OK);
}

HRESULT StrictContainer::DoVerb(LONG verb) { return control->DoVerb(verb, nullptr, this, 0, window, &place); }

void StrictContainer::LetGo() {
  if (const auto inPlace = As<IOleInPlaceObject>()) {
    EXPECT_HRESULT_SUCCEEDED(inPlace->InPlaceDeactivate());
  }
  EXPECT_HRESULT_SUCCEEDED(control->Close(OLECLOSE_NOSAVE));
  EXPECT_HRESULT_SUCCEEDED(control->SetClientSite(nullptr));
  control.Reset();
}

HWND StrictContainer::ControlWindow() const {
  HWND found = nullptr;
  if (const auto inPlace = As<IOleInPlaceObject>()) inPlace->GetWindow(&found);
  return found;
}

STDMETHODIMP StrictContainer::QueryInterface(REFIID iid, void** object) {
  if (iid == IID_IUnknown || iid == IID_IOleClientSite) {
    *object = static_cast<IOleClientSite*>(this);
  } else if (iid == IID_IOleInPlaceSite || iid == IID_IOleWindow) {
    *object = static_cast<IOleInPlaceSite*>(this);
  } else if (iid == IID_IOleControlSite) {
    *object = static_cast<IOleControlSite*>(this);
  } else if (iid == IID_IDispatch && hasAmbients) {
    *object = static_cast<IDispatch*>(this);
  } else {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

STDMETHODIMP StrictContainer::SaveObject() {
  calls.emplace_back("SaveObject");
  return S_OK;
}

STDMETHODIMP StrictContainer::GetContainer(IOleContainer** container) {
  *container = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP StrictContainer::ShowObject() {
  calls.emplace_back("ShowObject");
  return S_OK;
}

STDMETHODIMP StrictContainer::GetWindow(HWND* asked) {
  *asked = window;
  return window == nullptr ? E_FAIL : S_OK;
}

STDMETHODIMP StrictContainer::CanInPlaceActivate() {
  calls.emplace_back("CanInPlaceActivate");
  EXPECT_EQ(state, State::Loaded);
  return refusesActivation ? S_FALSE : S_OK;
}

STDMETHODIMP StrictContainer::OnInPlaceActivate() {
  calls.emplace_back("OnInPlaceActivate");
  EXPECT_EQ(state, State::Loaded);
  EXPECT_FALSE(refusesActivation);
  if (onInPlaceActivate) onInPlaceActivate();
  state = State::Active;
  return S_OK;
}

STDMETHODIMP StrictContainer::OnUIActivate() {
  calls.emplace_back("OnUIActivate");
  EXPECT_EQ(state, State::Active);
  if (onUiActivate) {
    if (const HRESULT allowed = onUiActivate(); FAILED(allowed)) return allowed;
  }
  state = State::UiActive;
  return S_OK;
}

STDMETHODIMP StrictContainer::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                               LPRECT position, LPRECT clipping, LPOLEINPLACEFRAMEINFO info) {
  calls.emplace_back("GetWindowContext");
  EXPECT_EQ(state, State::Active);
  EXPECT_EQ(info->cb, sizeof(OLEINPLACEFRAMEINFO));
  if (onWindowContext) onWindowContext();
  *frame = this;
  AddRef();
  *document = nullptr;
  *position = place;
  *clipping = clip;
  info->fMDIApp = FALSE;
  info->hwndFrame = window;
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

STDMETHODIMP StrictContainer::OnUIDeactivate(BOOL undoable) {
  calls.emplace_back("OnUIDeactivate");
  EXPECT_EQ(state, State::UiActive);
  EXPECT_EQ(undoable, FALSE);
  state = State::Active;
  if (onUiDeactivate) onUiDeactivate();
  return S_OK;
}

STDMETHODIMP StrictContainer::OnInPlaceDeactivate() {
  calls.emplace_back("OnInPlaceDeactivate");
  EXPECT_EQ(state, State::Active);
  EXPECT_EQ(active.Get(), nullptr) << "the control is still the active object of the frame";
  state = State::Loaded;
  if (onInPlaceDeactivate) onInPlaceDeactivate();
  return S_OK;
}

STDMETHODIMP StrictContainer::OnControlInfoChanged() {
  ++keyChanges;
  return S_OK;
}

STDMETHODIMP StrictContainer::TranslateAccelerator(MSG* /*message*/, DWORD modifiers) {
  calls.push_back("TranslateAccelerator " + std::to_string(modifiers));
  return S_FALSE;
}

STDMETHODIMP StrictContainer::OnFocus(BOOL gotFocus) {
  calls.emplace_back(gotFocus != 0 ? "OnFocus" : "OnFocusLost");
  if (onFocus) onFocus(gotFocus);
  return S_OK;
}

STDMETHODIMP StrictContainer::ShowPropertyFrame() {
  calls.emplace_back("ShowPropertyFrame");
  return showsProperties ? S_OK : E_NOTIMPL;
}

STDMETHODIMP StrictContainer::SetBorderSpace(LPCBORDERWIDTHS widths) {
  EXPECT_EQ(widths, nullptr) << "the control wants no border space";
  return S_OK;
}

STDMETHODIMP StrictContainer::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR /*name*/) {
  calls.emplace_back(object != nullptr ? "SetActiveObject" : "SetActiveObject(null)");
  active = object;
  if (object != nullptr && onActiveObject) onActiveObject();
  return S_OK;
}

STDMETHODIMP StrictContainer::EnableModeless(BOOL enable) {
  calls.emplace_back(enable != 0 ? "EnableModeless" : "EnableModeless(false)");
  modelessOff += enable != 0 ? -1 : 1;
  EXPECT_GE(modelessOff, 0);
  return S_OK;
}

STDMETHODIMP StrictContainer::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

STDMETHODIMP StrictContainer::Invoke(DISPID id, REFIID, LCID /*locale*/, WORD flags, DISPPARAMS* /*parameters*/,
                                     VARIANT* result, EXCEPINFO* /*exception*/, UINT* /*badArgument*/) {
  EXPECT_EQ(flags, DISPATCH_PROPERTYGET);
  if (id == DISPID_AMBIENT_LOCALEID && locale) {
    V_VT(result) = VT_I4;
    V_I4(result) = *locale;
    return S_OK;
  }
  std::optional<bool> value;
  if (id == DISPID_AMBIENT_UIDEAD) value = uiDead;
  if (id == DISPID_AMBIENT_USERMODE) {
    if (onUserMode) onUserMode();
    value = userMode;
  }
  if (!value) return DISP_E_MEMBERNOTFOUND;
  V_VT(result) = VT_BOOL;
  V_BOOL(result) = *value ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

}  // namespace kw::test
