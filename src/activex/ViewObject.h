#pragma once

#include <windows.h>

#include <ocidl.h>

#include "activex/EditorCore.h"

namespace kw::activex {

// The picture of the control, also while it has no window.
//
// IDataObject is not there on purpose: a container that draws an inactive control asks this interface, and the one use
// that containers have for the other, a cached metafile beside an embedded object, is for objects that a user inserts,
// which this control does not register as.
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
