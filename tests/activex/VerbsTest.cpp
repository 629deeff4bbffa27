// The commands that a container runs as verbs of the object.

#include <windows.h>

#include <commctrl.h>
#include <olectl.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/activex/CommandFixture.h"
#include "tests/activex/Sinks.h"
#include "tests/support/CommandScene.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/Soon.h"

namespace kw::test {
namespace {

std::vector<CommandCase> VerbRows() {
  std::vector<CommandCase> rows;
  for (const CommandCase& row : CommandCases()) {
    if (row.verb != 0) rows.push_back(row);
  }
  return rows;
}

// No memory of COM can be had while it lives.
class NoTaskMemory final : public IMallocSpy {
public:
  NoTaskMemory() { EXPECT_HRESULT_SUCCEEDED(CoRegisterMallocSpy(this)); }
  NoTaskMemory(const NoTaskMemory&) = delete;
  NoTaskMemory& operator=(const NoTaskMemory&) = delete;
  ~NoTaskMemory() { EXPECT_HRESULT_SUCCEEDED(CoRevokeMallocSpy()); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == IID_IMallocSpy ? this : nullptr;
    return *object == nullptr ? E_NOINTERFACE : S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T /*size*/) override { return 0; }
  STDMETHODIMP_(void*) PostAlloc(void* memory) override { return memory; }
  STDMETHODIMP_(void*) PreFree(void* memory, BOOL /*isSpied*/) override { return memory; }
  STDMETHODIMP_(void) PostFree(BOOL /*isSpied*/) override {}
  STDMETHODIMP_(SIZE_T) PreRealloc(void* memory, SIZE_T size, void** given, BOOL /*isSpied*/) override {
    *given = memory;
    return size;
  }
  STDMETHODIMP_(void*) PostRealloc(void* memory, BOOL /*isSpied*/) override { return memory; }
  STDMETHODIMP_(void*) PreGetSize(void* memory, BOOL /*isSpied*/) override { return memory; }
  STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T size, BOOL /*isSpied*/) override { return size; }
  STDMETHODIMP_(void*) PreDidAlloc(void* memory, BOOL /*isSpied*/) override { return memory; }
  STDMETHODIMP_(int) PostDidAlloc(void* /*memory*/, BOOL /*isSpied*/, int answer) override { return answer; }
  STDMETHODIMP_(void) PreHeapMinimize() override {}
  STDMETHODIMP_(void) PostHeapMinimize() override {}
};

class VerbList : public ControlTest {
protected:
  static std::string Taken(const OLEVERB& verb) {
    const std::wstring text = verb.lpszVerbName;
    CoTaskMemFree(verb.lpszVerbName);
    return std::to_string(verb.lVerb) + " " + std::string(text.begin(), text.end());
  }
};

TEST_F(VerbList, HasTheNineCommandsAndThePropertiesWithTheirMenuTexts) {
  ComPtr<IEnumOLEVERB> verbs;
  ASSERT_EQ(As<IOleObject>()->EnumVerbs(&verbs), S_OK);
  std::vector<std::string> found;
  OLEVERB verb = {};
  while (verbs->Next(1, &verb, nullptr) == S_OK) {
    EXPECT_EQ(verb.fuFlags, static_cast<DWORD>(MF_STRING | MF_ENABLED));
    EXPECT_EQ(verb.grfAttribs, static_cast<DWORD>(OLEVERBATTRIB_ONCONTAINERMENU));
    found.push_back(Taken(verb));
  }
  std::vector<std::string> expected;
  for (const CommandCase& row : VerbRows()) expected.push_back(std::to_string(row.verb) + " " + row.menuText);
  EXPECT_EQ(expected.size(), 9U);
  expected.emplace_back("-7 &Properties...");
  EXPECT_EQ(found, expected);
}

TEST_F(VerbList, IsReadInPiecesAndAgain) {
  ComPtr<IEnumOLEVERB> verbs;
  ASSERT_EQ(As<IOleObject>()->EnumVerbs(&verbs), S_OK);
  OLEVERB some[20] = {};
  ULONG count = 0;
  EXPECT_EQ(verbs->Next(2, static_cast<OLEVERB*>(some), &count), S_OK);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(Taken(some[0]), "1 &Scanner Setup...");
  EXPECT_EQ(Taken(some[1]), "2 &Acquire Image from Scanner...");
  EXPECT_EQ(verbs->Skip(5), S_OK);
  ComPtr<IEnumOLEVERB> same;
  EXPECT_EQ(verbs->Clone(&same), S_OK);
  EXPECT_EQ(verbs->Next(20, static_cast<OLEVERB*>(some), &count), S_FALSE);
  EXPECT_EQ(count, 3U);
  EXPECT_EQ(Taken(some[0]), "8 &Flip Both Ways");
  EXPECT_EQ(Taken(some[1]), "9 &Erode");
  EXPECT_EQ(Taken(some[2]), "-7 &Properties...");
  EXPECT_EQ(same->Next(1, static_cast<OLEVERB*>(some), &count), S_OK);
  EXPECT_EQ(Taken(some[0]), "8 &Flip Both Ways");
  EXPECT_EQ(verbs->Skip(1), S_FALSE);
  EXPECT_EQ(verbs->Reset(), S_OK);
  EXPECT_EQ(verbs->Next(2, static_cast<OLEVERB*>(some), nullptr), E_POINTER);
  EXPECT_EQ(verbs->Next(1, nullptr, &count), E_POINTER);
  EXPECT_EQ(verbs->Next(1, static_cast<OLEVERB*>(some), nullptr), S_OK);
  EXPECT_EQ(Taken(some[0]), "1 &Scanner Setup...");
}

TEST_F(VerbList, HandsOutNothingHalfWithoutMemory) {
  ComPtr<IEnumOLEVERB> verbs;
  ASSERT_EQ(As<IOleObject>()->EnumVerbs(&verbs), S_OK);
  OLEVERB verb = {};
  ULONG count = 7;
  {
    const NoTaskMemory shortage;
    EXPECT_EQ(verbs->Next(1, &verb, &count), E_OUTOFMEMORY);
  }
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(verb.lpszVerbName, nullptr);
  EXPECT_EQ(verbs->Next(1, &verb, &count), S_OK);
  EXPECT_EQ(Taken(verb), "1 &Scanner Setup...") << "the one that was asked for";
}

class VerbCommands : public CommandTest {
protected:
  // Runs the verb and answers what comes up with OK, the boxes as they were shown.
  Names RunVerb(LONG verb, HRESULT expected = S_OK) {
    ForgetTrace();
    const BoxAnswerer user({AnyBox()});
    EXPECT_EQ(container.As<IOleObject>()->DoVerb(verb, nullptr, nullptr, 0, nullptr, nullptr), expected) << verb;
    return user.Boxes();
  }
  void ExpectRun(const CommandCase& row, Names boxes, const Bitmap& page) const {
    Names trace{"ToolbarButtonClick"};
    trace.insert(trace.end(), row.trace.begin(), row.trace.end());
    EXPECT_EQ(Trace(), trace);
    if (!row.dialog.empty() && !boxes.empty()) {
      EXPECT_EQ(boxes.back().substr(0, boxes.back().find(':')), row.dialog);
      boxes.pop_back();
    }
    Names expected;
    for (const CommandBox& box : row.boxes) expected.push_back(ShownAs(box));
    EXPECT_EQ(boxes, expected);
    if (row.operations.empty()) return;
    EXPECT_TRUE(SamePicture(LoadPicture(ScratchBitmap()), page));
  }
};

TEST_F(VerbCommands, RunAsTheirRowsSayWithAWindow) {
  for (const CommandCase& row : VerbRows()) {
    SCOPED_TRACE(row.key);
    SetScene();
    const State before = Look();
    const HWND focus = GetFocus();
    container.calls.clear();
    ExpectRun(row, RunVerb(row.verb), AfterOperations(row.operations));
    State after = After(row, before);
    after.erase("size");
    EXPECT_EQ(Differences(Look(), after), Names{});
    // But for the boxes, nothing was said to the container.
    for (const std::string& call : container.calls) EXPECT_TRUE(call.starts_with("EnableModeless")) << call;
    EXPECT_EQ(GetFocus(), focus);
  }
}

TEST_F(VerbCommands, RunAsTheirRowsSayWithoutAWindow) {
  ASSERT_HRESULT_SUCCEEDED(container.As<IOleInPlaceObject>()->InPlaceDeactivate());
  container.calls.clear();
  std::vector<std::string> operations;
  for (const CommandCase& row : VerbRows()) {
    SCOPED_TRACE(row.key);
    // Each works on what the ones before it left.
    operations.insert(operations.end(), row.operations.begin(), row.operations.end());
    ExpectRun(row, RunVerb(row.verb), AfterOperations(operations));
    EXPECT_EQ(container.ControlWindow(), nullptr);
    EXPECT_TRUE(container.calls.empty());
  }
}

TEST_F(VerbCommands, OfOtherNumbersAreInvalidWhateverTheControlDoes) {
  for (const LONG verb : {10L, 11L, 300L, LONG{MAXLONG}}) {
    EXPECT_EQ(RunVerb(verb, OLEOBJ_S_INVALIDVERB), Names{});
    control->put_Enabled(VARIANT_FALSE);
    EXPECT_EQ(RunVerb(verb, OLEOBJ_S_INVALIDVERB), Names{});
    control->put_Enabled(VARIANT_TRUE);
  }
}

class RefusedVerbs : public VerbCommands {
protected:
  // Every verb is refused now, without a trace of it. Where no box is up, those of a verb that runs are answered.
  void ExpectRefused(const char* why, bool isBoxUp = false) const {
    std::optional<BoxAnswerer> user;
    if (!isBoxUp) user.emplace();
    ForgetTrace();
    const auto object = container.As<IOleObject>();
    for (const CommandCase& row : VerbRows()) {
      EXPECT_EQ(object->DoVerb(row.verb, nullptr, nullptr, 0, nullptr, nullptr), OLEOBJ_S_CANNOT_DOVERB_NOW)
          << why << ": " << row.key;
    }
    EXPECT_EQ(Trace(), Names{}) << why;
    ++refusals;
  }
  void ExpectTaken() { EXPECT_EQ(RunVerb(3), Names{"test_activex: Capture"}); }

