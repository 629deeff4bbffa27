#include "EditorControl.h"

#include <olectl.h>
#include <shlwapi.h>

#include <filesystem>
#include <utility>

#include "Resource.h"
#include "StreamFile.h"

namespace kw::host {
namespace {

using Microsoft::WRL::ComPtr;

void Check(HRESULT result, const wchar_t* step) {
  if (FAILED(result)) throw ControlError{std::wstring(step) + L" failed.\n" + ErrorText(result)};
}

std::filesystem::path ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  while (GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())) == path.size())
    path.resize(path.size() * 2);
  return std::filesystem::path(path.c_str()).parent_path();
}

// While it lives, COM finds the control by the manifest KwEditor.manifest, with no entry in the registry. Where no
// KwEditor.ocx lies beside the program it changes nothing, and the registered control is found.
class WithoutRegistration {
public:
  WithoutRegistration() {
    if (!std::filesystem::exists(ProgramFolder() / L"KwEditor.ocx")) return;
    ACTCTXW request = {};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.hModule = GetModuleHandleW(nullptr);
    request.lpResourceName = MAKEINTRESOURCEW(EDITOR_MANIFEST);
    context = CreateActCtxW(&request);
    if (context != INVALID_HANDLE_VALUE) isActive = ActivateActCtx(context, &cookie) != FALSE;
  }
  ~WithoutRegistration() {
    if (isActive) DeactivateActCtx(0, cookie);
    if (context != INVALID_HANDLE_VALUE) ReleaseActCtx(context);
  }
  WithoutRegistration(const WithoutRegistration&) = delete;
  WithoutRegistration& operator=(const WithoutRegistration&) = delete;

private:
  HANDLE context = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie = 0;
  bool isActive = false;
};

}  // namespace

EditorControl::EditorControl(Container& owner, std::wstring settings)
    : container(owner), settingsFile(std::move(settings)) {
  {
    const WithoutRegistration manifest;
    Check(CoCreateInstance(CLSID_KwEditorLayers, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&editor)),
          L"Making the control (is KwEditor.ocx registered, or beside KwHost.exe?)");
  }
  Check(editor.As(&object), L"Asking for IOleObject");
  frame.Attach(new ControlFrame(container));
  site.Attach(new ControlSite(container, *frame.Get(), [this] { return Save(); }));
  Check(object->SetClientSite(site.Get()), L"Siting the control");
  SetHostNames({});
  LoadOrInitialise();
  ConnectSinks();
  const RECT area = container.ControlArea();
  Check(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Get(), 0, container.Window(), &area),
        L"Activating the control");
  Check(editor.As(&place), L"Asking for IOleInPlaceObject");
}

// A control gets its properties once, before it is used: from where they were saved, or as a new one.
void EditorControl::LoadOrInitialise() {
  ComPtr<IPersistStreamInit> persistence;
  Check(editor.As(&persistence), L"Asking for IPersistStreamInit");
  ComPtr<IStream> file;
  if (settingsFile.empty() || !std::filesystem::exists(settingsFile))
    return Check(persistence->InitNew(), L"Initialising the control");
  Check(SHCreateStreamOnFileEx(settingsFile.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, 0, FALSE, nullptr, &file),
        L"Opening the file of settings");
  CLSID id = {};
  Check(ReadClassStm(file.Get(), &id), L"Reading the file of settings");
  Check(id == CLSID_KwEditorLayers ? S_OK : STG_E_INVALIDHEADER, L"Reading the file of settings");
  Check(persistence->Load(file.Get()), L"Loading the control");
  isLoaded = true;
}

HRESULT EditorControl::Save() const {
  if (settingsFile.empty()) return S_FALSE;
  ComPtr<IPersistStreamInit> persistence;
  const HRESULT asked = editor.As(&persistence);
  if (FAILED(asked)) return asked;
  return WriteFileByStream(settingsFile, [&persistence](IStream& stream) {
    const HRESULT named = WriteClassStm(&stream, CLSID_KwEditorLayers);
    return FAILED(named) ? named : persistence->Save(&stream, TRUE);
  });
}

HRESULT EditorControl::SaveIfDirty() const {
  ComPtr<IPersistStreamInit> persistence;
  const HRESULT asked = editor.As(&persistence);
  if (FAILED(asked)) return asked;
  return persistence->IsDirty() == S_OK ? Save() : S_FALSE;
}

