// The library in memory and out of it again.

#include <windows.h>

#include <ole2.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/activex/Registry.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/Torture.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/SystemObjects.h"

namespace kw::test {
namespace {

constexpr const wchar_t* CopyName = L"Copy.ocx";

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

ComPtr<_KwEditorLayers> ControlOf(HMODULE library) {
  const auto get =
      reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
  ComPtr<IClassFactory> factory;
  EXPECT_HRESULT_SUCCEEDED(get(CLSID_KwEditorLayers, IID_PPV_ARGS(&factory)));
  ComPtr<_KwEditorLayers> control;
  EXPECT_HRESULT_SUCCEEDED(factory->CreateInstance(nullptr, IID_PPV_ARGS(&control)));
  return control;
}

bool HasWindowClass(HMODULE library) {
  WNDCLASSEXW found = {};
  found.cbSize = sizeof found;
  return GetClassInfoExW(library, L"KwEditorView", &found) != FALSE;
}

// A control in a container, until both are gone.
void UseControl(HMODULE library, bool isHostFirst) {
  ComPtr<_KwEditorLayers> control = ControlOf(library);
  ASSERT_NE(control.Get(), nullptr);
  StrictContainer container;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_TRUE(HasWindowClass(library));
  if (isHostFirst) container.DestroyWindowNow();
  container.LetGo();
  control.Reset();
  PumpMessages(20);
}

// A whole life: folder, document, trace, an error and its box, both kinds of timers.
void LiveWholly(_KwEditorLayers& control, const ScratchFolder& folder, const std::wstring& document) {
  const BoxAnswerer user({Times(2, ListOfPendingWork), Once("File Error")});
  StrictContainer container;
  container.Take(&control);
  control.put_AppDir(Text(folder.Path()));
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_EQ(control.OpenFile(Text(document)), S_OK);
  control.OpenFile(Text(folder.File(L"missing.tif")));
  PumpMessages(20);
  container.LetGo();
}

// How many more slots for data of a thread the process can have.
int FreeSlots() {
  std::vector<DWORD> slots;
  for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) slots.push_back(slot);
  for (const DWORD slot : slots) TlsFree(slot);
  return static_cast<int>(slots.size());
}

class Unload : public testing::Test {
protected:
  Unload() : path(scratch.File(CopyName)), document(scratch.WriteTiff(L"document.tif", 2)) {}
  void SetUp() override {
    ASSERT_NE(CopyFileW(Ocx::Path().c_str(), path.c_str(), FALSE), FALSE);
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
  }
  void TearDown() override { OleUninitialize(); }

  // So many lives, after some that let the system fill its caches; nothing of them may stay in the process.
  void LeavesNothing(const std::function<void()>& live) const {
    const int lives = IsTortured() ? 200 : 17;
    for (int i = 0; i < 3; ++i) {
      ASSERT_NO_FATAL_FAILURE(live());
    }
    PumpMessages(100);
    const int slots = FreeSlots();
    const int handles = SystemObjects::CountHandles();
    const int threads = SystemObjects::CountThreads();
    const int gdi = SystemObjects::CountGdi();
    const int user = SystemObjects::CountUser();
    for (int i = 0; i < lives; ++i) {
      ASSERT_NO_FATAL_FAILURE(live());
      ASSERT_EQ(GetModuleHandleW(CopyName), nullptr) << "life " << i;
    }
    PumpMessages(100);
    EXPECT_EQ(FreeSlots(), slots);
    EXPECT_EQ(SystemObjects::CountHandles(), handles);
    EXPECT_EQ(SystemObjects::CountThreads(), threads);
    // The system keeps some of these for later; a leak would show in every life.
    EXPECT_LT(SystemObjects::CountGdi() - gdi, lives);
    EXPECT_LT(SystemObjects::CountUser() - user, lives);
  }

  ScratchFolder scratch;
  std::wstring path;
  std::wstring document;
};

TEST_F(Unload, TakesTheWindowClassAlongWhicheverWindowWentFirst) {
  for (const bool isHostFirst : {false, true, true}) {
    const HMODULE library = LoadLibraryW(path.c_str());
    ASSERT_NE(library, nullptr);
    UseControl(library, isHostFirst);
    ASSERT_NE(FreeLibrary(library), FALSE);
    EXPECT_EQ(GetModuleHandleW(CopyName), nullptr);
    EXPECT_FALSE(HasWindowClass(library));
  }
}

TEST_F(Unload, OfAHostThatLoadsTheLibraryItselfLeavesNothing) {
  LeavesNothing([&] {
    const HMODULE library = LoadLibraryW(path.c_str());
    ASSERT_NE(library, nullptr);
    {
      const ComPtr<_KwEditorLayers> control = ControlOf(library);
      ASSERT_NE(control.Get(), nullptr);
      LiveWholly(*control.Get(), scratch, document);
    }
    ASSERT_NE(FreeLibrary(library), FALSE);
    EXPECT_FALSE(HasWindowClass(library));
  });
}

// A thread that used it lives on: its data keep the library no longer, and it ends in peace.
TEST_F(Unload, IsNotDelayedByAThreadThatUsedIt) {
  const HMODULE library = LoadLibraryW(path.c_str());
  ASSERT_NE(library, nullptr);
  const HANDLE isDone = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const HANDLE mayEnd = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread worker([&] {
    UseControl(library, false);
    SetEvent(isDone);
    WaitForSingleObject(mayEnd, INFINITE);
  });
  WaitForSingleObject(isDone, INFINITE);
  EXPECT_NE(FreeLibrary(library), FALSE);
  EXPECT_EQ(GetModuleHandleW(CopyName), nullptr);
  SetEvent(mayEnd);
  worker.join();
  CloseHandle(isDone);
  CloseHandle(mayEnd);
}

// By a manifest, so that no other test sees it registered.
TEST_F(Unload, ByComLeavesNothing) {
  const std::wstring manifest = scratch.File(L"control.manifest");
  const std::wstring text =
      L"<?xml version='1.0'?><assembly xmlns='urn:schemas-microsoft-com:asm.v1' manifestVersion='1.0'>"
      L"<assemblyIdentity type='win32' name='KwEditorCopy' version='1.0.0.0'/><file name='Copy.ocx'><comClass clsid='" +
      ToText(CLSID_KwEditorLayers) + L"' threadingModel='Apartment'/></file></assembly>";
  std::ofstream(std::filesystem::path(manifest)) << std::string(text.begin(), text.end());
  ACTCTXW description = {};
  description.cbSize = sizeof description;
  description.lpSource = manifest.c_str();
  const HANDLE context = CreateActCtxW(&description);
  ASSERT_NE(context, INVALID_HANDLE_VALUE) << GetLastError();
  LeavesNothing([&] {
    ULONG_PTR cookie = 0;
    ASSERT_NE(ActivateActCtx(context, &cookie), FALSE);
    ComPtr<_KwEditorLayers> control;
    EXPECT_HRESULT_SUCCEEDED(
        CoCreateInstance(CLSID_KwEditorLayers, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&control)));
    DeactivateActCtx(0, cookie);
    ASSERT_NE(control.Get(), nullptr);
    ASSERT_NE(GetModuleHandleW(CopyName), nullptr);
    LiveWholly(*control.Get(), scratch, document);
    control.Reset();
    CoFreeUnusedLibrariesEx(0, 0);
    CoFreeUnusedLibrariesEx(0, 0);
  });
  ReleaseActCtx(context);
}

}  // namespace
}  // namespace kw::test
