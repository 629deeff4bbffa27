// What property windows ask the control: its page, its builders, its categories, its verb.

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>
#include <olectl.h>

#include <atomic>
#include <map>
#include <string>

#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/Bystander.h"
#include "tests/support/win32/Soon.h"
#include "windows/properties/PropertyPageIds.h"

namespace kw::test {
namespace {

class PropertyBrowsingTest : public ControlTest {};

TEST_F(PropertyBrowsingTest, HasOnePage) {
  CAUUID pages = {};
  ASSERT_EQ(As<ISpecifyPropertyPages>()->GetPages(&pages), S_OK);
  ASSERT_EQ(pages.cElems, 1U);
  EXPECT_EQ(pages.pElems[0], CLSID_KwEditorPage);
  CoTaskMemFree(pages.pElems);
  EXPECT_EQ(As<ISpecifyPropertyPages>()->GetPages(nullptr), E_POINTER);
}

TEST_F(PropertyBrowsingTest, ThePageIsTheBuilderOfPaths) {
  const auto browsing = As<IPerPropertyBrowsing>();
  for (const DISPID path : {EditorAppDirId, EditorBGImageId, EditorSignatureFilePathId}) {
    CLSID page = {};
    EXPECT_EQ(browsing->MapPropertyToPage(path, &page), S_OK);
    EXPECT_EQ(page, CLSID_KwEditorPage);
  }
  for (const DISPID other : {DISPID{EditorMaxUndoLevelsId}, DISPID{EditorEnabledId}, DISPID{0}, DISPID{99}}) {
    CLSID page = CLSID_KwEditorPage;
    EXPECT_EQ(browsing->MapPropertyToPage(other, &page), PERPROP_E_NOPAGEAVAILABLE);
    EXPECT_EQ(page, CLSID_NULL);
  }
  EXPECT_EQ(browsing->MapPropertyToPage(EditorAppDirId, nullptr), E_POINTER);
}

TEST_F(PropertyBrowsingTest, ShowsTheFolderAndLeavesTheOthersToTheWindow) {
  const auto browsing = As<IPerPropertyBrowsing>();
  BSTR text = nullptr;
  ASSERT_EQ(browsing->GetDisplayString(EditorAppDirId, &text), S_OK);
  EXPECT_EQ(Take(text), scratch.Path());
  for (const DISPID other :
       {DISPID{EditorBGImageId}, DISPID{EditorSignatureFilePathId}, DISPID{EditorEnabledId}, DISPID{99}}) {
    text = nullptr;
    EXPECT_EQ(browsing->GetDisplayString(other, &text), E_NOTIMPL);
    EXPECT_EQ(text, nullptr);
  }
  EXPECT_EQ(browsing->GetDisplayString(EditorAppDirId, nullptr), E_POINTER);
}

TEST_F(PropertyBrowsingTest, NoPropertyHasAListOfValues) {
  const auto browsing = As<IPerPropertyBrowsing>();
  CALPOLESTR texts = {7, nullptr};
  CADWORD cookies = {7, nullptr};
  EXPECT_EQ(browsing->GetPredefinedStrings(EditorAppDirId, &texts, &cookies), E_NOTIMPL);
  EXPECT_EQ(texts.cElems, 0U);
  EXPECT_EQ(cookies.cElems, 0U);
  VARIANT value;
  EXPECT_EQ(browsing->GetPredefinedValue(EditorAppDirId, 0, &value), E_NOTIMPL);
  EXPECT_EQ(V_VT(&value), VT_EMPTY);
  EXPECT_EQ(browsing->GetPredefinedStrings(EditorAppDirId, nullptr, &cookies), E_POINTER);
  EXPECT_EQ(browsing->GetPredefinedStrings(EditorAppDirId, &texts, nullptr), E_POINTER);
  EXPECT_EQ(browsing->GetPredefinedValue(EditorAppDirId, 0, nullptr), E_POINTER);
}

TEST_F(PropertyBrowsingTest, EveryPropertyHasACategoryWithAName) {
  const auto categories = As<ICategorizeProperties>();
  const auto dispatch = As<IDispatch>();
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(dispatch->GetTypeInfo(0, 0, &info), S_OK);
  std::map<std::wstring, int> members;
  FUNCDESC* function = nullptr;
  for (UINT index = 0; SUCCEEDED(info->GetFuncDesc(index, &function)); ++index) {
    const DISPID property = function->memid;
    const bool isProperty = function->invkind == INVOKE_PROPERTYPUT;
    info->ReleaseFuncDesc(function);
    if (!isProperty) continue;
    long category = 0;
    BSTR name = nullptr;
    EXPECT_EQ(categories->MapPropertyToCategory(property, &category), S_OK) << property;
    EXPECT_EQ(categories->GetCategoryName(category, LOCALE_USER_DEFAULT, &name), S_OK);
    ++members[Take(name)];
  }
  EXPECT_EQ(members, (std::map<std::wstring, int>{{L"Appearance", 4}, {L"Behavior", 8}, {L"Files", 4}}));
  long category = 0;
  EXPECT_EQ(categories->MapPropertyToCategory(EditorOpenFileId, &category), E_INVALIDARG);
  EXPECT_EQ(category, -1);
  EXPECT_EQ(categories->MapPropertyToCategory(EditorAppDirId, nullptr), E_POINTER);
  BSTR name = nullptr;
  EXPECT_EQ(categories->GetCategoryName(77, 0, &name), E_INVALIDARG);
  EXPECT_EQ(categories->GetCategoryName(1, 0, nullptr), E_POINTER);
}

class PropertiesVerb : public ControlTest {
protected:
  void SetUp() override {
    ControlTest::SetUp();
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    container.Take(control.Get());
    container.calls.clear();
  }
  void TearDown() override {
    if (control != nullptr) container.LetGo();
    ControlTest::TearDown();
    OleUninitialize();
  }

