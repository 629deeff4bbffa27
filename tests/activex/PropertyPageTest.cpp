// The property page in a frame: what it shows, takes over and refuses.

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "tests/activex/PageFrame.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/Bystander.h"
#include "windows/properties/PropertyFields.h"
#include "windows/properties/PropertyPageIds.h"

namespace kw::test {
namespace {

constexpr DWORD Dirty = PROPPAGESTATUS_DIRTY;
constexpr DWORD Clean = PROPPAGESTATUS_CLEAN;

class PropertyPageTest : public PageTest {
protected:
  static short LevelsOf(const ComPtr<_KwEditorLayers>& editor) {
    short levels = 0;
    EXPECT_EQ(editor->get_MaxUndoLevels(&levels), S_OK);
    return levels;
  }
  using Getter = HRESULT (STDMETHODCALLTYPE _KwEditorLayers::*)(VARIANT_BOOL*);
  static bool IsOn(const ComPtr<_KwEditorLayers>& editor, Getter get) {
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ((editor.Get()->*get)(&value), S_OK);
    return value != VARIANT_FALSE;
  }
  std::wstring FolderOf(const ComPtr<_KwEditorLayers>& editor) {
    BSTR folder = nullptr;
    EXPECT_EQ(editor->get_AppDir(&folder), S_OK);
    return Take(folder);
  }
};

// Whose calls fail because it is gone in another program.
class GoneControl final : public IDispatch {
public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool isKnown = iid == IID_IUnknown || iid == IID_IDispatch || iid == IID__KwEditorLayers;
    *object = isKnown ? static_cast<IDispatch*>(this) : nullptr;
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT* /*count*/) override { return RPC_E_DISCONNECTED; }
  STDMETHODIMP GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** /*info*/) override {
    return RPC_E_DISCONNECTED;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* /*names*/, UINT /*count*/, LCID /*locale*/, DISPID* /*ids*/) override {
    return RPC_E_DISCONNECTED;
  }
  STDMETHODIMP Invoke(DISPID /*id*/, REFIID, LCID /*locale*/, WORD /*flags*/, DISPPARAMS* /*parameters*/,
                      VARIANT* /*result*/, EXCEPINFO* /*exception*/, UINT* /*badArgument*/) override {
    ++calls;
    return RPC_E_DISCONNECTED;
  }

  int calls = 0;
};

TEST_F(PropertyPageTest, HasEveryPropertyThatIsKept) {
#define KEPT_PROPERTY(name, number, type, defaultValue, readPlace, writePlace, help) \
  EXPECT_TRUE(windows::FieldOf(PropertyId::name)) << #name;
#include "members/Members.def"
}

TEST_F(PropertyPageTest, ShowsWhatTheControlHas) {
  control->put_MaxUndoLevels(23);
  control->put_IsToolboxVisible(VARIANT_FALSE);
  control->put_IsOpenButtonVisible(VARIANT_TRUE);
  control->put_IsToAllowChooseColor(VARIANT_FALSE);
  control->put_IsToSaveAsMultiPageFile(VARIANT_TRUE);
  PageFrame frame;
  frame.Open({control.Get()});
  EXPECT_EQ(frame.TextOf(PAGE_UNDO_LEVELS), L"23");
  EXPECT_EQ(frame.TextOf(PAGE_FOLDER), scratch.Path());
  EXPECT_EQ(frame.TextOf(PAGE_BACKGROUND), L"");
  EXPECT_EQ(frame.TextOf(PAGE_SIGNATURE), L"");
  EXPECT_EQ(frame.TickOf(PAGE_ENABLED), UINT{BST_CHECKED});
  EXPECT_EQ(frame.TickOf(PAGE_EDITABLE), UINT{BST_CHECKED});
  EXPECT_EQ(frame.TickOf(PAGE_TOOLBOX), UINT{BST_UNCHECKED});
  EXPECT_EQ(frame.TickOf(PAGE_OPEN_BUTTON), UINT{BST_CHECKED});
  EXPECT_EQ(frame.TickOf(PAGE_SAVE_BUTTON), UINT{BST_CHECKED});
  EXPECT_EQ(frame.TickOf(PAGE_COLOURS), UINT{BST_UNCHECKED});
  EXPECT_EQ(frame.TickOf(PAGE_MULTIPAGE), UINT{BST_CHECKED});
  EXPECT_EQ(frame.TickOf(PAGE_LIGHTENED), UINT{BST_UNCHECKED});
  EXPECT_EQ(frame.page->IsPageDirty(), S_FALSE);
  EXPECT_TRUE(frame.states.empty());
  frame.Close();
}

