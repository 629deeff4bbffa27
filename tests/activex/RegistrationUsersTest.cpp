// The control registered for one user, beside the one of the other architecture, and where the registry refuses.

#include <windows.h>

#include <comcat.h>
#include <ole2.h>
#include <sddl.h>

#include <string>
#include <thread>

#include "tests/activex/Fixture.h"
#include "tests/activex/Registry.h"

namespace kw::test {
namespace {

const std::wstring EditorKey = L"CLSID\\" + ToText(CLSID_KwEditorLayers);
const std::wstring LibraryKey = L"TypeLib\\" + ToText(LIBID_KwEditor);
constexpr wchar_t Name[] = L"KwEditor.KwEditorLayers";
constexpr wchar_t NameOfVersion[] = L"KwEditor.KwEditorLayers.1";
const std::wstring VersionKey =
    LibraryKey + L"\\" + std::to_wstring(KW_LIBRARY_MAJOR) + L"." + std::to_wstring(KW_LIBRARY_MINOR);
#ifdef _WIN64
constexpr REGSAM OtherView = KEY_WOW64_32KEY;
const std::wstring OwnLibraryKey = VersionKey + L"\\0\\win64";
const std::wstring OtherLibraryKey = VersionKey + L"\\0\\win32";
#else
constexpr REGSAM OtherView = KEY_WOW64_64KEY;
const std::wstring OwnLibraryKey = VersionKey + L"\\0\\win32";
const std::wstring OtherLibraryKey = VersionKey + L"\\0\\win64";
#endif

// A key that somebody else wrote; it goes with the test.
class ForeignKey {
public:
  ForeignKey(HKEY above, const std::wstring& of, REGSAM viewed, DWORD options = REG_OPTION_NON_VOLATILE)
      : hive(above), path(L"Software\\Classes\\" + of), view(viewed) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(hive, path.c_str(), 0, nullptr, options, KEY_ALL_ACCESS | view, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
  }
  ForeignKey(const ForeignKey&) = delete;
  ForeignKey& operator=(const ForeignKey&) = delete;
  ~ForeignKey() { Remove(); }

  // Gives its rights, in the system's language for them, to whom it names and to nobody else.
  void Protect(const wchar_t* rights) const {
    PSECURITY_DESCRIPTOR description = nullptr;
    ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(rights, SDDL_REVISION_1, &description, nullptr));
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(hive, path.c_str(), 0, READ_CONTROL | WRITE_DAC | view, &key), ERROR_SUCCESS);
    EXPECT_EQ(RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, description), ERROR_SUCCESS);
    RegCloseKey(key);
    LocalFree(description);
  }
  void Remove() const {
    HKEY key = nullptr;
    if (RegOpenKeyExW(hive, path.c_str(), 0, KEY_ALL_ACCESS | view, &key) != ERROR_SUCCESS) return;
    RegDeleteTreeW(key, nullptr);
    RegCloseKey(key);
    RegDeleteKeyExW(hive, path.c_str(), view, 0);
  }

private:
  HKEY hive;
  std::wstring path;
  REGSAM view;
};

class RegistrationUsersTest : public testing::Test {
protected:
  using Install = HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR);

  void SetUp() override {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    install = reinterpret_cast<Install>(reinterpret_cast<void*>(GetProcAddress(Ocx::Library(), "DllInstall")));
    ASSERT_NE(install, nullptr);
  }
  void TearDown() override {
    ExpectNoKeys(HKEY_LOCAL_MACHINE);
    ExpectNoKeys(HKEY_CURRENT_USER);
    EXPECT_TRUE(KeyExists(L"CLSID")) << "the classes of this process are others now";
    OleUninitialize();
  }

  static bool IsOfCategory(REFCATID category) {
    ComPtr<ICatInformation> categories;
    EXPECT_HRESULT_SUCCEEDED(
        CoCreateInstance(CLSID_StdComponentCategoriesMgr, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&categories)));
    CATID asked = category;
    ComPtr<IEnumGUID> classes;
    EXPECT_HRESULT_SUCCEEDED(categories->EnumClassesOfCategories(1, &asked, static_cast<ULONG>(-1), nullptr, &classes));
    CLSID found = {};
    while (classes->Next(1, &found, nullptr) == S_OK) {
      if (found == CLSID_KwEditorLayers) return true;
    }
    return false;
  }

  Install install = nullptr;
};

TEST_F(RegistrationUsersTest, IsAControlForTheCategoryManagerAndNotSafeForScripts) {
  constexpr CATID SafeForScripting = {0x7DD95801, 0x9882, 0x11CF, {0x9F, 0xA9, 0x00, 0xAA, 0x00, 0x6C, 0x42, 0xC4}};
  constexpr CATID SafeForInitializing = {0x7DD95802, 0x9882, 0x11CF, {0x9F, 0xA9, 0x00, 0xAA, 0x00, 0x6C, 0x42, 0xC4}};
  EXPECT_FALSE(IsOfCategory(CATID_Control));
  ASSERT_EQ(RegSvr32(L""), 0U);
  EXPECT_TRUE(IsOfCategory(CATID_Control));
  EXPECT_FALSE(IsOfCategory(SafeForScripting));
  EXPECT_FALSE(IsOfCategory(SafeForInitializing));
  EXPECT_EQ(RegSvr32(L"/u"), 0U);
  EXPECT_FALSE(IsOfCategory(CATID_Control));
}

