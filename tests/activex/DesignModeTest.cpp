// The control in a container that designs its form.

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>
#include <olectl.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/activex/Designer.h"
#include "tests/activex/Sinks.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

constexpr DWORD LongerThanTheDefaultToolsWait = 2600;

TEST_F(Designer, ACreatedControlThatNobodyUsesLeavesNothing) {
  control.Reset();
  EXPECT_EQ(Files(), std::set<std::string>());
}

TEST_F(Designer, TheControlWaits) {
  const BoxAnswerer user;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  const HWND window = container.ControlWindow();
  EXPECT_NE(IsWindowVisible(window), FALSE);
  EXPECT_EQ(IsWindowEnabled(window), FALSE);
  control->put_BGImage(Text(scratch.WriteBitmap(L"back.bmp", 20, 20, [](int, int) { return RGB(9, 9, 9); })));
  control->put_SignatureFilePath(Text(scratch.File(L"back.bmp")));
  control->put_IsToLightenBackImage(VARIANT_TRUE);
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  Drawn(control);
  PumpMessages(LongerThanTheDefaultToolsWait);
  EXPECT_TRUE(user.Boxes().empty());
  EXPECT_EQ(Files(), std::set<std::string>{"back.bmp"});
  container.LetGo();
  control.Reset();
  EXPECT_EQ(Files(), std::set<std::string>{"back.bmp"});
}

TEST_F(Designer, NeitherAClickNorTheFocusActivatesIt) {
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  const HWND window = container.ControlWindow();
  SendMessageW(window, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(container.Window()),
               MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
  SetFocus(window);
  SendMessageW(window, WM_SETFOCUS, 0, 0);
  PumpMessages(50);
  EXPECT_EQ(container.ActiveObject(), nullptr);
  container.LetGo();
}

TEST_F(Designer, SeesTheFormAsItStarts) {
  container.Take(control.Get());
  const auto designed = Drawn(control);
  EXPECT_GT(std::set<DWORD>(designed.begin(), designed.end()).size(), 3U) << "a form of one colour is none";
  StrictContainer running;
  const auto other = Ocx::Create();
  running.Take(other.Get());
  EXPECT_EQ(designed, Drawn(other));
  control->put_IsToolboxVisible(VARIANT_FALSE);
  EXPECT_NE(designed, Drawn(control));
  running.LetGo();
  container.LetGo();
}

TEST_F(Designer, IsToldOfEachValue) {
  PropertySink sink;
  const Connection connection(control.Get(), IID_IPropertyNotifySink, &sink);
  container.Take(control.Get());
  EXPECT_TRUE(sink.changed.empty()) << "a new control has changed nothing";
  EXPECT_EQ(As<IPersistStreamInit>()->IsDirty(), S_FALSE);
  control->put_BGImage(Text(L"C:\\back.bmp"));
  EXPECT_EQ(As<IPersistStreamInit>()->IsDirty(), S_FALSE) << "it is not persisted";
  control->put_IsEditable(VARIANT_FALSE);
  EXPECT_EQ(As<IPersistStreamInit>()->IsDirty(), S_OK);
  EXPECT_EQ(sink.changed, (std::vector<DISPID>{EditorBGImageId, EditorIsEditableId}));
  EXPECT_FALSE(IsTrue(&_KwEditorLayers::get_IsEditable));
  container.LetGo();
}

TEST_F(Designer, SavesANewControlAsARunningOneIsSaved) {
  container.Take(control.Get());
  StrictContainer running;
  const auto other = Ocx::Create();
  running.Take(other.Get());
  EXPECT_EQ(Saved(control), Saved(other));
  running.LetGo();
  container.LetGo();
}

TEST_F(Designer, LoadsAndSavesTheTenValues) {
  container.Take(control.Get());
  control->put_Enabled(VARIANT_FALSE);
  control->put_MaxUndoLevels(23);
  control->put_IsEditable(VARIANT_FALSE);
  control->put_IsToolboxVisible(VARIANT_TRUE);
  control->put_IsOpenButtonVisible(VARIANT_TRUE);
  control->put_IsSaveButtonEnabled(VARIANT_FALSE);
  control->put_AppDir(Text(scratch.File(L"work\\")));
  control->put_IsToAllowChooseColor(VARIANT_TRUE);
  control->put_IsToSaveAsMultiPageFile(VARIANT_TRUE);
  control->put_IsToLightenBackImage(VARIANT_TRUE);
  const std::string bytes = Saved(control);
  StrictContainer next;
  next.userMode = false;
  const auto copy = Ocx::Create();
  next.Take(copy.Get());
  ASSERT_EQ(Load(copy, bytes), S_OK);
  EXPECT_EQ(Saved(copy), bytes);
  short levels = 0;
  BSTR folder = nullptr;
  EXPECT_EQ(copy->get_MaxUndoLevels(&levels), S_OK);
  EXPECT_EQ(copy->get_AppDir(&folder), S_OK);
  EXPECT_EQ(levels, 23);
  EXPECT_EQ(Take(folder), scratch.File(L"work\\"));
  EXPECT_EQ(Drawn(copy), Drawn(control));
  next.LetGo();
  container.LetGo();
  EXPECT_EQ(Files(), std::set<std::string>());
}

TEST_F(Designer, IsRefusedItsMethodsAndVerbs) {
  container.Take(control.Get());
  const BoxAnswerer user;
  EXPECT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"D.tif", 2))), CTL_E_ILLEGALFUNCTIONCALL);
  ComPtr<IErrorInfo> error;
  ASSERT_EQ(GetErrorInfo(0, &error), S_OK);
  BSTR text = nullptr;
  error->GetDescription(&text);
  EXPECT_EQ(Take(text), L"OpenFile is not available in design mode");
  EXPECT_EQ(control->SavePage(), CTL_E_ILLEGALFUNCTIONCALL);
  SetErrorInfo(0, nullptr);
  EXPECT_EQ(container.DoVerb(9), OLEOBJ_S_CANNOT_DOVERB_NOW);
  EXPECT_TRUE(IsTrue(&_KwEditorLayers::get_Enabled)) << "that was no error of the control";
  EXPECT_TRUE(user.Boxes().empty());
  container.LetGo();
  EXPECT_EQ(Files(), std::set<std::string>{"D.tif"});
}

