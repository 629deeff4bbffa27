// Properties and methods, by the table of the interface and by name, as a script calls them.

#include <windows.h>

#include <oleauto.h>
#include <olectl.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "tests/activex/Fixture.h"
#include "tests/activex/Sinks.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

// One value for or from IDispatch, freed at its end.
class Variant {
public:
  Variant() { VariantInit(&value); }
  explicit Variant(long number) : Variant() {
    V_VT(&value) = VT_I4;
    V_I4(&value) = number;
  }
  explicit Variant(bool flag) : Variant() {
    V_VT(&value) = VT_BOOL;
    V_BOOL(&value) = flag ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit Variant(const wchar_t* text) : Variant() {
    V_VT(&value) = VT_BSTR;
    V_BSTR(&value) = SysAllocString(text);
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(&value); }

  VARIANT value;
};

class AutomationTest : public ControlTest {
protected:
  DISPID Number(const wchar_t* name) {
    auto* text = const_cast<LPOLESTR>(name);
    DISPID number = DISPID_UNKNOWN;
    control->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &number);
    return number;
  }
  HRESULT Put(const wchar_t* name, const Variant& value) {
    DISPID put = DISPID_PROPERTYPUT;
    VARIANT argument = value.value;
    DISPPARAMS parameters = {&argument, &put, 1, 1};
    return control->Invoke(Number(name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters, nullptr,
                           &exception, &badArgument);
  }
  HRESULT Get(const wchar_t* name, Variant& value) {
    DISPPARAMS none = {};
    return control->Invoke(Number(name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value.value,
                           &exception, &badArgument);
  }
  bool IsTrue(HRESULT (STDMETHODCALLTYPE _KwEditorLayers::*get)(VARIANT_BOOL*)) {
    VARIANT_BOOL value = 7;
    EXPECT_EQ((control.Get()->*get)(&value), S_OK);
    EXPECT_TRUE(value == VARIANT_TRUE || value == VARIANT_FALSE);
    return value == VARIANT_TRUE;
  }

  EXCEPINFO exception = {};
  UINT badArgument = 0;
};

using Interface = _KwEditorLayers;

TEST_F(AutomationTest, MaxUndoLevelsIsAtLeastFive) {
  short levels = 0;
  control->put_MaxUndoLevels(3);
  control->get_MaxUndoLevels(&levels);
  EXPECT_EQ(levels, 5);
  control->put_MaxUndoLevels(50);
  control->get_MaxUndoLevels(&levels);
  EXPECT_EQ(levels, 50);
  control->put_MaxUndoLevels(32767);
  control->get_MaxUndoLevels(&levels);
  EXPECT_EQ(levels, 32767);
}

TEST_F(AutomationTest, ToolBoxStaysHiddenWhileNotEditable) {
  control->put_IsEditable(VARIANT_FALSE);
  EXPECT_EQ(control->put_IsToolboxVisible(VARIANT_TRUE), S_OK);
  EXPECT_FALSE(IsTrue(&Interface::get_IsToolboxVisible));
  control->put_IsEditable(VARIANT_TRUE);
  control->put_IsToolboxVisible(VARIANT_TRUE);
  EXPECT_TRUE(IsTrue(&Interface::get_IsToolboxVisible));
}

TEST_F(AutomationTest, EveryBooleanPropertyKeepsBothValues) {
  struct Row {
    HRESULT (STDMETHODCALLTYPE Interface::*get)(VARIANT_BOOL*);
    HRESULT (STDMETHODCALLTYPE Interface::*put)(VARIANT_BOOL);
  };
  const Row rows[] = {
      {&Interface::get_m_IsFileChanged, &Interface::put_m_IsFileChanged},
      {&Interface::get_IsToShowBackImage, &Interface::put_IsToShowBackImage},
      {&Interface::get_IsFileChanged, &Interface::put_IsFileChanged},
      {&Interface::get_IsToLightenBackImage, &Interface::put_IsToLightenBackImage},
      {&Interface::get_IsToolboxVisible, &Interface::put_IsToolboxVisible},
      {&Interface::get_Enabled, &Interface::put_Enabled},
      {&Interface::get_IsOpenButtonVisible, &Interface::put_IsOpenButtonVisible},
      {&Interface::get_IsToSaveAsMultiPageFile, &Interface::put_IsToSaveAsMultiPageFile},
      {&Interface::get_IsToAllowChooseColor, &Interface::put_IsToAllowChooseColor},
      {&Interface::get_IsEditable, &Interface::put_IsEditable},
      {&Interface::get_IsSaveButtonEnabled, &Interface::put_IsSaveButtonEnabled},
  };
  for (const Row& row : rows) {
    // Any value but 0 is true, and what comes back is -1 or 0.
    for (const VARIANT_BOOL value : {VARIANT_TRUE, VARIANT_FALSE, VARIANT_BOOL{1}}) {
      EXPECT_EQ((control.Get()->*row.put)(value), S_OK);
      EXPECT_EQ(IsTrue(row.get), value != VARIANT_FALSE) << &row - rows;
    }
  }
}

TEST_F(AutomationTest, ChangedMemberIsTheOneBehindTheProperty) {
  control->put_IsFileChanged(VARIANT_TRUE);
  EXPECT_TRUE(IsTrue(&Interface::get_m_IsFileChanged));
  control->put_m_IsFileChanged(VARIANT_FALSE);
  EXPECT_FALSE(IsTrue(&Interface::get_IsFileChanged));
}

TEST_F(AutomationTest, TextsKeepEveryCharacter) {
  const std::wstring path =
      L"C:\\Ablage\\\x00DC"
      L"berweisung \xD83D\xDDC2.tif";
  control->put_SaveFilePath(Text(path));
  BSTR value = nullptr;
  ASSERT_EQ(control->get_SaveFilePath(&value), S_OK);
  EXPECT_EQ(Take(value), path);
  ASSERT_EQ(control->get_AppDir(&value), S_OK);
  EXPECT_EQ(Take(value), scratch.Path());
}

TEST_F(AutomationTest, ControlsOfOneThreadShareTheFolder) {
  const auto other = Ocx::Create();
  BSTR value = nullptr;
  ASSERT_EQ(other->get_AppDir(&value), S_OK);
  EXPECT_EQ(Take(value), scratch.Path());
}

TEST_F(AutomationTest, SavePageOnlyTraces) {
  const auto wholeOf = [](const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(file), {}};
  };
  const std::wstring trace = scratch.File(L"FunctionsInExecution.txt");
  const auto filesButTheTrace = [&] {
    std::map<std::wstring, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(scratch.Path())) {
      if (entry.path().filename() != L"FunctionsInExecution.txt") files[entry.path()] = wholeOf(entry.path());
    }
    return files;
  };
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    ASSERT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"D.tif", 2))), S_OK);
  }
  control->put_IsFileChanged(VARIANT_TRUE);
  EventSink sink;
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  const auto before = filesButTheTrace();
  EXPECT_EQ(before.size(), 4U) << "the document, two pages and the scratch bitmap";
  const std::string tracedBefore = wholeOf(trace);
  const BoxAnswerer user;
  EXPECT_EQ(control->SavePage(), S_OK);
  EXPECT_EQ(wholeOf(trace), tracedBefore + "SavePage\r\n");
  EXPECT_EQ(filesButTheTrace(), before);
  EXPECT_TRUE(IsTrue(&Interface::get_IsFileChanged));
  EXPECT_TRUE(sink.events.empty());
  EXPECT_TRUE(user.Boxes().empty());
}

