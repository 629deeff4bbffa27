#include "ControlSite.h"

#include <olectl.h>

namespace kw::host {
namespace {

template <class Interface>
HRESULT NoObject(Interface** object, HRESULT reason) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  return reason;
}

HRESULT Answer(VARIANT& result, bool value) {
  V_VT(&result) = VT_BOOL;
  V_BOOL(&result) = value ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

// The number of a colour of the system, not its value: a control that keeps it follows when the user changes the
// colour.
HRESULT Answer(VARIANT& result, int systemColour) {
  constexpr ULONG ofTheSystem = 0x80000000U;
  V_VT(&result) = VT_I4;
  V_I4(&result) = static_cast<LONG>(ofTheSystem | static_cast<ULONG>(systemColour));
  return S_OK;
}

HRESULT AnswerFont(VARIANT& result) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  const LOGFONTW& font = metrics.lfMessageFont;
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = metrics.lfMessageFont.lfFaceName;
  // In points, with four decimal places.
  description.cySize.int64 =
      MulDiv(font.lfHeight < 0 ? -font.lfHeight : font.lfHeight, 72 * 10000, static_cast<int>(GetDpiForSystem()));
  description.sWeight = static_cast<SHORT>(font.lfWeight);
  description.sCharset = font.lfCharSet;
  V_VT(&result) = VT_DISPATCH;
  V_DISPATCH(&result) = nullptr;
  return OleCreateFontIndirect(&description, IID_IDispatch, reinterpret_cast<void**>(&V_DISPATCH(&result)));
}

}  // namespace

STDMETHODIMP ControlFrame::QueryInterface(REFIID iid, void** object) {
  const bool isBase = iid == IID_IOleWindow || iid == IID_IOleInPlaceUIWindow;
  return ComObject::QueryInterface(isBase ? IID_IOleInPlaceFrame : iid, object);
}

STDMETHODIMP ControlFrame::GetWindow(HWND* window) {
  if (window == nullptr) return E_POINTER;
  *window = container.Window();
  return S_OK;
}

STDMETHODIMP ControlFrame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR /*name*/) {
  active = object;
  return S_OK;
}

STDMETHODIMP ControlFrame::EnableModeless(BOOL enable) {
  container.ControlIsModal(enable == FALSE);
  return S_OK;
}

STDMETHODIMP ControlSite::QueryInterface(REFIID iid, void** object) {
  return ComObject::QueryInterface(iid == IID_IOleWindow ? IID_IOleInPlaceSite : iid, object);
}

STDMETHODIMP ControlSite::GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** moniker) {
  return NoObject(moniker, E_NOTIMPL);
}
STDMETHODIMP ControlSite::GetContainer(IOleContainer** object) { return NoObject(object, E_NOINTERFACE); }
STDMETHODIMP ControlSite::GetExtendedControl(IDispatch** extended) { return NoObject(extended, E_NOTIMPL); }

STDMETHODIMP ControlSite::GetWindow(HWND* window) { return frame->GetWindow(window); }

STDMETHODIMP ControlSite::GetWindowContext(IOleInPlaceFrame** windowFrame, IOleInPlaceUIWindow** document,
                                           LPRECT position, LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
  if (windowFrame == nullptr || document == nullptr || position == nullptr || clip == nullptr || info == nullptr)
    return E_POINTER;
  frame.CopyTo(windowFrame);
  *document = nullptr;  // the frame is the document window too
  *position = container.ControlArea();
  *clip = *position;
  info->fMDIApp = FALSE;
  info->hwndFrame = container.Window();
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

STDMETHODIMP ControlSite::TranslateAccelerator(MSG* message, DWORD /*modifiers*/) {
  if (message == nullptr) return E_POINTER;
  if (message->message != WM_KEYDOWN || message->wParam != VK_TAB || GetKeyState(VK_CONTROL) < 0) return S_FALSE;
  container.LeaveControl(GetKeyState(VK_SHIFT) < 0);
  return S_OK;
}

STDMETHODIMP ControlSite::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

// The ambient properties.
STDMETHODIMP ControlSite::Invoke(DISPID id, REFIID, LCID /*locale*/, WORD flags, DISPPARAMS* /*parameters*/,
                                 VARIANT* result, EXCEPINFO* /*exception*/, UINT* /*badArgument*/) {
  if ((flags & DISPATCH_PROPERTYGET) == 0) return DISP_E_MEMBERNOTFOUND;
  if (result == nullptr) return E_POINTER;
  VariantInit(result);
  switch (id) {
    case DISPID_AMBIENT_USERMODE:  // a running program, not a designer
      return Answer(*result, true);
    case DISPID_AMBIENT_UIDEAD:
    case DISPID_AMBIENT_SHOWGRABHANDLES:
    case DISPID_AMBIENT_SHOWHATCHING:
    case DISPID_AMBIENT_DISPLAYASDEFAULT:
      return Answer(*result, false);
    case DISPID_AMBIENT_BACKCOLOR:
      return Answer(*result, COLOR_BTNFACE);
    case DISPID_AMBIENT_FORECOLOR:
      return Answer(*result, COLOR_BTNTEXT);
    case DISPID_AMBIENT_FONT:
      return AnswerFont(*result);
    case DISPID_AMBIENT_LOCALEID:
      V_VT(result) = VT_I4;
      V_I4(result) = static_cast<LONG>(GetUserDefaultLCID());
      return S_OK;
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

}  // namespace kw::host