TEST_F(Designer, RunsTheFormAndTheControlStartsWithItsValues) {
  container.Take(control.Get());
  control->put_BGImage(Text(scratch.WriteBitmap(L"back.bmp", 20, 20, [](int, int) { return RGB(9, 9, 9); })));
  control->put_MaxUndoLevels(9);
  control->put_Enabled(VARIANT_TRUE);
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  container.SetUserMode(true);
  const std::vector<std::string> values = {"Let Enabled", "Let MaxUndoLevels", "Let BackGroundImage",
                                           "Get IsToLightenBackImage", "UpdateAndZoom"};
  const std::vector<std::string> trace = Trace();
  ASSERT_GT(trace.size(), values.size() + 4);
  EXPECT_EQ(trace[3], "UserControl_Initialize");
  EXPECT_EQ(std::vector<std::string>(trace.end() - std::ssize(values), trace.end()), values);
  EXPECT_EQ(TracedTimes(scratch.Path(), "Let BackGroundImage"), 2) << "one of them is the start-up's";
  EXPECT_NE(IsWindowEnabled(container.ControlWindow()), FALSE);
  PumpMessages(LongerThanTheDefaultToolsWait);
  EXPECT_EQ(TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer"), 1);
  SendMessageW(container.ControlWindow(), WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(container.Window()),
               MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
  EXPECT_NE(container.ActiveObject(), nullptr);
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"D.tif", 2))), S_OK);
  container.LetGo();
  control.Reset();
  EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_Terminate"), 1);
}

