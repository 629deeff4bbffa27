#include "activex/InPlaceObject.h"

#include <ocidl.h>

#include "activex/ComBoundary.h"

namespace kw::activex {
namespace {

DWORD KeyModifiers() {
  const auto held = [](int key, DWORD bit) { return GetKeyState(key) < 0 ? bit : 0; };
  // The modifier bits of IOleControlSite::TranslateAccelerator: Shift 1, Ctrl 2, Alt 4.
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
  return AtComBoundary(core.Life(), [&] { return core.Activation().Deactivate(); });
}

STDMETHODIMP InPlaceObject::UIDeactivate() {
  return AtComBoundary(core.Life(), [&] { return core.Activation().DeactivateUi(); });
}

STDMETHODIMP InPlaceObject::SetObjectRects(LPCRECT position, LPCRECT clip) {
  return AtComBoundary(core.Life(), [&] {
    if (position == nullptr || clip == nullptr) return E_POINTER;
    return core.Activation().SetRects(*position, *clip);
  });
}

STDMETHODIMP InPlaceObject::ReactivateAndUndo() { return INPLACE_E_NOTUNDOABLE; }

STDMETHODIMP InPlaceObject::TranslateAccelerator(LPMSG message) {
  return AtComBoundary(core.Life(), [&] {
    if (message == nullptr) return E_POINTER;
    windows::EditorWindow* const content = core.Activation().Content();
    if (content != nullptr && content->TranslateAccelerator(*message)) return S_OK;
    const auto site = core.Site().As<IOleControlSite>();
    return site == nullptr ? S_FALSE : site->TranslateAccelerator(message, KeyModifiers());
  });
}

STDMETHODIMP InPlaceObject::OnFrameWindowActivate(BOOL /*activate*/) { return S_OK; }
STDMETHODIMP InPlaceObject::OnDocWindowActivate(BOOL /*activate*/) { return S_OK; }

// The control has no border tools, so there is nothing to resize.
STDMETHODIMP InPlaceObject::ResizeBorder(LPCRECT /*border*/, IOleInPlaceUIWindow* /*window*/, BOOL /*frame*/) {
  return S_OK;
}

STDMETHODIMP InPlaceObject::EnableModeless(BOOL /*enable*/) { return S_OK; }

}  // namespace kw::activex