TEST_F(PropertyPageTest, WhatIsEnteredIsAppliedAndPersisted) {
  const auto persist = As<IPersistStreamInit>();
  ASSERT_EQ(persist->InitNew(), S_OK);
  PageFrame frame;
  frame.Open({control.Get()});
  frame.Type(PAGE_UNDO_LEVELS, L"31");
  frame.Click(PAGE_OPEN_BUTTON);
  frame.Click(PAGE_LIGHTENED);
  frame.Click(PAGE_TOOLBOX);
  EXPECT_EQ(frame.page->IsPageDirty(), S_OK);
  EXPECT_EQ(frame.states, (std::vector<DWORD>{Dirty, Dirty, Dirty, Dirty}));
  EXPECT_EQ(LevelsOf(control), 5) << "not before it is applied";
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(frame.states.back(), Clean);
  EXPECT_EQ(frame.page->IsPageDirty(), S_FALSE);
  EXPECT_EQ(persist->IsDirty(), S_OK);
  ComPtr<IStream> stream;
  ASSERT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  ASSERT_EQ(persist->Save(stream.Get(), TRUE), S_OK);
  ASSERT_HRESULT_SUCCEEDED(stream->Seek({}, STREAM_SEEK_SET, nullptr));
  const auto copy = Ocx::Create();
  ComPtr<IPersistStreamInit> loaded;
  ASSERT_EQ(copy.As(&loaded), S_OK);
  ASSERT_EQ(loaded->Load(stream.Get()), S_OK);
  EXPECT_EQ(LevelsOf(copy), 31);
  EXPECT_TRUE(IsOn(copy, &_KwEditorLayers::get_IsOpenButtonVisible));
  EXPECT_TRUE(IsOn(copy, &_KwEditorLayers::get_IsToLightenBackImage));
  EXPECT_FALSE(IsOn(copy, &_KwEditorLayers::get_IsToolboxVisible));
  // What nobody touched was not assigned either, and a second Apply assigns nothing.
  EXPECT_EQ(TracedTimes(scratch.Path(), "Let IsToAllowChooseColor"), 1) << "by the loading of the copy";
  const int before = TracedTimes(scratch.Path(), "Let MaxUndoLevels");
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(TracedTimes(scratch.Path(), "Let MaxUndoLevels"), before);
  frame.Close();
}

TEST_F(PropertyPageTest, PicturesAreAssignedWhenTheyAreEntered) {
  const std::wstring picture = scratch.WriteTiff(L"P.tif", 1);
  PageFrame frame;
  frame.Open({control.Get()});
  const auto times = [&](const char* procedure) { return TracedTimes(scratch.Path(), procedure); };
  const int backgrounds = times("Let BackGroundImage");
  const int signatures = times("Let SignatureFilePath");
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(times("Let BackGroundImage"), backgrounds);
  EXPECT_EQ(times("Let SignatureFilePath"), signatures);
  frame.Type(PAGE_BACKGROUND, picture);
  frame.Type(PAGE_SIGNATURE, picture);
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(times("Let BackGroundImage"), backgrounds + 1);
  EXPECT_EQ(times("Let SignatureFilePath"), signatures + 1);
  frame.Close();
}

TEST_F(PropertyPageTest, SeveralControlsShowWhatTheyHaveInCommon) {
  const auto other = Ocx::Create();
  control->put_MaxUndoLevels(8);
  other->put_MaxUndoLevels(9);
  control->put_IsOpenButtonVisible(VARIANT_TRUE);
  control->put_IsToSaveAsMultiPageFile(VARIANT_TRUE);
  PageFrame frame;
  frame.Open({control.Get(), other.Get()});
  EXPECT_EQ(frame.TextOf(PAGE_UNDO_LEVELS), L"");
  EXPECT_EQ(frame.TickOf(PAGE_OPEN_BUTTON), UINT{BST_INDETERMINATE});
  EXPECT_EQ(frame.TickOf(PAGE_EDITABLE), UINT{BST_CHECKED});
  frame.Click(PAGE_OPEN_BUTTON);
  frame.Click(PAGE_EDITABLE);
  EXPECT_EQ(frame.TickOf(PAGE_OPEN_BUTTON), UINT{BST_CHECKED});
  EXPECT_EQ(frame.page->Apply(), S_OK);
  for (const auto& editor : {control, other}) {
    EXPECT_TRUE(IsOn(editor, &_KwEditorLayers::get_IsOpenButtonVisible));
    EXPECT_FALSE(IsOn(editor, &_KwEditorLayers::get_IsEditable));
  }
  EXPECT_EQ(LevelsOf(control), 8) << "nobody touched it";
  EXPECT_EQ(LevelsOf(other), 9);
  EXPECT_TRUE(IsOn(control, &_KwEditorLayers::get_IsToSaveAsMultiPageFile));
  EXPECT_FALSE(IsOn(other, &_KwEditorLayers::get_IsToSaveAsMultiPageFile));
  frame.Type(PAGE_UNDO_LEVELS, L"12");
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(LevelsOf(control), 12);
  EXPECT_EQ(LevelsOf(other), 12);
  frame.Close();
}

