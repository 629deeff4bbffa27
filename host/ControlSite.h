#pragma once

#include <ocidl.h>
#include <wrl/client.h>

#include <functional>
#include <utility>

#include "ComObject.h"
#include "Container.h"

namespace kw::host {

// The window's frame as the control sees it; it knows which object takes the keyboard.
class ControlFrame final : public ComObject<IOleInPlaceFrame> {
public:
  explicit ControlFrame(Container& owner) : container(owner) {}

  // The control while it is UI-active, otherwise null.
  IOleInPlaceActiveObject* ActiveObject() const { return active.Get(); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;

  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL /*enter*/) override { return E_NOTIMPL; }

  STDMETHODIMP GetBorder(RECT* /*border*/) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS /*widths*/) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS /*widths*/) override { return S_OK; }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR name) override;

  STDMETHODIMP InsertMenus(HMENU /*menu*/, LPOLEMENUGROUPWIDTHS /*widths*/) override { return E_NOTIMPL; }
  STDMETHODIMP SetMenu(HMENU /*menu*/, HOLEMENU /*oleMenu*/, HWND /*active*/) override { return S_OK; }
  STDMETHODIMP RemoveMenus(HMENU /*menu*/) override { return E_NOTIMPL; }
  STDMETHODIMP SetStatusText(LPCOLESTR /*text*/) override { return E_NOTIMPL; }
  STDMETHODIMP EnableModeless(BOOL enable) override;
  STDMETHODIMP TranslateAccelerator(LPMSG /*message*/, WORD /*command*/) override { return S_FALSE; }

private:
  Container& container;
  Microsoft::WRL::ComPtr<IOleInPlaceActiveObject> active;
};

// The place of the control in the window: its client site, and the ambient properties as IDispatch.
class ControlSite final : public ComObject<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch> {
public:
  // `save` keeps the control where it was loaded from.
  ControlSite(Container& owner, ControlFrame& windowFrame, std::function<HRESULT()> save)
      : container(owner), frame(&windowFrame), saveControl(std::move(save)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;

  STDMETHODIMP SaveObject() override { return saveControl(); }
  STDMETHODIMP GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** moniker) override;
  STDMETHODIMP GetContainer(IOleContainer** object) override;
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL /*show*/) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL /*enter*/) override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnUIActivate() override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** windowFrame, IOleInPlaceUIWindow** document, LPRECT position,
                                LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
  STDMETHODIMP Scroll(SIZE /*extent*/) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL /*undoable*/) override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
  STDMETHODIMP DiscardUndoState() override { return S_OK; }
  STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
  // The window alone decides where the control is.
  STDMETHODIMP OnPosRectChange(LPCRECT /*position*/) override { return S_OK; }

  STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL /*lock*/) override { return E_NOTIMPL; }
  STDMETHODIMP GetExtendedControl(IDispatch** extended) override;
  STDMETHODIMP TransformCoords(POINTL* /*himetric*/, POINTF* /*container*/, DWORD /*flags*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) override;
  STDMETHODIMP OnFocus(BOOL /*focused*/) override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** /*info*/) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* /*names*/, UINT /*count*/, LCID /*locale*/, DISPID* /*ids*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO* exception, UINT* badArgument) override;

private:
  Container& container;
  Microsoft::WRL::ComPtr<ControlFrame> frame;
  std::function<HRESULT()> saveControl;
};

}  // namespace kw::host
