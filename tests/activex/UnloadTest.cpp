// The library in memory and out of it again.

#include <windows.h>

#include <thread>

#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"

namespace kw::test {
namespace {

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

// A control in a container, until both are gone.
void UseControl(HMODULE library, bool isHostFirst) {
  const auto get =
      reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
  ComPtr<IClassFactory> factory;
  ASSERT_HRESULT_SUCCEEDED(get(CLSID_KwEditorLayers, IID_PPV_ARGS(&factory)));
  ComPtr<_KwEditorLayers> control;
  ASSERT_HRESULT_SUCCEEDED(factory->CreateInstance(nullptr, IID_PPV_ARGS(&control)));
  StrictContainer container;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  WNDCLASSEXW found = {};
  found.cbSize = sizeof found;
  EXPECT_NE(GetClassInfoExW(library, L"KwEditorView", &found), FALSE);
  if (isHostFirst) container.DestroyWindowNow();
  container.LetGo();
  control.Reset();
  PumpMessages(20);
}

TEST(Unload, TakesTheWindowClassAlongWhicheverWindowWentFirst) {
  const ScratchFolder scratch;
  const std::wstring path = scratch.File(L"Copy.ocx");
  ASSERT_NE(CopyFileW(Ocx::Path().c_str(), path.c_str(), FALSE), FALSE);
  for (const bool isHostFirst : {false, true, true}) {
    const HMODULE library = LoadLibraryW(path.c_str());
    ASSERT_NE(library, nullptr);
    WNDCLASSEXW found = {};
    found.cbSize = sizeof found;
    // Data of a thread keep the library until the thread ends.
    std::thread user([&] { UseControl(library, isHostFirst); });
    user.join();
    ASSERT_NE(FreeLibrary(library), FALSE);
    EXPECT_EQ(GetModuleHandleW(L"Copy.ocx"), nullptr);
    EXPECT_EQ(GetClassInfoExW(library, L"KwEditorView", &found), FALSE);
  }
}

}  // namespace
}  // namespace kw::test
