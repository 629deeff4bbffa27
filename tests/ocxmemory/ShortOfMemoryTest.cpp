// Each of the control's own requests for memory fails once, in a real container: the host gets an error code for it,
// the user the box that the trap shows, and the same call succeeds behind it. KW_TORTURE=all tries every request of an
// action up to 2,000 and 200 of those beyond, in a mixed order and for the action's share of KW_TORTURE_MINUTES; else
// some of each are tried. KW_TORTURE_SEED chooses others.

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>
#include <oleacc.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <random>

#include "tests/activex/Fixture.h"
#include "tests/activex/PageFrame.h"
#include "tests/activex/StrictContainer.h"
#include "tests/ocxmemory/OcxMemory.h"
#include "tests/support/win32/AccessibleClient.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {
namespace {

constexpr long EachUpTo = 2000;
constexpr std::size_t DrawnBeyond = 200;
constexpr LONG FlipVerb = 8;
constexpr LONG RotateVerb = 4;

std::string TextOf(const char* variable, const char* otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : text;
}

// A control in a container, with a document of three pages if an action needs one.
class Place {
public:
  Place(const ScratchFolder& scratch, bool isShown, bool isOpen) : path(scratch.WriteTiff(L"scan.tif", 3)) {
    control = Ocx::Create();
    control->put_AppDir(Text(scratch.Path()));
    container = std::make_unique<StrictContainer>();
    container->Take(control.Get());
    if (isShown) container->DoVerb(OLEIVERB_UIACTIVATE);
    if (isOpen) control->OpenFile(Text(path));
    stream.Reset();
    CreateStreamOnHGlobal(nullptr, TRUE, &stream);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  ~Place() {
    if (container != nullptr && container->As<IOleObject>() != nullptr) container->LetGo();
    stream.Reset();
    control.Reset();
    container.reset();
    PumpMessages();
  }

  template <class Interface>
  ComPtr<Interface> As() const {
    ComPtr<Interface> asked;
    control.As(&asked);
    return asked;
  }

  std::wstring path;
  ComPtr<IClassFactory> factory = Ocx::Factory();
  ComPtr<IClassFactory> pages = Ocx::Factory(CLSID_KwEditorPage);
  ComPtr<_KwEditorLayers> control;
  ComPtr<IStream> stream;
  std::unique_ptr<StrictContainer> container;
};

struct OcxAction {
  const char* name;
  HRESULT (*act)(Place& place);
  bool isShown;
  bool isOpen;
  bool needsNewPlace = false;
};

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
};

bool IsLackOfMemory(HRESULT result) {
  constexpr auto control = static_cast<HRESULT>(0x800A0000);
  for (const HRESULT number : {7, 480, 481}) {
    if (result == (control | number)) return true;
  }
  return result == E_OUTOFMEMORY || SUCCEEDED(result);
}

bool IsAboutMemory(const std::string& box) {
  constexpr const char* told[] = {"Error Number : 7/", "There is not enough memory", "Error Number : 91/"};
  return !box.starts_with("Critical Error") ||
         std::ranges::any_of(told, [&](const char* words) { return box.find(words) != std::string::npos; });
}

class OcxShortOfMemory : public testing::TestWithParam<OcxAction> {
protected:
  OcxShortOfMemory() { EXPECT_HRESULT_SUCCEEDED(OleInitialize(nullptr)); }
  ~OcxShortOfMemory() override {
    Ocx::ForgetFolder();
    OleUninitialize();
  }

  struct Result {
    HRESULT code = S_OK;
    long requests = 0;
    HRESULT again = S_OK;
  };
  Result Try(long failing, const BoxAnswerer& user) {
    Result result;
    if (place == nullptr || action.needsNewPlace) {
      place.reset();
      place = std::make_unique<Place>(scratch, action.isShown, action.isOpen);
    }
    {
      const OcxMemory memory(failing);
      result.code = action.act(*place);
      result.requests = memory.Requests();
    }
    PumpMessages();
    for (const std::string& box : user.Boxes()) EXPECT_PRED1(IsAboutMemory, box);
    EXPECT_EQ(place->control->put_Enabled(VARIANT_TRUE), S_OK);
    EXPECT_EQ(place->control->put_IsEditable(VARIANT_TRUE), S_OK);
    result.again = action.act(*place);
    return result;
  }

  // All up to a bound and some beyond, or some.
  static std::vector<long> Chosen(long requests) {
    const bool isAll = TextOf("KW_TORTURE", "some") == "all";
    const long each = isAll ? std::min(requests, EachUpTo) : 0;
    std::vector<long> beyond;
    for (long request = each + 1; request <= requests; ++request) beyond.push_back(request);
    std::vector<long> chosen;
    for (long request = 1; request <= each; ++request) chosen.push_back(request);
    std::mt19937 random(static_cast<unsigned>(std::stoul(TextOf("KW_TORTURE_SEED", "20261122"))));
    std::ranges::sample(beyond, std::back_inserter(chosen), isAll ? DrawnBeyond : 2, random);
    std::ranges::shuffle(chosen, random);
    return chosen;
  }

  const OcxAction action = GetParam();
  ScratchFolder scratch;
  std::unique_ptr<Place> place;
};

TEST_P(OcxShortOfMemory, TheHostGetsACodeAndTheControlWorksOn) {
  long requests = 0;
  {
    const BoxAnswerer user({AnyBox()});  // each result is judged by what the boxes say
    const Result whole = Try(0, user);
    EXPECT_EQ(whole.code, S_OK);
    requests = whole.requests;
  }
  const double minutes = std::stod(TextOf("KW_TORTURE_MINUTES", "1000"));
  const std::chrono::duration<double> share(minutes * 60 / static_cast<double>(std::size(Actions)));
  const auto start = std::chrono::steady_clock::now();
  long tried = 0;
  for (const long failing : Chosen(requests)) {
    if (std::chrono::steady_clock::now() - start > share) break;
    ++tried;
    const BoxAnswerer user({AnyBox()});  // each result is judged by what the boxes say
    const Result result = Try(failing, user);
    EXPECT_PRED1(IsLackOfMemory, result.code);
    EXPECT_EQ(result.again, S_OK);
    ASSERT_FALSE(HasFailure()) << "request " << failing << " of " << requests;
  }
  std::cout << "tried " << tried << " of " << requests << " in " << action.name << "\n";
  place.reset();
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload()) << "something of the control is still alive";
}

INSTANTIATE_TEST_SUITE_P(Actions, OcxShortOfMemory, testing::ValuesIn(Actions),
                         [](const testing::TestParamInfo<OcxAction>& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kw::test
