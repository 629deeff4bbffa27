// The control through the registry, through a manifest, and in a script.

#include <windows.h>

#include <ole2.h>
#include <olectl.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/activex/Registry.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

const std::wstring ClassKey = L"CLSID\\" + ToText(CLSID_KwEditorLayers);

class RegistrationTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    ASSERT_EQ(RegSvr32(L""), 0U);
  }
  void TearDown() override {
    EXPECT_EQ(RegSvr32(L"/u"), 0U);
    ExpectNoKeys(HKEY_LOCAL_MACHINE);
    OleUninitialize();
  }
  // The exit code of a script under the console script host. A script that fails would exit with 0, so a good one says
  // 42 in its last line.
  DWORD RunScript(const std::wstring& text) {
    const std::wstring path = scratch.File(L"script.vbs");
    std::ofstream file{std::filesystem::path(path)};
    for (const wchar_t letter : text) file.put(static_cast<char>(letter));
    file.close();
    return RunProgram(L"cscript.exe //nologo \"" + path + L"\"");
  }

  ScratchFolder scratch;
};

TEST_F(RegistrationTest, WritesWhatHostsAskFor) {
  EXPECT_TRUE(KeyExists(ClassKey + L"\\Control"));
  EXPECT_FALSE(KeyExists(ClassKey + L"\\Insertable"));
  EXPECT_FALSE(KeyExists(L"KwEditor.KwEditorLayers\\Insertable"));
  EXPECT_EQ(Value(ClassKey + L"\\InprocServer32"), Ocx::Path());
  EXPECT_EQ(Value(ClassKey + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
  EXPECT_EQ(Value(ClassKey + L"\\ProgID"), L"KwEditor.KwEditorLayers.1");
  EXPECT_EQ(Value(ClassKey + L"\\VersionIndependentProgID"), L"KwEditor.KwEditorLayers");
  EXPECT_EQ(Value(ClassKey + L"\\TypeLib"), ToText(LIBID_KwEditor));
  EXPECT_EQ(Value(ClassKey + L"\\Version"),
            std::to_wstring(KW_LIBRARY_MAJOR) + L"." + std::to_wstring(KW_LIBRARY_MINOR));
  EXPECT_EQ(Value(L"KwEditor.KwEditorLayers\\CurVer"), L"KwEditor.KwEditorLayers.1");
  EXPECT_EQ(Value(L"KwEditor.KwEditorLayers\\CLSID"), ToText(CLSID_KwEditorLayers));
  EXPECT_EQ(Value(L"KwEditor.KwEditorLayers.1\\CLSID"), ToText(CLSID_KwEditorLayers));

  // The bitmap is there under the number that is given.
  const std::wstring bitmap = Value(ClassKey + L"\\ToolboxBitmap32");
  const std::size_t comma = bitmap.rfind(L',');
  ASSERT_NE(comma, std::wstring::npos);
  EXPECT_EQ(bitmap.substr(0, comma), Ocx::Path());
  const int number = std::stoi(bitmap.substr(comma + 1));
  EXPECT_NE(FindResourceW(Ocx::Library(), MAKEINTRESOURCEW(number), RT_BITMAP), nullptr);

  // The control itself answers as the registry does.
  const auto control = Ocx::Create();
  ComPtr<IOleObject> object;
  ASSERT_EQ(control.As(&object), S_OK);
  DWORD status = 0;
  EXPECT_EQ(object->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
  EXPECT_EQ(Value(ClassKey + L"\\MiscStatus\\1"), std::to_wstring(status));
  EXPECT_EQ(status, static_cast<DWORD>(OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                                       OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST));
  EXPECT_EQ(object->GetMiscStatus(DVASPECT_ICON, &status), S_OK);
  EXPECT_EQ(status, 0U);
  LPOLESTR name = nullptr;
  EXPECT_EQ(object->GetUserType(USERCLASSTYPE_FULL, &name), S_OK);
  EXPECT_EQ(Value(ClassKey), name);
  CoTaskMemFree(name);
}

// For containers that read a class's verbs without making an object, and for the system, which reads them there for a
// class that is not running.
TEST_F(RegistrationTest, NamesTheVerbsThatTheControlNames) {
  EXPECT_EQ(Value(ClassKey + L"\\Verb\\1"), L"&Scanner Setup...,0,2");
  EXPECT_EQ(Value(ClassKey + L"\\Verb\\9"), L"&Erode,0,2");
  EXPECT_FALSE(KeyExists(ClassKey + L"\\Verb\\0"));
  EXPECT_FALSE(KeyExists(ClassKey + L"\\Verb\\10"));
  EXPECT_EQ(Value(ClassKey + L"\\Verb\\-7"), L"&Properties...,0,2");
  const auto control = Ocx::Create();
  ComPtr<IOleObject> object;
  ASSERT_EQ(control.As(&object), S_OK);
  ComPtr<IEnumOLEVERB> own;
  ASSERT_EQ(object->EnumVerbs(&own), S_OK);
  ComPtr<IEnumOLEVERB> registered;
  ASSERT_EQ(OleRegEnumVerbs(CLSID_KwEditorLayers, &registered), S_OK);
  const auto listOf = [](IEnumOLEVERB& verbs) {
    std::map<LONG, std::wstring> list;
    OLEVERB verb = {};
    while (verbs.Next(1, &verb, nullptr) == S_OK) {
      list[verb.lVerb] =
          verb.lpszVerbName + (L"," + std::to_wstring(verb.fuFlags)) + L"," + std::to_wstring(verb.grfAttribs);
      CoTaskMemFree(verb.lpszVerbName);
    }
    return list;
  };
  const auto owned = listOf(*own.Get());
  EXPECT_EQ(owned.size(), 10U);
  EXPECT_EQ(listOf(*registered.Get()), owned);
}

TEST_F(RegistrationTest, RegisteringTwiceIsLikeOnce) {
  EXPECT_EQ(RegSvr32(L""), 0U);
  EXPECT_TRUE(KeyExists(ClassKey));
}

TEST_F(RegistrationTest, UnregisteringTwiceIsNoError) {
  EXPECT_EQ(RegSvr32(L"/u"), 0U);
  ExpectNoKeys(HKEY_LOCAL_MACHINE);
}

TEST_F(RegistrationTest, IsMadeByItsName) {
  CLSID classId = {};
  ASSERT_HRESULT_SUCCEEDED(CLSIDFromProgID(L"KwEditor.KwEditorLayers", &classId));
  EXPECT_EQ(classId, CLSID_KwEditorLayers);
  ComPtr<_KwEditorLayers> control;
  ASSERT_HRESULT_SUCCEEDED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&control)));
  short levels = 0;
  EXPECT_EQ(control->get_MaxUndoLevels(&levels), S_OK);
  EXPECT_EQ(levels, 5);
  ComPtr<ITypeLib> library;
  EXPECT_HRESULT_SUCCEEDED(
      LoadRegTypeLib(LIBID_KwEditor, KW_LIBRARY_MAJOR, KW_LIBRARY_MINOR, LOCALE_NEUTRAL, &library));
}

