#include "activex/ViewObject.h"

#include "activex/ComBoundary.h"
#include "activex/PageData.h"

namespace kw::activex {

STDMETHODIMP ViewObject::Draw(DWORD aspect, LONG /*index*/, void* /*aspectInfo*/, DVTARGETDEVICE* /*targetDevice*/,
                              HDC /*targetContext*/, HDC drawContext, LPCRECTL bounds, LPCRECTL /*windowBounds*/,
                              BOOL(STDMETHODCALLTYPE* proceed)(ULONG_PTR), ULONG_PTR cookie) {
  return AtComBoundary(core.Life(), [&] {
    if (aspect == DVASPECT_DOCPRINT) {
      if (drawContext == nullptr || bounds == nullptr) return E_INVALIDARG;
      const AnnotatedPage page(core.Editor().Form());
      if (page.IsEmpty()) return OLE_E_BLANK;
      return DrawPage(page, drawContext, {bounds->left, bounds->top, bounds->right, bounds->bottom},
                      [&] { return proceed == nullptr || proceed(cookie) != FALSE; });
    }
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (drawContext == nullptr) return E_INVALIDARG;
    RECT target = {};
    if (bounds != nullptr) {
      target = {bounds->left, bounds->top, bounds->right, bounds->bottom};
    } else if (core.Activation().IsActive()) {
      GetClientRect(core.Activation().Window(),
                    &target);  // without bounds an active object draws at its window's position
    } else {
      return E_INVALIDARG;
    }
    if (target.right == target.left || target.bottom == target.top) return S_OK;
    core.Start();
    core.LayOutOnce();
    windows::EditorWindow::Draw(core.Editor().Root(), drawContext, target);
    core.Editor().Root().UserPaint();
    return S_OK;
  });
}

// The control draws in true colour.
STDMETHODIMP ViewObject::GetColorSet(DWORD /*aspect*/, LONG /*index*/, void* /*aspectInfo*/,
                                     DVTARGETDEVICE* /*targetDevice*/, HDC /*targetContext*/, LOGPALETTE** colours) {
  if (colours == nullptr) return E_POINTER;
  *colours = nullptr;
  return S_FALSE;
}

STDMETHODIMP ViewObject::Freeze(DWORD /*aspect*/, LONG /*index*/, void* /*aspectInfo*/, DWORD* key) {
  if (key != nullptr) *key = 0;
  return E_NOTIMPL;
}

STDMETHODIMP ViewObject::Unfreeze(DWORD /*freeze*/) { return E_NOTIMPL; }

STDMETHODIMP ViewObject::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  return AtComBoundary(core.Life(), [&] {
    core.AdviseView(aspects, flags, sink);
    return S_OK;
  });
}

STDMETHODIMP ViewObject::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  return AtComBoundary(core.Life(), [&] {
    core.ViewAdvise(aspects, flags, sink);
    return S_OK;
  });
}

STDMETHODIMP ViewObject::GetExtent(DWORD aspect, LONG /*index*/, DVTARGETDEVICE* /*targetDevice*/, LPSIZEL size) {
  return AtComBoundary(core.Life(), [&] {
    if (size == nullptr) return E_POINTER;
    if (aspect == DVASPECT_DOCPRINT) {
      const AnnotatedPage page(core.Editor().Form());
      if (page.IsEmpty()) return OLE_E_BLANK;
      *size = PageExtent(page);
      return S_OK;
    }
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    *size = core.Extent();
    return S_OK;
  });
}

STDMETHODIMP ViewObject::GetRect(DWORD aspect, LPRECTL rectangle) {
  if (rectangle == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const SIZEL extent = core.Extent();
  *rectangle = {0, 0, extent.cx, extent.cy};
  return S_OK;
}

STDMETHODIMP ViewObject::GetViewStatus(DWORD* status) {
  if (status == nullptr) return E_POINTER;
  *status = VIEWSTATUS_OPAQUE | VIEWSTATUS_SOLIDBKGND;
  return S_OK;
}

STDMETHODIMP ViewObject::QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG /*hint*/, DWORD* result) {
  if (bounds == nullptr || result == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  *result = PtInRect(bounds, point) != 0 ? HITRESULT_HIT : HITRESULT_OUTSIDE;
  return S_OK;
}

STDMETHODIMP ViewObject::QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT rectangle, LONG /*hint*/, DWORD* result) {
  if (bounds == nullptr || rectangle == nullptr || result == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  RECT common = {};
  *result = IntersectRect(&common, bounds, rectangle) != 0 ? HITRESULT_HIT : HITRESULT_OUTSIDE;
  return S_OK;
}

// The control accepts any size, because it lays itself out.
STDMETHODIMP ViewObject::GetNaturalExtent(DWORD /*aspect*/, LONG /*index*/, DVTARGETDEVICE* /*targetDevice*/,
                                          HDC /*targetContext*/, DVEXTENTINFO* /*info*/, LPSIZEL size) {
  if (size == nullptr) return E_POINTER;
  *size = {};
  return E_NOTIMPL;
}

}  // namespace kw::activex
