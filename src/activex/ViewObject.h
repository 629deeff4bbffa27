#pragma once

#include <windows.h>

#include <ocidl.h>

#include "activex/EditorCore.h"

namespace kw::activex {

// Draws the control, with or without a window, and the page for a printer (DVASPECT_DOCPRINT).
//
// Containers draw an inactive control through this interface. DataObject gives the annotated page, not the control's
// look: a container that would cache a picture of the control there is told OLE_E_BLANK until a page is open.
class ViewObject : public IViewObjectEx {
public:
  STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device, HDC deviceContext,
                    HDC drawContext, LPCRECTL bounds, LPCRECTL metafileBounds, BOOL(STDMETHODCALLTYPE* goOn)(ULONG_PTR),
                    ULONG_PTR goOnArgument) override;
  STDMETHODIMP GetColorSet(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device, HDC deviceContext,
                           LOGPALETTE** colours) override;
  STDMETHODIMP Freeze(DWORD aspect, LONG index, void* aspectInfo, DWORD* key) override;
  STDMETHODIMP Unfreeze(DWORD key) override;
  STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
  STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
  STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, LPSIZEL size) override;
  STDMETHODIMP GetRect(DWORD aspect, LPRECTL rectangle) override;
  STDMETHODIMP GetViewStatus(DWORD* status) override;
  STDMETHODIMP QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG closeHint, DWORD* result) override;
  STDMETHODIMP QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT rectangle, LONG closeHint, DWORD* result) override;
  STDMETHODIMP GetNaturalExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, HDC deviceContext, DVEXTENTINFO* info,
                                LPSIZEL size) override;

protected:
  explicit ViewObject(EditorCore& shared) : core(shared) {}
  ~ViewObject() = default;

private:
  EditorCore& core;
};

}  // namespace kw::activex