TEST_F(PropertyPageTest, ANumberThatCannotBeIsRefusedAndNothingIsLost) {
  PageFrame frame;
  frame.Open({control.Get()});
  frame.Click(PAGE_OPEN_BUTTON);
  for (const wchar_t* const text : {L"", L"4", L"-7", L"32768", L"99999", L"5x", L" 7"}) {
    frame.Type(PAGE_UNDO_LEVELS, text);
    {
      const BoxAnswerer user({Once("Frame: Undo levels: Enter a whole number from 5 to 32767.")});
      EXPECT_EQ(frame.page->Apply(), E_INVALIDARG);
      EXPECT_EQ(user.Boxes(), (std::vector<std::string>{"Frame: Undo levels: Enter a whole number from 5 to 32767."}));
    }
    EXPECT_EQ(frame.TextOf(PAGE_UNDO_LEVELS), text);
    EXPECT_EQ(GetFocus(), frame.Item(PAGE_UNDO_LEVELS));
    EXPECT_EQ(frame.page->IsPageDirty(), S_OK);
    EXPECT_FALSE(IsOn(control, &_KwEditorLayers::get_IsOpenButtonVisible)) << "all or nothing";
  }
  frame.Type(PAGE_UNDO_LEVELS, L"32767");
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(LevelsOf(control), 32767);
  EXPECT_TRUE(IsOn(control, &_KwEditorLayers::get_IsOpenButtonVisible));
  frame.Close();
}

// The trace cannot be written in such a folder, so every assignment behind it fails.
TEST_F(PropertyPageTest, AFailingPropertyIsToldAndCanBeMended) {
  PageFrame frame;
  frame.Open({control.Get()});
  frame.Type(PAGE_FOLDER, scratch.Path() + L"missing\\");
  frame.Type(PAGE_UNDO_LEVELS, L"12");
  frame.Click(PAGE_OPEN_BUTTON);
  std::vector<std::string> boxes;
  {
    const BoxAnswerer user({Once("Frame: Undo levels: Path not found"), Once("Critical Error: ")});
    EXPECT_HRESULT_FAILED(frame.page->Apply());
    boxes = user.Boxes();
  }
  ASSERT_FALSE(boxes.empty());
  EXPECT_EQ(boxes.back(), "Frame: Undo levels: Path not found");
  EXPECT_EQ(frame.page->IsPageDirty(), S_OK);
  EXPECT_EQ(frame.TextOf(PAGE_UNDO_LEVELS), L"12");
  EXPECT_EQ(frame.TickOf(PAGE_OPEN_BUTTON), UINT{BST_CHECKED});
  EXPECT_EQ(frame.TextOf(PAGE_FOLDER), scratch.Path() + L"missing\\");
  EXPECT_TRUE(IsWindowEnabled(frame.Item(PAGE_FOLDER)));
  // The user mends the folder and switches the control on again, which had disabled itself.
  frame.Type(PAGE_FOLDER, scratch.Path());
  if (frame.TickOf(PAGE_ENABLED) == BST_CHECKED) frame.Click(PAGE_ENABLED);
  frame.Click(PAGE_ENABLED);
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(frame.page->IsPageDirty(), S_FALSE);
  EXPECT_EQ(LevelsOf(control), 12);
  EXPECT_TRUE(IsOn(control, &_KwEditorLayers::get_IsOpenButtonVisible));
  EXPECT_TRUE(IsOn(control, &_KwEditorLayers::get_Enabled));
  EXPECT_EQ(FolderOf(control), scratch.Path());
  frame.Close();
}

