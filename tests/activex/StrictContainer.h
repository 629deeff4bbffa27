#pragma once

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>
#include <wrl/client.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kw::test {

// A container that gives a control what the rules oblige a container to give, no more, and fails the test when the
// control breaks the order of calls. It lives in the test; every reference to it must be given back.
class StrictContainer final : public IOleClientSite,
                              public IOleInPlaceSite,
                              public IOleControlSite,
                              public IOleInPlaceFrame,
                              public IDispatch {
public:
  StrictContainer();
  // With a window of the test's, which it destroys.
  explicit StrictContainer(HWND own);
  ~StrictContainer();

  // Ways to differ from a polite container.
  bool hasAmbients = true;  // answers for ambient properties at all
  bool refusesActivation = false;
  bool uiDead = false;
  bool showsProperties = false;
  std::optional<bool> userMode;  // unknown to it if empty
  std::optional<LONG> locale;    // unknown to it if empty
  // Called when the control wants to be its active object; it may refuse.
  std::function<HRESULT()> onUiActivate;
  // Called when the control tells that it is about to be active in place, asks where its window is to be, is the active
  // object, got or lost the focus, is no longer the active object, or no longer active in place.
  std::function<void()> onInPlaceActivate;
  std::function<void()> onWindowContext;
  std::function<void()> onActiveObject;
  std::function<void(BOOL gotFocus)> onFocus;
  std::function<void()> onUiDeactivate;
  std::function<void()> onInPlaceDeactivate;
  // Called when it is asked for UserMode, before it answers.
  std::function<void()> onUserMode;
  RECT place = {10, 20, 410, 320};
  RECT clip = {0, 0, 1000, 1000};

  // The calls of the control, by name, in their order. Those that the rules allow at any time are left out.
  std::vector<std::string> calls;
  // How often the control said that it wants other keys than before.
  int keyChanges = 0;
  ULONG References() const { return references; }
  HWND Window() const { return window; }
  void DestroyWindowNow();

  // Answers another UserMode from now on, and says so.
  void SetUserMode(bool value);

  // Lets the control in as a designer's tool would: site, new or `stream`ed state, extent.
  void Take(IUnknown* newControl);
  HRESULT DoVerb(LONG verb);
  // The polite way out: deactivate, close, take the site away.
  void LetGo();
  IOleInPlaceActiveObject* ActiveObject() const { return active.Get(); }
  template <class Interface>
  Microsoft::WRL::ComPtr<Interface> As() const {
    Microsoft::WRL::ComPtr<Interface> asked;
    if (control != nullptr) control.As(&asked);
    return asked;
  }
  HWND ControlWindow() const;
  void Forget() { control.Reset(); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }

  STDMETHODIMP SaveObject() override;
  STDMETHODIMP GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** /*moniker*/) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** container) override;
  STDMETHODIMP ShowObject() override;
  STDMETHODIMP OnShowWindow(BOOL /*show*/) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

  STDMETHODIMP GetWindow(HWND* asked) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL /*enter*/) override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() override;
  STDMETHODIMP OnInPlaceActivate() override;
  STDMETHODIMP OnUIActivate() override;
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, LPRECT position,
                                LPRECT clipping, LPOLEINPLACEFRAMEINFO info) override;
  STDMETHODIMP Scroll(SIZE /*extent*/) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL undoable) override;
  STDMETHODIMP OnInPlaceDeactivate() override;
  STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(LPCRECT /*position*/) override { return S_OK; }

  STDMETHODIMP OnControlInfoChanged() override;
  STDMETHODIMP LockInPlaceActive(BOOL /*lock*/) override { return E_NOTIMPL; }
  STDMETHODIMP GetExtendedControl(IDispatch** /*control*/) override { return E_NOTIMPL; }
  STDMETHODIMP TransformCoords(POINTL* /*himetric*/, POINTF* /*container*/, DWORD /*flags*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) override;
  STDMETHODIMP OnFocus(BOOL gotFocus) override;
  STDMETHODIMP ShowPropertyFrame() override;

  STDMETHODIMP GetBorder(LPRECT /*border*/) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS /*widths*/) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS widths) override;
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR name) override;
  STDMETHODIMP InsertMenus(HMENU /*menu*/, LPOLEMENUGROUPWIDTHS /*widths*/) override { return E_NOTIMPL; }
  STDMETHODIMP SetMenu(HMENU /*menu*/, HOLEMENU /*oleMenu*/, HWND /*active*/) override { return E_NOTIMPL; }
  STDMETHODIMP RemoveMenus(HMENU /*menu*/) override { return E_NOTIMPL; }
  STDMETHODIMP SetStatusText(LPCOLESTR /*text*/) override { return E_NOTIMPL; }
  STDMETHODIMP EnableModeless(BOOL enable) override;
  STDMETHODIMP TranslateAccelerator(LPMSG /*message*/, WORD /*command*/) override { return S_FALSE; }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** /*info*/) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* /*names*/, UINT /*count*/, LCID /*locale*/, DISPID* /*ids*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* badArgument) override;

private:
  enum class State { Loaded, Active, UiActive };

  ULONG references = 1;
  State state = State::Loaded;
  int modelessOff = 0;
  HWND window;
  Microsoft::WRL::ComPtr<IOleObject> control;
  Microsoft::WRL::ComPtr<IOleInPlaceActiveObject> active;
};

}  // namespace kw::test
