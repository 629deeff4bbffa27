#include "tests/ocxmemory/OcxActions.h"

#include <ole2.h>
#include <oleacc.h>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/PaperlessPrinter.h"
#include "tests/support/programs/twain/TestScanner.h"
#include "tests/support/win32/AccessibleClient.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {
namespace {

constexpr LONG FlipVerb = 8;
constexpr LONG RotateVerb = 4;

HRESULT Create(Place& place) {
  ComPtr<_KwEditorLayers> made;
  return place.factory->CreateInstance(nullptr, IID_PPV_ARGS(&made));
}

HRESULT Activate(Place& place) { return place.container->DoVerb(OLEIVERB_UIACTIVATE); }

HRESULT Deactivate(Place& place) {
  const HRESULT result = place.As<IOleInPlaceObject>()->InPlaceDeactivate();
  place.container->DoVerb(OLEIVERB_UIACTIVATE);
  return result;
}

HRESULT Save(Place& place) {
  place.stream->Seek({}, STREAM_SEEK_SET, nullptr);
  return place.As<IPersistStreamInit>()->Save(place.stream.Get(), TRUE);
}

HRESULT Load(Place& place) {
  const HRESULT saved = Save(place);
  place.stream->Seek({}, STREAM_SEEK_SET, nullptr);
  return FAILED(saved) ? saved : place.As<IPersistStreamInit>()->Load(place.stream.Get());
}

HRESULT Open(Place& place) { return place.control->OpenFile(Text(place.path)); }

HRESULT Turn(Place& place) {
  const auto buttons = ToolBarButtons(place.container->ControlWindow());
  for (const char* const way : {"Next Page", "Previous Page"}) {
    const auto found = buttons.find(way);
    if (found != buttons.end() && found->second.IsEnabled()) found->second.Click();
    PumpMessages();
  }
  return S_OK;
}

HRESULT Verb(Place& place, LONG verb) {
  const HRESULT result = place.container->DoVerb(verb);
  return result == OLEOBJ_S_CANNOT_DOVERB_NOW ? S_OK : result;
}
HRESULT Flip(Place& place) { return Verb(place, FlipVerb); }
HRESULT Rotate(Place& place) { return Verb(place, RotateVerb); }

HRESULT GetData(Place& place, CLIPFORMAT id, DWORD medium) {
  FORMATETC format = {id, nullptr, DVASPECT_CONTENT, -1, medium};
  STGMEDIUM given = {};
  const HRESULT result = place.As<IDataObject>()->GetData(&format, &given);
  if (SUCCEEDED(result)) ReleaseStgMedium(&given);
  return result;
}
HRESULT GetBitmap(Place& place) { return GetData(place, CF_DIB, TYMED_HGLOBAL); }
HRESULT GetMetafile(Place& place) { return GetData(place, CF_ENHMETAFILE, TYMED_ENHMF); }

HRESULT Draw(Place& place) {
  const HDC screen = GetDC(nullptr);
  const HDC context = CreateCompatibleDC(screen);
  ReleaseDC(nullptr, screen);
  const RECTL bounds = {0, 0, 200, 150};
  const HRESULT result = place.As<IViewObject>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, context,
                                                       &bounds, nullptr, nullptr, 0);
  DeleteDC(context);
  return result;
}

BOOL CALLBACK Ask(HWND window, LPARAM /*unused*/) {
  if (const Accessible object = AccessibleOf(window)) {
    NameOf(object);
    for (const LONG part : PartsOf(object)) NameOf(object, part);
  }
  return TRUE;
}
HRESULT Accessibles(Place& place) {
  EnumChildWindows(place.container->Window(), &Ask, 0);
  return S_OK;
}