// A form may have been moved to a machine without its folder.
TEST_F(PropertyPageTest, OpensForAControlWhoseFolderIsMissing) {
  ASSERT_EQ(control->put_AppDir(Text(scratch.Path() + L"missing\\")), S_OK);
  PageFrame frame;
  {
    const BoxAnswerer user({Perhaps("Critical Error: ")});
    frame.Open({control.Get()});
    EXPECT_LE(user.Boxes().size(), 1U) << "the control's own report";
  }
  EXPECT_EQ(frame.page->IsPageDirty(), S_FALSE);
  frame.Type(PAGE_FOLDER, scratch.Path());
  frame.Click(PAGE_ENABLED);
  if (frame.TickOf(PAGE_ENABLED) != BST_CHECKED) frame.Click(PAGE_ENABLED);
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(frame.TextOf(PAGE_UNDO_LEVELS), L"5") << "now it can tell";
  EXPECT_EQ(frame.TickOf(PAGE_EDITABLE), UINT{BST_CHECKED});
  EXPECT_TRUE(IsOn(control, &_KwEditorLayers::get_Enabled));
  frame.Close();
}

TEST_F(PropertyPageTest, AControlThatIsGoneIsToldAndTheTextStays) {
  GoneControl gone;
  PageFrame frame;
  frame.Open({control.Get(), &gone});
  EXPECT_EQ(frame.TextOf(PAGE_UNDO_LEVELS), L"");
  EXPECT_EQ(frame.TickOf(PAGE_ENABLED), UINT{BST_INDETERMINATE});
  frame.Type(PAGE_UNDO_LEVELS, L"14");
  {
    const BoxAnswerer user({Once("Frame: Undo levels: ")});
    EXPECT_EQ(frame.page->Apply(), RPC_E_DISCONNECTED);
    ASSERT_EQ(user.Boxes().size(), 1U);
    EXPECT_EQ(user.Boxes()[0].substr(0, 20), "Frame: Undo levels: ");
    EXPECT_GT(user.Boxes()[0].size(), 25U) << "it says why";
  }
  EXPECT_EQ(frame.TextOf(PAGE_UNDO_LEVELS), L"14");
  EXPECT_EQ(frame.page->IsPageDirty(), S_OK);
  frame.Close();
  EXPECT_GT(gone.calls, 0);
}

// Answers the system's dialog for paths with a name that is typed.
class PathTyper {
public:
  explicit PathTyper(std::wstring name)
      : typed(std::move(name)), user(DialogClass, L"", [this](HWND dialog) {
          Bystander::WaitFor([&] { return Bystander::FieldOf(dialog) != nullptr; });
          SendMessageW(Bystander::FieldOf(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(typed.c_str()));
          PostMessageW(dialog, WM_COMMAND, IDOK, 0);
        }) {}

private:
  std::wstring typed;
  Bystander user;
};

// The shell of this system sees the folders of the other tests as little as their files.
class VisibleFolder {
public:
  VisibleFolder() { std::filesystem::create_directories(path + L"work"); }
  VisibleFolder(const VisibleFolder&) = delete;
  VisibleFolder& operator=(const VisibleFolder&) = delete;
  ~VisibleFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  const std::wstring path =
      std::filesystem::temp_directory_path().wstring() + L"kw-picker-" + std::to_wstring(GetCurrentProcessId()) + L"\\";
};

TEST_F(PropertyPageTest, TheFolderPickerGivesAPathWithABackslash) {
  const VisibleFolder folder;
  PageFrame frame;
  frame.Open({control.Get()});
  frame.Type(PAGE_FOLDER, folder.path);
  {
    const PathTyper user(L"work");
    frame.Click(PAGE_FOLDER_BROWSE);
  }
  EXPECT_EQ(frame.TextOf(PAGE_FOLDER), folder.path + L"work\\");
  EXPECT_EQ(frame.page->IsPageDirty(), S_OK);
  {
    const Bystander user(DialogClass, L"", [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });
    frame.Type(PAGE_FOLDER, L"a text");
    frame.Click(PAGE_FOLDER_BROWSE);
  }
  EXPECT_EQ(frame.TextOf(PAGE_FOLDER), L"a text");
  frame.Close();
}

TEST_F(PropertyPageTest, TheFilePickerGivesAFile) {
  const VisibleFolder folder;
  const std::wstring picture = folder.path + L"P.tif";
  ASSERT_NE(CopyFileW(scratch.WriteTiff(L"P.tif", 1).c_str(), picture.c_str(), TRUE), FALSE);
  PageFrame frame;
  frame.Open({control.Get()});
  for (const auto& [field, button] :
       {std::pair(PAGE_BACKGROUND, PAGE_BACKGROUND_BROWSE), {PAGE_SIGNATURE, PAGE_SIGNATURE_BROWSE}}) {
    frame.Type(field, folder.path);
    const PathTyper user(L"P.tif");
    frame.Click(button);
    EXPECT_EQ(frame.TextOf(field), picture);
  }
  EXPECT_EQ(frame.page->IsPageDirty(), S_OK);
  frame.Close();
}

}  // namespace
}  // namespace kw::test
