// The control under languages that somebody else wrote: each program uses it by its registered name.

#include <windows.h>

#include <ole2.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/activex/Fixture.h"
#include "tests/containers/ForeignProgram.h"
#include "tests/data/TestData.h"

namespace kw::test {
namespace {

constexpr DWORD Success = 42;

class Languages : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    ASSERT_EQ(Run(L"regsvr32.exe /s \"" + Ocx::Path() + L"\"").exitCode, 0U);
    std::filesystem::copy_file(TestData("letter.tif"), scratch.File(L"letter.tif"));
  }
  void TearDown() override {
    EXPECT_EQ(Run(L"regsvr32.exe /s /u \"" + Ocx::Path() + L"\"").exitCode, 0U);
    OleUninitialize();
  }

  ForeignRun Run(const std::wstring& command) const { return RunForeignProgram(command, scratch.File(L"output.txt")); }
  // Runs a script, whose text is ASCII, under the console script host.
  ForeignRun RunScript(const wchar_t* name, const std::string& text) const {
    std::ofstream(std::filesystem::path(scratch.File(name)), std::ios::binary) << text;
    return Run(L"cscript.exe //nologo \"" + scratch.File(name) + L"\" \"" + scratch.Path() + L"\\\"");
  }
  static void ExpectSuccess(const ForeignRun& run) {
    EXPECT_EQ(run.exitCode, Success) << run.output;
    // The notice of a document of several pages, and no other box.
    EXPECT_EQ(run.boxes.size(), 1U) << testing::PrintToString(run.boxes);
  }

  const ScratchFolder scratch;
};

TEST_F(Languages, JScriptUsesItAndSeesErrors) {
  ExpectSuccess(RunScript(L"client.js", R"(
var editor = new ActiveXObject("KwEditor.KwEditorLayers");
var folder = WScript.Arguments(0);
editor.AppDir = folder;
editor.MaxUndoLevels = 33;
if (editor.MaxUndoLevels !== 33) WScript.Quit(1);
editor.OpenFile(folder + "letter.tif");
if (editor.Enabled !== true) WScript.Quit(2);
var number = 0;  // becomes the low half of DISP_E_OVERFLOW
try { editor.MaxUndoLevels = 70000; } catch (error) { number = error.number & 0xFFFF; }
if (number !== 10) { WScript.Echo("the error is " + number); WScript.Quit(3); }
editor = null;
WScript.Quit(42);
)"));
}

TEST_F(Languages, VbScriptOpensADocument) {
  ExpectSuccess(RunScript(L"client.vbs", R"(
Set editor = CreateObject("KwEditor.KwEditorLayers")
folder = WScript.Arguments(0)
editor.AppDir = folder
editor.OpenFile folder & "letter.tif"
If Not editor.Enabled Then WScript.Quit 1
Set editor = Nothing
WScript.Quit 42
)"));
}

TEST_F(Languages, FreePascalUsesItLateBoundAndHearsEvents) {
  const std::filesystem::path program = std::filesystem::path(Ocx::Path()).parent_path() / "tests" / "PascalClient.exe";
  if (!std::filesystem::exists(program)) GTEST_SKIP() << "the build found no Free Pascal for Windows";
  ExpectSuccess(
      Run(L"\"" + program.wstring() + L"\" \"" + scratch.Path() + L"\\\" \"" + scratch.File(L"letter.tif") + L"\""));
}

}  // namespace
}  // namespace kw::test
