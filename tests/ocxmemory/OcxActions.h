#pragma once

#include <windows.h>

#include <ocidl.h>

#include <memory>
#include <span>
#include <string>

#include "tests/activex/Ocx.h"
#include "tests/activex/StrictContainer.h"
#include "tests/activex/TextBag.h"

namespace kw::test {

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
  TextBag bag;
  std::unique_ptr<StrictContainer> container;
};

// Something that a host or a user does with the control.
struct OcxAction {
  const char* name;
  HRESULT (*act)(Place& place);
  bool isShown;
  bool isOpen;
  // What it does to the control is not undone by doing it again.
  bool needsNewPlace = false;
};

std::span<const OcxAction> OcxActions();

}  // namespace kw::test