  mutable int refusals = 0;
};

TEST_F(RefusedVerbs, WhileTheControlIsDisabledOrNotEditable) {
  control->put_Enabled(VARIANT_FALSE);
  ExpectRefused("disabled");
  control->put_Enabled(VARIANT_TRUE);
  ExpectTaken();
  control->put_IsEditable(VARIANT_FALSE);
  ExpectRefused("not editable");
  control->put_IsEditable(VARIANT_TRUE);
  ExpectTaken();
}

TEST_F(RefusedVerbs, InDesignMode) {
  container.userMode = false;
  ExpectRefused("design mode");
  container.userMode = true;
  ExpectTaken();
  container.userMode.reset();
  ExpectTaken();
  container.hasAmbients = false;
  ExpectTaken();
}

TEST_F(RefusedVerbs, WithoutAPage) {
  container.LetGo();
  control.Reset();
  control = Ocx::Create();
  ASSERT_NE(control.Get(), nullptr);
  container.Take(control.Get());
  ExpectRefused("no page, no window");
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  ExpectRefused("no page");
}

TEST_F(RefusedVerbs, WhileABoxOrADialogIsUp) {
  {
    const Soon later([&] { ExpectRefused("a box", true); });
    Run("Clear", [&](HWND) { Sleep(800); });
  }
  EXPECT_EQ(refusals, 1);
  {
    // Of a verb itself.
    const Soon later([&] { ExpectRefused("the box of a verb", true); });
    const BoxAnswerer user({Once("Capture")}, [&](HWND) { Sleep(800); });
    EXPECT_EQ(container.DoVerb(3), S_OK);
  }
  EXPECT_EQ(refusals, 2);
  for (const char* toolTip : {"Threshold", "Font Settings"}) {
    int boxes = 0;
    const int before = refusals;
    const bool isAsking = std::string(toolTip) == "Threshold";
    const Soon later([&] { ExpectRefused(toolTip, true); });
    Run(toolTip, [&](HWND) {
      ++boxes;
      if (boxes == (isAsking ? 2 : 1)) Sleep(800);
    });
    EXPECT_EQ(boxes, isAsking ? 2 : 1);
    EXPECT_EQ(refusals, before + 1) << toolTip;
  }
  ExpectTaken();
}

TEST_F(RefusedVerbs, InsideAnEvent) {
  EventSink sink;
  sink.onEvent = [&](DISPID, VARIANT*, UINT) { ExpectRefused("an event"); };
  Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  Button("Previous Page").Click();
  EXPECT_EQ(refusals, 1);
  connection.Cut();
  ExpectTaken();
}

TEST_F(RefusedVerbs, WhileSomethingIsDraggedOrPressed) {
  const ToolBarButton& button = Button("Clear");
  RECT place = {};
  SendMessageW(button.bar, TB_GETITEMRECT, static_cast<WPARAM>(button.index), reinterpret_cast<LPARAM>(&place));
  SendMessageW(button.bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.left + 3, place.top + 3));
  ExpectRefused("a pressed button");
  SendMessageW(button.bar, WM_LBUTTONUP, 0, MAKELPARAM(-20, -20));
  ExpectTaken();

  const HWND canvas = WindowFromPoint({30, 100});
  ASSERT_TRUE(IsChild(container.ControlWindow(), canvas) != FALSE);
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
  SendMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(4, 4));
  ExpectRefused("a drag on the canvas");
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
  ExpectTaken();
}

TEST_F(RefusedVerbs, WhileAMenuIsUp) {
  // Too narrow for its buttons, the strip offers the others in a menu.
  const RECT narrow = {0, 0, 200, 400};
  ASSERT_HRESULT_SUCCEEDED(container.As<IOleInPlaceObject>()->SetObjectRects(&narrow, &container.clip));
  PumpMessages();
  const ToolBarButton more = ToolBarButtons(container.ControlWindow())["More Buttons"];
  ASSERT_NE(more.bar, nullptr);
  const Soon later([&] {
    ExpectRefused("a menu");
    EndMenu();
  });
  more.Click();
  EXPECT_EQ(refusals, 1);
  ExpectTaken();
}

}  // namespace
}  // namespace kw::test