TEST_F(AutomationTest, PropertiesWorkByName) {
  Variant value;
  EXPECT_EQ(Put(L"MaxUndoLevels", Variant(12L)), S_OK);
  EXPECT_EQ(Get(L"maxundolevels", value), S_OK);  // names have no case
  EXPECT_EQ(V_VT(&value.value), VT_I2);
  EXPECT_EQ(V_I2(&value.value), 12);
  EXPECT_EQ(Put(L"IsEditable", Variant(false)), S_OK);
  EXPECT_FALSE(IsTrue(&Interface::get_IsEditable));
}

TEST_F(AutomationTest, EnabledHasTheStandardNumber) {
  EXPECT_EQ(Number(L"Enabled"), DISPID_ENABLED);
  EXPECT_EQ(Number(L"EditorForeColor"), DISPID_UNKNOWN);
  EXPECT_EQ(Number(L"ZoomFactor"), DISPID_UNKNOWN);
}

TEST_F(AutomationTest, ValuesOfAnotherTypeAreConverted) {
  EXPECT_EQ(Put(L"MaxUndoLevels", Variant(L"17")), S_OK);
  short levels = 0;
  control->get_MaxUndoLevels(&levels);
  EXPECT_EQ(levels, 17);
  EXPECT_EQ(Put(L"IsEditable", Variant(0L)), S_OK);
  EXPECT_FALSE(IsTrue(&Interface::get_IsEditable));
}

