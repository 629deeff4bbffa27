// Uses the control by a manifest alone: ManifestClient KwEditor.manifest FOLDER
// FOLDER takes the control's files and ends in a backslash. The interface goes to another apartment and is used there,
// for which the manifest has to name its marshaller. Ends with 42; any other code is the step that failed.

#include <windows.h>

#include <ole2.h>

#include <initguid.h>

#include "activex/KwEditor.h"

namespace {

enum Step : int { Success = 42, Arguments = 1, Context, Registered, Creation, Folder, Marshalling, Called };

int step = Arguments;

// Lets calls from the other apartment in until the thread has ended.
void ServeUntil(HANDLE thread) {
  while (MsgWaitForMultipleObjects(1, &thread, FALSE, 20000, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
  }
}

struct Visit {
  IStream* stream;
  HANDLE context;
};

// The other apartment: reads and writes a property through a proxy.
DWORD WINAPI Call(void* argument) {
  const Visit& visit = *static_cast<Visit*>(argument);
  ULONG_PTR cookie = 0;
  ActivateActCtx(visit.context, &cookie);
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  _KwEditorLayers* editor = nullptr;
  HRESULT result = CoGetInterfaceAndReleaseStream(visit.stream, IID__KwEditorLayers, reinterpret_cast<void**>(&editor));
  if (SUCCEEDED(result)) {
    result = editor->put_MaxUndoLevels(17);
    short levels = 0;
    if (SUCCEEDED(result)) result = editor->get_MaxUndoLevels(&levels);
    if (SUCCEEDED(result) && levels != 17) result = E_FAIL;
    editor->Release();
  }
  CoUninitialize();
  DeactivateActCtx(0, cookie);
  return static_cast<DWORD>(result);
}

int Use(const wchar_t* manifest, const wchar_t* folder) {
  step = Context;
  ACTCTXW description = {};
  description.cbSize = sizeof description;
  description.lpSource = manifest;
  const HANDLE context = CreateActCtxW(&description);
  if (context == INVALID_HANDLE_VALUE) return step;
  step = Registered;
  HKEY key = nullptr;
  const wchar_t* const name = L"CLSID\\{68034BF5-A1E1-413F-8FB1-FA19204BC7A4}";
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, name, 0, KEY_READ, &key) == ERROR_SUCCESS) return step;
  ULONG_PTR cookie = 0;
  ActivateActCtx(context, &cookie);

  step = Creation;
  _KwEditorLayers* editor = nullptr;
  if (FAILED(CoCreateInstance(CLSID_KwEditorLayers, nullptr, CLSCTX_INPROC_SERVER, IID__KwEditorLayers,
                              reinterpret_cast<void**>(&editor))))
    return step;
  step = Folder;
  BSTR path = SysAllocString(folder);
  if (FAILED(editor->put_AppDir(path))) return step;
  SysFreeString(path);

  step = Marshalling;
  Visit visit{nullptr, context};
  if (FAILED(CoMarshalInterThreadInterfaceInStream(IID__KwEditorLayers, editor, &visit.stream))) return step;
  const HANDLE thread = CreateThread(nullptr, 0, &Call, &visit, 0, nullptr);
  ServeUntil(thread);
  step = Called;
  auto result = static_cast<DWORD>(E_FAIL);
  GetExitCodeThread(thread, &result);
  short levels = 0;
  if (FAILED(static_cast<HRESULT>(result)) || FAILED(editor->get_MaxUndoLevels(&levels)) || levels != 17) return step;
  editor->Release();
  return Success;
}

}  // namespace

int wmain(int count, wchar_t** words) {
  if (count != 3 || FAILED(OleInitialize(nullptr))) return Arguments;
  return Use(words[1], words[2]);
}
