#pragma once

#include <windows.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/Sinks.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/ExpectedBoxes.h"
#include "tests/support/win32/AccessibleClient.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/windows/ImportPatch.h"

namespace kw::test {

// A control in a container, and a hand and a host that do anything with it.
class MonkeyHand : public ControlTest {
protected:
  static constexpr int PagesOfTheLongest = 3;

  void SetUp() override;
  void TearDown() override;

  // The numbers that an event draws are its own.
  void Begin(int seed, int event);
  void DoAnything();
  // Handles what is posted. Timers rest, since the clock says when they run, except while something modal is up.
  void Drain();
  // A reported error leaves the control switched off until its host switches it on again.
  void Tidy(int event);

  StrictContainer container;
  EventSink sink;
  HWND editor = nullptr;
  int lastPage = 0;

private:
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); }
  bool IsOneIn(int n) { return Below(n) == 0; }
  template <class Items>
  auto& OneOf(const Items& items) {
    return items[static_cast<std::size_t>(Below(static_cast<int>(std::size(items))))];
  }
  void UseMouseOrKeys();
  void ActAsHost();
  void LetProperty();
  void TakeData();
  void ShowPropertyPage();
  void Open() { control->OpenFile(Text(OneOf(documents))); }
  void TurnPage();
  void Resize();
  void Design();
  void Persist();
  void OnEvent(const std::string& told);
  void CloseWhatIsModal();
  static int WINAPI ShowBox(HWND owner, LPCWSTR text, LPCWSTR title, UINT type);
  static void CALLBACK OnTick(HWND window, UINT message, UINT_PTR id, DWORD time);

  const ImportPatch boxes{Ocx::Library(), "MessageBoxW", &ShowBox};
  std::mt19937 random;
  std::vector<std::wstring> documents;
  ExpectedBoxes expectedBoxes;
  std::unique_ptr<Connection> connection;
  UINT_PTR closer = 0;
  HWND closed = nullptr;
  int closings = 0;
  int depth = 0;
};

}  // namespace kw::test