TEST_F(Designer, StopsARunningControl) {
  container.userMode = true;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  container.SetUserMode(false);
  const auto trace = Trace();
  EXPECT_FALSE(trace.empty());
  RedrawWindow(container.ControlWindow(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  PumpMessages(LongerThanTheDefaultToolsWait);
  EXPECT_EQ(Trace(), trace);
  EXPECT_EQ(IsWindowEnabled(container.ControlWindow()), FALSE);
  container.SetUserMode(true);
  EXPECT_TRUE(PumpUntil([&] { return TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer") == 1; }));
  EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_Initialize"), 1);
  container.LetGo();
}

// It may forget to tell of the change, but asks for verbs.
TEST_F(Designer, IsAskedAgainWithEachVerb) {
  container.Take(control.Get());
  container.userMode = true;
  EXPECT_EQ(Files(), std::set<std::string>());
  ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_Initialize"), 1);
  container.LetGo();
}

TEST_F(Designer, MayTakeTheSiteAwayInItsAnswer) {
  container.onUserMode = [&] {
    container.onUserMode = {};
    As<IOleObject>()->SetClientSite(nullptr);
  };
  EXPECT_EQ(As<IOleObject>()->SetClientSite(&container), S_OK);
  EXPECT_EQ(container.References(), 1U);
  EXPECT_EQ(Files(), std::set<std::string>()) << "a container that went has not said that it runs";
  EXPECT_EQ(control->put_MaxUndoLevels(7), S_OK);
  EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_Initialize"), 1);
}

TEST_F(Designer, MayLetGoInItsAnswerAndInANotification) {
  container.onUserMode = [&] { control.Reset(); };
  EXPECT_EQ(As<IOleObject>()->SetClientSite(&container), S_OK);
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload());
  EXPECT_EQ(Files(), std::set<std::string>());
  container.onUserMode = {};
  control = Ocx::Create();
  PropertySink sink;
  Connection connection(control.Get(), IID_IPropertyNotifySink, &sink);
  connection.Forget();
  container.Take(control.Get());
  sink.onChanged = [&](DISPID) {
    container.LetGo();
    control.Reset();
  };
  EXPECT_EQ(control.Get()->put_IsEditable(VARIANT_FALSE), S_OK);
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload());
  EXPECT_EQ(Files(), std::set<std::string>());
}

TEST_F(Designer, MayRunTheFormInsideANotification) {
  PropertySink sink;
  const Connection connection(control.Get(), IID_IPropertyNotifySink, &sink);
  container.Take(control.Get());
  sink.onChanged = [&](DISPID) {
    sink.onChanged = {};
    container.SetUserMode(true);
  };
  EXPECT_EQ(control->put_IsOpenButtonVisible(VARIANT_TRUE), S_OK);
  EXPECT_TRUE(IsTrue(&_KwEditorLayers::get_IsOpenButtonVisible));
  EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_Initialize"), 1);
  container.LetGo();
}

TEST_F(Designer, MayGoBeforeTheControl) {
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  container.DestroyWindowNow();
  EXPECT_EQ(control->put_IsEditable(VARIANT_FALSE), S_OK);
  container.LetGo();
  EXPECT_EQ(control->put_MaxUndoLevels(7), S_OK);
  control.Reset();
  EXPECT_EQ(Files(), std::set<std::string>());
}

// The folder cannot be written. Nobody hears of that before the form runs.
TEST_F(Designer, IsNotToldOfAFolderThatCannotBeWritten) {
  std::filesystem::create_directory(scratch.File(L"FunctionsInExecution.txt"));
  {
    const BoxAnswerer user({Once("Critical Error: ")});
    container.Take(control.Get());
    control->put_IsOpenButtonVisible(VARIANT_TRUE);
    EXPECT_TRUE(user.Boxes().empty());
    container.SetUserMode(true);
    EXPECT_EQ(user.Boxes().size(), 1U);
    EXPECT_FALSE(IsTrue(&_KwEditorLayers::get_Enabled));
    EXPECT_TRUE(IsTrue(&_KwEditorLayers::get_IsOpenButtonVisible));
    container.LetGo();
    control.Reset();
  }
  std::filesystem::remove(scratch.File(L"FunctionsInExecution.txt"));
}

}  // namespace
}  // namespace kw::test
