#include "activex/InPlaceObject.h"

#include <ocidl.h>

#include "activex/Edge.h"

namespace kw::activex {
namespace {

DWORD KeyModifiers() {
  const auto held = [](int key, DWORD bit) { return GetKeyState(key) < 0 ? bit : 0; };
  // The bits of IOleControlSite::TranslateAccelerator: Shift 1, Ctrl 2, Alt 4.
  return held(VK_SHIFT, 1) | held(VK_CONTROL, 2) | held(VK_MENU, 4);
}

}  // namespace

STDMETHODIMP InPlaceObject::GetWindow(HWND* window) {
  if (window == nullptr) return E_POINTER;
  *window = core.Activation().Window();
  return *window == nullptr ? E_FAIL : S_OK;
}

STDMETHODIMP InPlaceObject::ContextSensitiveHelp(BOOL /*enter*/) { return E_NOTIMPL; }

STDMETHODIMP InPlaceObject::InPlaceDeactivate() {
  return AtEdge(core.Life(), [&] { return core.Activation().Deactivate(); });
}

STDMETHODIMP InPlaceObject::UIDeactivate() {
  return AtEdge(core.Life(), [&] { return core.Activation().DeactivateUi(); });
}

STDMETHODIMP InPlaceObject::SetObjectRects(LPCRECT position, LPCRECT clip) {
  return AtEdge(core.Life(), [&] {
    if (position == nullptr || clip == nullptr) return E_POINTER;
    return core.Activation().SetRects(*position, *clip);
  });
}

STDMETHODIMP InPlaceObject::ReactivateAndUndo() { return INPLACE_E_NOTUNDOABLE; }

STDMETHODIMP InPlaceObject::TranslateAccelerator(LPMSG message) {
  return AtEdge(core.Life(), [&] {
    if (message == nullptr) return E_POINTER;
    windows::EditorWindow* const pane = core.Activation().Pane();
    if (pane != nullptr && pane->TranslateAccelerator(*message)) return S_OK;
    const auto site = core.Site().As<IOleControlSite>();
    return site == nullptr ? S_FALSE : site->TranslateAccelerator(message, KeyModifiers());
  });
}

STDMETHODIMP InPlaceObject::OnFrameWindowActivate(BOOL /*activate*/) { return S_OK; }
STDMETHODIMP InPlaceObject::OnDocWindowActivate(BOOL /*activate*/) { return S_OK; }

// The control takes no space of its container's borders.
STDMETHODIMP InPlaceObject::ResizeBorder(LPCRECT /*border*/, IOleInPlaceUIWindow* /*window*/, BOOL /*frame*/) {
  return S_OK;
}

STDMETHODIMP InPlaceObject::EnableModeless(BOOL /*enable*/) { return S_OK; }

}  // namespace kw::activex