TEST_F(RegistrationTest, ScriptUsesPropertiesAndSeesErrors) {
  EXPECT_EQ(RunScript(LR"(
Set editor = CreateObject("KwEditor.KwEditorLayers")
editor.AppDir = ")" + scratch.Path() +
                      LR"("
editor.MaxUndoLevels = 3
If editor.MaxUndoLevels <> 5 Then WScript.Quit 1
editor.MaxUndoLevels = 50
If editor.MaxUndoLevels <> 50 Then WScript.Quit 2
editor.IsEditable = False
editor.IsToolboxVisible = True
If editor.IsToolboxVisible Then WScript.Quit 3
editor.SaveFilePath = "a path"
If editor.SaveFilePath <> "a path" Then WScript.Quit 4
editor.m_IsFileChanged = True
If Not editor.IsFileChanged Then WScript.Quit 5
editor.SavePage
If TypeName(editor) <> "_KwEditorLayers" And TypeName(editor) <> "KwEditorLayers" Then WScript.Quit 6
On Error Resume Next
editor.MaxUndoLevels = "many"
If Err.Number <> 13 Then WScript.Quit 7
Err.Clear
editor.MaxUndoLevels = 70000
If Err.Number <> 6 Then WScript.Quit 8
Err.Clear
path = editor.BGImage
If Err.Number = 0 Then WScript.Quit 9
Err.Clear
editor.NoSuchThing
If Err.Number <> 438 Then WScript.Quit 10
Err.Clear
If editor.Enabled <> True Then WScript.Quit 11
Set editor = Nothing
WScript.Quit 42
)"),
            42U);
  EXPECT_TRUE(FileExists(scratch.File(L"FunctionsInExecution.txt")));
}

TEST_F(RegistrationTest, FailingScriptIsNoticed) {
  EXPECT_NE(RunScript(L"Set editor = CreateObject(\"KwEditor.NoSuchControl\")\nWScript.Quit 42\n"), 42U);
}

// Registration-free: the manifest of a host names the file, and COM finds the class in it.
TEST(RegistrationFreeTest, IsMadeThroughAManifest) {
  ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
  {
    const ScratchFolder scratch;
    const std::wstring manifest = scratch.File(L"host.manifest");
    const std::wstring text =
        L"<?xml version='1.0' encoding='UTF-8' standalone='yes'?>"
        L"<assembly xmlns='urn:schemas-microsoft-com:asm.v1' manifestVersion='1.0'>"
        L"<assemblyIdentity type='win32' name='KwTestHost' version='1.0.0.0'/>"
        L"<file name='KwEditor.ocx'><comClass clsid='" +
        ToText(CLSID_KwEditorLayers) + L"' threadingModel='Apartment' progid='KwEditor.KwEditorLayers' tlbid='" +
        ToText(LIBID_KwEditor) + L"'/><typelib tlbid='" + ToText(LIBID_KwEditor) +
        L"' version='1.0' helpdir=''/></file></assembly>";
    std::ofstream file{std::filesystem::path(manifest)};
    for (const wchar_t letter : text) file.put(static_cast<char>(letter));
    file.close();
    // A host ships the control in its own folder.
    ASSERT_TRUE(CopyFileW(Ocx::Path().c_str(), scratch.File(L"KwEditor.ocx").c_str(), FALSE) != 0);
    ACTCTXW description = {};
    description.cbSize = sizeof description;
    description.lpSource = manifest.c_str();
    const HANDLE context = CreateActCtxW(&description);
    ASSERT_NE(context, INVALID_HANDLE_VALUE) << GetLastError();
    ULONG_PTR cookie = 0;
    ASSERT_TRUE(ActivateActCtx(context, &cookie) != 0);
    ComPtr<_KwEditorLayers> control;
    EXPECT_HRESULT_SUCCEEDED(
        CoCreateInstance(CLSID_KwEditorLayers, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&control)));
    DeactivateActCtx(0, cookie);
    ReleaseActCtx(context);
    ASSERT_NE(control.Get(), nullptr);
    EXPECT_FALSE(KeyExists(ClassKey)) << "this test is worth nothing while the control is registered";
    EXPECT_EQ(control->put_MaxUndoLevels(7), S_OK);
  }
  OleUninitialize();
}

}  // namespace
}  // namespace kw::test