HRESULT Page(Place& place) {
  ComPtr<IPropertyPage2> page;
  HRESULT result = place.pages->CreateInstance(nullptr, IID_PPV_ARGS(&page));
  if (FAILED(result)) return result;
  IUnknown* controls[] = {place.control.Get()};
  result = page->SetObjects(1, controls);
  const RECT bounds = {0, 0, 300, 300};
  if (SUCCEEDED(result)) result = page->Activate(place.container->Window(), &bounds, FALSE);
  if (SUCCEEDED(result)) {
    result = page->Apply();
    page->Deactivate();
  }
  page->SetObjects(0, nullptr);
  return result;
}

HRESULT SaveBag(Place& place) { return place.As<IPersistPropertyBag>()->Save(&place.bag, TRUE, TRUE); }

HRESULT LoadBag(Place& place) {
  const HRESULT saved = SaveBag(place);
  return FAILED(saved) ? saved : place.As<IPersistPropertyBag>()->Load(&place.bag, nullptr);
}

// Each time in a storage of its own.
HRESULT SaveStorage(Place& place) {
  ComPtr<IStorage> storage;
  const HRESULT made = StgCreateDocfile(
      nullptr, STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_DELETEONRELEASE, 0, &storage);
  if (FAILED(made)) return made;
  const auto persist = place.As<IPersistStorage>();
  if (persist->InitNew(storage.Get()) == CO_E_ALREADYINITIALIZED) persist->SaveCompleted(storage.Get());
  const HRESULT saved = persist->Save(storage.Get(), FALSE);
  persist->SaveCompleted(nullptr);
  persist->HandsOffStorage();
  return saved;
}

void Press(const Place& place, const char* toolTip) {
  const auto buttons = ToolBarButtons(place.container->ControlWindow());
  const auto found = buttons.find(toolTip);
  if (found == buttons.end() || !found->second.IsEnabled()) return;
  found->second.Post();
  PumpMessages();
}

void Drag(const Place& place) {
  const HWND canvas = CanvasOf(place.container->ControlWindow());
  if (canvas == nullptr) return;
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  for (const int step : {20, 40, 60}) SendMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(step, step));
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(60, 60));
  PumpMessages();
}

HRESULT Stroke(Place& place) {
  Press(place, "Pen");
  Drag(place);
  return S_OK;
}

HRESULT Stamp(Place& place) {
  Press(place, "Stamp");
  Drag(place);
  return S_OK;
}

HRESULT Print(Place& place) {
  const PaperlessPrinter printer;
  Press(place, "Printer Setup");
  return S_OK;
}

HRESULT Scan(Place& place) {
  const TestScanner scanner;
  EmptyTheClipboard();
  Press(place, "Acquire Image from Scanner");
  return S_OK;
}

HRESULT Paste(Place& place) {
  if (const HWND canvas = CanvasOf(place.container->ControlWindow())) SendMessageW(canvas, WM_CHAR, 'V' - 'A' + 1, 1);
  PumpMessages();
  return S_OK;
}

constexpr OcxAction Actions[] = {
    {"Create", &Create, false, false},
    {"Activate", &Activate, false, false, true},
    {"Deactivate", &Deactivate, true, false, true},
    {"Save", &Save, false, false},
    {"Load", &Load, false, false},
    {"Open", &Open, true, false},
    {"Turn", &Turn, true, true},
    {"Flip", &Flip, true, true},
    {"Rotate", &Rotate, true, true},
    {"GetBitmap", &GetBitmap, false, true},
    {"GetMetafile", &GetMetafile, false, true},
    {"Draw", &Draw, false, true},
    {"Accessibles", &Accessibles, true, true},
    {"PropertyPage", &Page, true, false},
    {"SaveBag", &SaveBag, false, false},
    {"LoadBag", &LoadBag, false, false},
    {"SaveStorage", &SaveStorage, false, false},
    {"Stroke", &Stroke, true, true, true},
    {"Stamp", &Stamp, true, true, true},
    {"Paste", &Paste, true, true},
    {"Print", &Print, true, true},
    {"Scan", &Scan, true, true},
};

}  // namespace

std::span<const OcxAction> OcxActions() { return Actions; }

}  // namespace kw::test