TEST_F(AutomationTest, ValuesOfAWrongTypeAreRefusedAndChangeNothing) {
  EXPECT_EQ(Put(L"MaxUndoLevels", Variant(L"many")), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(Put(L"MaxUndoLevels", Variant(70000L)), DISP_E_OVERFLOW);
  EXPECT_EQ(Put(L"IsEditable", Variant(L"perhaps")), DISP_E_TYPEMISMATCH);
  short levels = 0;
  control->get_MaxUndoLevels(&levels);
  EXPECT_EQ(levels, 5);
  EXPECT_TRUE(IsTrue(&Interface::get_IsEditable));
}

TEST_F(AutomationTest, WhatCannotBeReadOrCalledIsRefused) {
  Variant value;
  EXPECT_EQ(Get(L"BGImage", value), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Get(L"SignatureFilePath", value), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Get(L"NoSuchProperty", value), DISP_E_MEMBERNOTFOUND);
  DISPPARAMS none = {};
  EXPECT_EQ(control->Invoke(EditorOpenFileId, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(control->Invoke(EditorSavePageId, IID_IUnknown, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(control->GetTypeInfo(1, 0, &info), DISP_E_BADINDEX);
}

TEST_F(AutomationTest, PicturesThatAreNoneAreNoError) {
  const BoxAnswerer user;
  EXPECT_EQ(control->put_SignatureFilePath(Text(scratch.File(L"missing.bmp"))), S_OK);
  EXPECT_EQ(control->put_BGImage(Text(scratch.File(L"missing.bmp"))), S_OK);
  EXPECT_EQ(control->put_BGImage(Text(L"  ")), S_OK);
  EXPECT_TRUE(IsTrue(&Interface::get_Enabled));
  EXPECT_TRUE(user.Boxes().empty());
}

TEST_F(AutomationTest, FailureThatLeavesTheControlHasNumberAndText) {
  // The trace cannot be written there, and neither can the report: the error reaches the caller.
  const BoxAnswerer user({Times(2, "Critical Error: Error Number : 76")});
  control->put_AppDir(Text(scratch.File(L"no such folder\\")));
  const HRESULT result = control->SavePage();
  EXPECT_EQ(result, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 76)) << std::hex << result;
  ComPtr<IErrorInfo> error;
  ASSERT_EQ(GetErrorInfo(0, &error), S_OK);
  BSTR text = nullptr;
  error->GetDescription(&text);
  EXPECT_EQ(Take(text), L"Path not found");
  error->GetSource(&text);
  EXPECT_EQ(Take(text), L"KwEditor");

  // By name the same comes as an exception record.
  control->put_AppDir(Text(scratch.Path()));
  control->put_Enabled(VARIANT_TRUE);
  control->put_AppDir(Text(scratch.File(L"no such folder\\")));
  DISPPARAMS none = {};
  EXPECT_EQ(control->Invoke(EditorSavePageId, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, &exception, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 76));
  EXPECT_EQ(Take(exception.bstrDescription), L"Path not found");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  control->put_AppDir(Text(scratch.Path()));
}

}  // namespace
}  // namespace kw::test