// Only for all users: here one user's classes are the same for both architectures.
TEST_F(RegistrationUsersTest, LeavesWhatTheOtherArchitectureNeeds) {
  const HKEY hive = HKEY_LOCAL_MACHINE;
  ASSERT_EQ(RegSvr32(L""), 0U);
  const ForeignKey editor(hive, EditorKey, OtherView);
  const ForeignKey library(hive, OtherLibraryKey, 0);
  EXPECT_EQ(RegSvr32(L"/u"), 0U);
  EXPECT_TRUE(KeyExists(hive, EditorKey, OtherView));
  EXPECT_TRUE(KeyExists(hive, std::wstring(Name) + L"\\CLSID"));
  EXPECT_TRUE(KeyExists(hive, std::wstring(NameOfVersion) + L"\\CLSID"));
  EXPECT_TRUE(KeyExists(hive, OtherLibraryKey));
  EXPECT_TRUE(KeyExists(hive, VersionKey + L"\\FLAGS"));
  EXPECT_FALSE(KeyExists(hive, EditorKey));
  EXPECT_FALSE(KeyExists(hive, L"CLSID\\" + ToText(CLSID_KwEditorPage)));
  EXPECT_FALSE(KeyExists(hive, OwnLibraryKey));
  EXPECT_EQ(RegSvr32(L"/u"), 0U) << "twice is as once";
  EXPECT_TRUE(KeyExists(hive, Name));
  // The other one goes, too: what is left has nobody now.
  editor.Remove();
  ForeignKey(hive, LibraryKey, 0).Remove();
  EXPECT_EQ(RegSvr32(L"/u"), 0U);
}

TEST_F(RegistrationUsersTest, AFailureLeavesWhatTheOtherArchitectureNeeds) {
  const ForeignKey editor(HKEY_LOCAL_MACHINE, EditorKey, OtherView);
  const ForeignKey name(HKEY_LOCAL_MACHINE, Name, 0);
  const ForeignKey nameOfVersion(HKEY_LOCAL_MACHINE, NameOfVersion, 0);
  // What lies below a key of this kind must be of this kind.
  const ForeignKey library(HKEY_LOCAL_MACHINE, LibraryKey, 0, REG_OPTION_VOLATILE);
  EXPECT_NE(RegSvr32(L""), 0U);
  EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, EditorKey, OtherView));
  EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, Name));
  EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, NameOfVersion));
  EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, EditorKey));
  library.Remove();
  name.Remove();
  nameOfVersion.Remove();
}

TEST_F(RegistrationUsersTest, AFailureLeavesNothingOfItsOwn) {
  // Not of this kind itself: what comes after the test writes there.
  const ForeignKey libraries(HKEY_CURRENT_USER, L"TypeLib", 0);
  const ForeignKey library(HKEY_CURRENT_USER, LibraryKey, 0, REG_OPTION_VOLATILE);
  EXPECT_HRESULT_FAILED(install(TRUE, L"user"));
  library.Remove();
  ExpectNoKeys(HKEY_CURRENT_USER);
}

// Everybody may read the key and remove it, nobody may write.
TEST_F(RegistrationUsersTest, SaysThatItHasNotTheRights) {
  const ForeignKey editor(HKEY_LOCAL_MACHINE, EditorKey, 0);
  editor.Protect(L"D:(A;;KRSD;;;WD)");
  EXPECT_EQ(install(TRUE, nullptr), E_ACCESSDENIED);
  EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Name));
  EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, LibraryKey));
}

TEST_F(RegistrationUsersTest, ForOneUserItWritesNothingForAll) {
  ASSERT_EQ(RegSvr32(L"/n /i:user"), 0U);
  ExpectNoKeys(HKEY_LOCAL_MACHINE);
  for (const std::wstring& key :
       {EditorKey + L"\\InprocServer32", EditorKey + L"\\Verb\\-7",
        EditorKey + L"\\Implemented Categories\\" + ToText(CATID_Control), L"CLSID\\" + ToText(CLSID_KwEditorPage),
        std::wstring(Name) + L"\\CLSID", VersionKey + L"\\FLAGS", L"Interface\\" + ToText(IID__KwEditorLayers)}) {
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, key)) << std::string(key.begin(), key.end());
  }
  EXPECT_EQ(RegSvr32(L"/u /n /i:user"), 0U);
}

TEST_F(RegistrationUsersTest, OneUserAndAllUsersGoTheirOwnWays) {
  ASSERT_EQ(RegSvr32(L""), 0U);
  ASSERT_EQ(RegSvr32(L"/n /i:USER"), 0U);
  EXPECT_EQ(RegSvr32(L"/u"), 0U);
  ExpectNoKeys(HKEY_LOCAL_MACHINE);
  EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, EditorKey));
  EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, LibraryKey));
  ASSERT_EQ(RegSvr32(L""), 0U);
  EXPECT_EQ(RegSvr32(L"/u /n /i:user"), 0U);
  ExpectNoKeys(HKEY_CURRENT_USER);
  EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, EditorKey));
  EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, LibraryKey));
  EXPECT_EQ(RegSvr32(L"/u"), 0U);
}

TEST_F(RegistrationUsersTest, KnowsItsOneWordOnly) {
  EXPECT_EQ(install(TRUE, L"users"), E_INVALIDARG);
  EXPECT_EQ(install(FALSE, L"machine"), E_INVALIDARG);
  ExpectNoKeys(HKEY_LOCAL_MACHINE);
  ExpectNoKeys(HKEY_CURRENT_USER);
  EXPECT_EQ(install(TRUE, nullptr), S_OK);
  EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, EditorKey));
  EXPECT_EQ(install(FALSE, L""), S_OK);
}

TEST_F(RegistrationUsersTest, BringsComWithItToAThreadThatHasNone) {
  std::thread([this] {
    EXPECT_EQ(install(TRUE, nullptr), S_OK);
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, EditorKey + L"\\Implemented Categories"));
    EXPECT_EQ(install(FALSE, nullptr), S_OK);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK) << "COM was left on the thread";
    CoUninitialize();
  }).join();
}

}  // namespace
}  // namespace kw::test