void EditorControl::ConnectSinks() {
  ComPtr<ITypeInfo> members;
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> eventInfo;
  UINT index = 0;
  Check(editor->GetTypeInfo(0, LOCALE_USER_DEFAULT, &members), L"Asking for the type information");
  Check(members->GetContainingTypeLib(&library, &index), L"Asking for the type library");
  Check(library->GetTypeInfoOfGuid(DIID___KwEditorLayers, &eventInfo), L"Finding the events in the type library");
  ComPtr<EventSink> eventSink;
  ComPtr<PropertySink> propertySink;
  eventSink.Attach(new EventSink(container, *eventInfo.Get(), DIID___KwEditorLayers));
  propertySink.Attach(new PropertySink(container));
  try {
    events.emplace(*editor.Get(), DIID___KwEditorLayers, *eventSink.Get());
    properties.emplace(*editor.Get(), IID_IPropertyNotifySink, *propertySink.Get());
  } catch (const _com_error& error) {
    Check(error.Error(), L"Connecting to the events of the control");
  }
}

EditorControl::FrozenEvents::FrozenEvents(const EditorControl& control) {
  if (SUCCEEDED(control.editor.As(&frozen))) frozen->FreezeEvents(TRUE);
}

EditorControl::FrozenEvents::~FrozenEvents() {
  if (frozen != nullptr) frozen->FreezeEvents(FALSE);
}

void EditorControl::SetHostNames(const std::wstring& document) const {
  object->SetHostNames(L"KwHost", document.empty() ? nullptr : document.c_str());
}

void EditorControl::SystemChanged(UINT message, WPARAM wParam, LPARAM lParam) const {
  HWND window = nullptr;
  if (SUCCEEDED(place->GetWindow(&window))) SendMessageW(window, message, wParam, lParam);
  ComPtr<IOleControl> control;
  if (FAILED(editor.As(&control))) return;
  for (const DISPID ambient : {DISPID_AMBIENT_BACKCOLOR, DISPID_AMBIENT_FORECOLOR, DISPID_AMBIENT_FONT})
    control->OnAmbientPropertyChange(ambient);
}

EditorControl::~EditorControl() {
  events.reset();
  properties.reset();
  if (place != nullptr) place->InPlaceDeactivate();
  if (object != nullptr) {
    object->Close(OLECLOSE_NOSAVE);
    object->SetClientSite(nullptr);
  }
}

std::vector<Property> EditorControl::Properties() const {
  ComPtr<ITypeInfo> info;
  Check(editor->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), L"Asking for the type information");
  return SettableProperties(*info.Get());
}

std::vector<EditorControl::Verb> EditorControl::Verbs() const {
  std::vector<Verb> verbs;
  ComPtr<IEnumOLEVERB> enumerator;
  if (FAILED(object->EnumVerbs(&enumerator))) return verbs;
  OLEVERB verb = {};
  while (enumerator->Next(1, &verb, nullptr) == S_OK) {
    if (verb.lVerb > 0 && (verb.grfAttribs & OLEVERBATTRIB_ONCONTAINERMENU) != 0)
      verbs.push_back({verb.lVerb, verb.lpszVerbName, verb.fuFlags});
    CoTaskMemFree(verb.lpszVerbName);
  }
  return verbs;
}

HRESULT EditorControl::RunVerb(LONG number) const {
  const RECT area = container.ControlArea();
  return object->DoVerb(number, nullptr, site.Get(), 0, container.Window(), &area);
}

void EditorControl::Move() const {
  const RECT area = container.ControlArea();
  place->SetObjectRects(&area, &area);
}

void EditorControl::ActivateUi() const {
  const RECT area = container.ControlArea();
  object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, site.Get(), 0, container.Window(), &area);
}

void EditorControl::DeactivateUi() const { place->UIDeactivate(); }

bool EditorControl::TranslateAccelerator(MSG& message) const {
  if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
  IOleInPlaceActiveObject* const active = frame->ActiveObject();
  HWND window = nullptr;
  if (active == nullptr || FAILED(place->GetWindow(&window))) return false;
  if (message.hwnd != window && IsChild(window, message.hwnd) == FALSE) return false;
  return active->TranslateAccelerator(&message) == S_OK;
}

}  // namespace kw::host