  StrictContainer container;
};

TEST_F(PropertiesVerb, IsTheContainersIfItShowsProperties) {
  container.showsProperties = true;
  EXPECT_EQ(container.DoVerb(OLEIVERB_PROPERTIES), S_OK);
  EXPECT_EQ(container.calls, (std::vector<std::string>{"ShowPropertyFrame"}));
}

// The class of the page is in no registry here. The frame of this system does not hand its OK on to a page, so that is
// tested in a frame of our own.
TEST_F(PropertiesVerb, OpensTheSystemsFrameWithThePage) {
  ASSERT_EQ(control->put_MaxUndoLevels(9), S_OK);
  for (const LONG before : {OLEIVERB_HIDE, OLEIVERB_UIACTIVATE}) {
    ASSERT_EQ(container.DoVerb(before), S_OK);
    container.calls.clear();
    std::wstring levels;
    {
      const Bystander user(DialogClass, L"", [&](HWND frame) {
        HWND field = nullptr;
        Bystander::WaitFor([&] {
          for (const HWND page : ChildWindows(frame, DialogClass)) {
            if (GetDlgItem(page, PAGE_UNDO_LEVELS) != nullptr) field = GetDlgItem(page, PAGE_UNDO_LEVELS);
          }
          return field != nullptr && IsWindowVisible(field) != FALSE;
        });
        wchar_t text[20] = {};
        SendMessageW(field, WM_GETTEXT, 20, reinterpret_cast<LPARAM>(text));
        levels = text;
        SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"31"));
        PostMessageW(frame, WM_COMMAND, IDCANCEL, 0);
      });
      EXPECT_EQ(container.DoVerb(OLEIVERB_PROPERTIES), S_OK);
    }
    EXPECT_EQ(levels, L"9");
    short now = 0;
    EXPECT_EQ(control->get_MaxUndoLevels(&now), S_OK);
    EXPECT_EQ(now, 9);
    const std::vector<std::string> inactive = {"ShowPropertyFrame"};
    const std::vector<std::string> active = {"ShowPropertyFrame", "EnableModeless(false)", "EnableModeless"};
    EXPECT_EQ(container.calls, before == OLEIVERB_HIDE ? inactive : active);
  }
}

TEST_F(PropertiesVerb, WorksInDesignMode) {
  container.userMode = false;
  container.showsProperties = true;
  EXPECT_EQ(container.DoVerb(OLEIVERB_PROPERTIES), S_OK);
}

TEST_F(PropertiesVerb, TheHostMayLetGoOfTheControlMeanwhile) {
  auto object = As<IOleObject>();
  const RECT place = {};
  std::atomic<bool> isGone = false;
  const Soon leave([&] {
    container.LetGo();
    control.Reset();
    object.Reset();
    isGone = true;
  });
  const Bystander user(DialogClass, L"", [&](HWND frame) {
    Bystander::WaitFor([&] { return isGone.load(); });
    PostMessageW(frame, WM_COMMAND, IDCANCEL, 0);
  });
  IOleObject* const held = object.Get();
  EXPECT_EQ(held->DoVerb(OLEIVERB_PROPERTIES, nullptr, &container, 0, container.Window(), &place), S_OK);
}

}  // namespace
}  // namespace kw::test
