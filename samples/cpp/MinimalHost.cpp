// run: the least program that shows the control: one window, a site, one event, and the properties kept in a file.
//   KwMinimal.exe FILE SETTINGS
// Its manifest names KwEditor.ocx, which lies beside it. What it has no use for it answers with E_NOTIMPL or S_OK, as
// the interface has it. The control writes its trace into the current folder until AppDir is set.
#include <comdef.h>
#include <shlwapi.h>
#include <wrl/client.h>

#include <string>

#include "KwEditor.h"

namespace {
using _com_util::CheckError;
using Microsoft::WRL::ComPtr;

// The control's place in the window, its frame, and the receiver of its events. It lives as long as the program, so its
// references need no count.
struct Site final : IOleClientSite, IOleInPlaceSite, IOleInPlaceFrame, IDispatch {
  HWND window = nullptr;
  ComPtr<IOleInPlaceObject> place;         // the control while it has a window
  ComPtr<IOleInPlaceActiveObject> active;  // and while it has the keyboard
  // IDispatch is here for the events, whose identifier it has; IID_IDispatch would stand for ambient properties.
  STDMETHODIMP QueryInterface(REFIID iid, void** found) override {
    *found = nullptr;
    if (iid == IID_IUnknown || iid == IID_IOleClientSite) *found = static_cast<IOleClientSite*>(this);
    if (iid == IID_IOleInPlaceSite || iid == IID_IOleWindow) *found = static_cast<IOleInPlaceSite*>(this);
    if (iid == DIID___KwEditorLayers) *found = static_cast<IDispatch*>(this);
    return *found == nullptr ? E_NOINTERFACE : S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 1; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  // IOleClientSite. Arguments without a use have no name: NOLINTBEGIN(readability-named-parameter)
  STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** container) override { return *container = nullptr, E_NOINTERFACE; }
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
  // IOleInPlaceSite: where the control's window goes.
  STDMETHODIMP GetWindow(HWND* asked) override { return *asked = window, S_OK; }
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnUIActivate() override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, RECT* area, RECT* clip,
                                OLEINPLACEFRAMEINFO* info) override {
    *frame = this;
    *document = nullptr;
    GetClientRect(window, area);
    *clip = *area;
    *info = {info->cb, FALSE, window, nullptr, 0};
    return S_OK;
  }
  STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
  STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(const RECT*) override { return S_OK; }
  // IOleInPlaceFrame: who gets the keys first.
  STDMETHODIMP GetBorder(RECT*) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP RequestBorderSpace(const BORDERWIDTHS*) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP SetBorderSpace(const BORDERWIDTHS*) override { return S_OK; }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* taken, const OLECHAR*) override { return active = taken, S_OK; }
  STDMETHODIMP InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) override { return E_NOTIMPL; }
  STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
  STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
  STDMETHODIMP SetStatusText(const OLECHAR*) override { return E_NOTIMPL; }
  STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }
  STDMETHODIMP TranslateAccelerator(MSG*, WORD) override { return S_FALSE; }
  // IDispatch: the events. Arguments are references, the last one comes first.
  STDMETHODIMP GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*, UINT*) override {
    if (event == PageChangedEventId)
      SetWindowTextW(window, (L"Page " + std::to_wstring(*V_I2REF(&arguments->rgvarg[0]))).c_str());
    return S_OK;
  }
};  // NOLINTEND(readability-named-parameter)

Site site;

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const RECT area = {0, 0, LOWORD(lParam), HIWORD(lParam)};
  if (message == WM_SIZE && site.place != nullptr) site.place->SetObjectRects(&area, &area);
  if (message == WM_CLOSE) return PostQuitMessage(0), 0;
  return DefWindowProcW(window, message, wParam, lParam);
}

// The control, with the way out in its order, also after a failure.
struct Control {
  ComPtr<_KwEditorLayers> editor;
  ComPtr<IOleObject> object;
  ComPtr<IConnectionPoint> events;
  DWORD connection = 0;
  ~Control() {
    if (connection != 0) events->Unadvise(connection);
    if (site.place != nullptr) site.place->InPlaceDeactivate();
    site.place.Reset();
    if (object != nullptr) object->Close(OLECLOSE_NOSAVE), object->SetClientSite(nullptr);
  }
};

void Run(const wchar_t* file, const wchar_t* settings) {
  Control control;
  CheckError(CoCreateInstance(CLSID_KwEditorLayers, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&control.editor)));
  CheckError(control.editor.As(&control.object));
  CheckError(control.object->SetClientSite(&site));  // before anything else, as OLEMISC_SETCLIENTSITEFIRST says
  ComPtr<IPersistStreamInit> state;
  ComPtr<IStream> stream;
  CheckError(control.editor.As(&state));
  const bool isKept = PathFileExistsW(settings) != FALSE;
  if (isKept) CheckError(SHCreateStreamOnFileEx(settings, STGM_READ, 0, FALSE, nullptr, &stream));
  CheckError(isKept ? state->Load(stream.Get()) : state->InitNew());
  ComPtr<IConnectionPointContainer> points;
  CheckError(control.editor.As(&points));
  CheckError(points->FindConnectionPoint(DIID___KwEditorLayers, &control.events));
  CheckError(control.events->Advise(static_cast<IDispatch*>(&site), &control.connection));
  RECT area = {};
  GetClientRect(site.window, &area);
  CheckError(control.object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, &site, 0, site.window, &area));
  CheckError(control.editor.As(&site.place));
  CheckError(control.editor->OpenFile(_bstr_t(file)));
  MSG message = {};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    // The control has the first say about keys, else it would miss Tab, arrows and its shortcuts.
    if (site.active != nullptr && site.active->TranslateAccelerator(&message) == S_OK) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  CheckError(SHCreateStreamOnFileEx(settings, STGM_CREATE | STGM_WRITE, FILE_ATTRIBUTE_NORMAL, TRUE, nullptr, &stream));
  CheckError(state->Save(stream.Get(), TRUE));
}
}  // namespace

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, PWSTR /*arguments*/, int /*show*/) try {
  if (__argc != 3) return 2;
  CheckError(OleInitialize(nullptr));
  const WNDCLASSW type = {0, &WindowProcedure, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, L"KwMinimal"};
  RegisterClassW(&type);
  site.window = CreateWindowW(L"KwMinimal", L"No page", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_VISIBLE, 0, 0, 900,
                              700, nullptr, nullptr, nullptr, nullptr);
  Run(__wargv[1], __wargv[2]);
  OleUninitialize();
  return 0;
} catch (const _com_error& error) {
  return MessageBoxW(nullptr, error.ErrorMessage(), L"KwMinimal", MB_ICONERROR);  // 1 for OK
}
