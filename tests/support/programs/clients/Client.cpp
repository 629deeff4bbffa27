// A program that uses the control: Client LIBRARY FOLDER WAY
// It makes a control, names FOLDER as the folder of its files, and goes one of these ways:
//   release    lets go of the control
//   close      has the control in a container, which closes it
//   window     has the control in a container and destroys the container's window
//   unload     lets go of the control and unloads the library
//   nothing    ends while it has the control
//   open FILE  opens the document and lets go of the control
// Boxes that come up are answered and written to the output, one a line. The exit code is 7 if the program came to
// its own end.

#include <windows.h>

#include <ole2.h>

#include <cstdio>
#include <string>

#include "activex/KwEditor.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace {

enum ExitCode { ItsOwnEnd = 7, NoLibrary = 20, NoControl, NoFolder, NoContainer, NotUnloaded, NotOpened };

template <class Wanted>
Wanted Find(HMODULE library, const char* name) {
  return reinterpret_cast<Wanted>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

_KwEditorLayers* CreateControl(HMODULE library) {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto get = Find<GetClassObject>(library, "DllGetClassObject");
  IClassFactory* factory = nullptr;
  if (get == nullptr || FAILED(get(CLSID_KwEditorLayers, IID_IClassFactory, reinterpret_cast<void**>(&factory)))) {
    return nullptr;
  }
  _KwEditorLayers* control = nullptr;
  factory->CreateInstance(nullptr, IID__KwEditorLayers, reinterpret_cast<void**>(&control));
  factory->Release();
  return control;
}

// The container of the system's ATL library in a window of its own.
HWND Contain(IUnknown* control) {
  using Attach = HRESULT(WINAPI*)(IUnknown*, HWND, IUnknown**);
  HMODULE atl = LoadLibraryW(L"atl100.dll");
  if (atl == nullptr) atl = LoadLibraryW(L"atl.dll");
  const auto attach = atl == nullptr ? nullptr : Find<Attach>(atl, "AtlAxAttachControl");
  const HWND window = CreateWindowExW(0, L"Static", L"Host", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 500, 400,
                                      nullptr, nullptr, nullptr, nullptr);
  IUnknown* container = nullptr;
  if (attach == nullptr || FAILED(attach(control, window, &container))) return nullptr;
  container->Release();
  return GetWindow(window, GW_CHILD) == nullptr ? nullptr : window;
}

void Close(IUnknown* control) {
  IOleObject* object = nullptr;
  if (FAILED(control->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&object)))) return;
  object->Close(OLECLOSE_NOSAVE);
  object->Release();
}

// A string for one call.
class Text {
public:
  explicit Text(const std::wstring& text) : value(SysAllocString(text.c_str())) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(value); }
  BSTR Value() const { return value; }

private:
  BSTR value;
};

int Run(const std::wstring& libraryPath, const std::wstring& folder, const std::wstring& way,
        const std::wstring& file) {
  const HMODULE library = LoadLibraryW(libraryPath.c_str());
  if (library == nullptr) return NoLibrary;
  _KwEditorLayers* const control = CreateControl(library);
  if (control == nullptr) return NoControl;
  HWND window = nullptr;
  if (way == L"close" || way == L"window") {
    window = Contain(control);
    if (window == nullptr) return NoContainer;
  }
  if (FAILED(control->put_AppDir(Text(folder).Value()))) return NoFolder;
  if (way == L"nothing") return ItsOwnEnd;

  const kw::test::BoxAnswerer user({kw::test::AnyBox()});
  if (way == L"open" && FAILED(control->OpenFile(Text(file).Value()))) return NotOpened;
  if (way == L"close") Close(control);
  if (window != nullptr) DestroyWindow(window);
  control->Release();
  for (const std::string& box : user.Boxes()) std::puts(box.c_str());
  if (way == L"unload") {
    using CanUnload = HRESULT(STDAPICALLTYPE*)();
    if (Find<CanUnload>(library, "DllCanUnloadNow")() != S_OK) return NotUnloaded;
    FreeLibrary(library);
  }
  return ItsOwnEnd;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 4 || FAILED(OleInitialize(nullptr))) return 2;
  const std::wstring way = arguments[3];
  const int code = Run(arguments[1], arguments[2], way, count > 4 ? arguments[4] : L"");
  if (way != L"nothing") OleUninitialize();
  return code;
}
