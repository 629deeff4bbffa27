// The type library inside the control, member by member.

#include <windows.h>

#include <oleauto.h>
#include <olectl.h>

#include <map>
#include <ostream>
#include <vector>

#include "tests/activex/Fixture.h"

namespace kw::test {

struct Member {
  std::wstring name;
  MEMBERID number;
  INVOKEKIND kind;
  VARTYPE type;  // of the value that is put, got or passed; VT_VOID without one
  std::vector<std::wstring> arguments;

  bool operator==(const Member& other) const = default;
};

std::ostream& operator<<(std::ostream& out, const Member& member) {
  for (const wchar_t letter : member.name) out << static_cast<char>(letter);
  out << " id " << member.number << " kind " << member.kind << " type " << member.type << " (";
  for (const std::wstring& argument : member.arguments) {
    for (const wchar_t letter : argument) out << static_cast<char>(letter);
    out << ' ';
  }
  return out << ')';
}

namespace {

class TypeLibraryTest : public testing::Test {
protected:
  void SetUp() override { ASSERT_HRESULT_SUCCEEDED(LoadTypeLibEx(Ocx::Path().c_str(), REGKIND_NONE, &library)); }

  ComPtr<ITypeInfo> Info(REFGUID guid) {
    ComPtr<ITypeInfo> info;
    EXPECT_HRESULT_SUCCEEDED(library->GetTypeInfoOfGuid(guid, &info));
    return info;
  }

  ComPtr<ITypeLib> library;
};

std::wstring MemberName(ITypeInfo& info, MEMBERID number, std::wstring* help = nullptr) {
  BSTR name = nullptr;
  BSTR text = nullptr;
  info.GetDocumentation(number, &name, &text, nullptr, nullptr);
  if (help != nullptr) *help = std::wstring(text == nullptr ? L"" : text);
  SysFreeString(text);
  return Take(name);
}

VARTYPE Pointed(const TYPEDESC& type) { return type.vt == VT_PTR ? type.lptdesc->vt : type.vt; }

// The members of the control's own, in order; those of IDispatch are left out.
std::vector<Member> MembersOf(ITypeInfo& info) {
  std::vector<Member> members;
  TYPEATTR* attributes = nullptr;
  EXPECT_HRESULT_SUCCEEDED(info.GetTypeAttr(&attributes));
  for (UINT index = 0; index < attributes->cFuncs; ++index) {
    FUNCDESC* function = nullptr;
    EXPECT_HRESULT_SUCCEEDED(info.GetFuncDesc(index, &function));
    if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) == 0) {
      BSTR names[8] = {};
      UINT count = 0;
      info.GetNames(function->memid, names, 8, &count);
      Member member{names[0], function->memid, function->invkind, VT_VOID, {}};
      for (UINT name = 1; name < count; ++name) member.arguments.emplace_back(names[name]);
      for (BSTR name : names) SysFreeString(name);
      if (function->cParams > 0) {
        member.type = Pointed(function->lprgelemdescParam[0].tdesc);
      } else if (function->invkind == INVOKE_PROPERTYGET) {
        member.type = function->elemdescFunc.tdesc.vt;
      }
      std::wstring help;
      MemberName(info, function->memid, &help);
      EXPECT_FALSE(help.empty()) << member << " has no help string";
      members.push_back(member);
    }
    info.ReleaseFuncDesc(function);
  }
  info.ReleaseTypeAttr(attributes);
  return members;
}

TEST_F(TypeLibraryTest, LibraryHasItsNameNumberAndVersion) {
  TLIBATTR* attributes = nullptr;
  ASSERT_HRESULT_SUCCEEDED(library->GetLibAttr(&attributes));
  EXPECT_EQ(attributes->guid, LIBID_KwEditor);
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->wLibFlags & (LIBFLAG_FCONTROL | LIBFLAG_FHIDDEN | LIBFLAG_FRESTRICTED), LIBFLAG_FCONTROL);
  EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
  library->ReleaseTLibAttr(attributes);
  BSTR name = nullptr;
  library->GetDocumentation(-1, &name, nullptr, nullptr, nullptr);
  EXPECT_EQ(Take(name), L"KwEditor");
}

TEST_F(TypeLibraryTest, PublicMembersAreTheseInThisOrder) {
  std::vector<Member> expected;
  const auto both = [&](const wchar_t* name, MEMBERID number, VARTYPE type) {
    expected.push_back({name, number, INVOKE_PROPERTYGET, type, {}});
    expected.push_back({name, number, INVOKE_PROPERTYPUT, type, {}});
  };
  both(L"m_IsFileChanged", 1, VT_BOOL);
  both(L"SaveFilePath", 2, VT_BSTR);
  expected.push_back({L"SavePage", 3, INVOKE_FUNC, VT_VOID, {}});
  expected.push_back({L"OpenFile", 4, INVOKE_FUNC, VT_BSTR, {L"fPath"}});
  both(L"IsToShowBackImage", 5, VT_BOOL);
  both(L"IsFileChanged", 6, VT_BOOL);
  both(L"IsToLightenBackImage", 7, VT_BOOL);
  both(L"IsToolboxVisible", 8, VT_BOOL);
  expected.push_back({L"SignatureFilePath", 9, INVOKE_PROPERTYPUT, VT_BSTR, {}});
  expected.push_back({L"BGImage", 10, INVOKE_PROPERTYPUT, VT_BSTR, {}});
  both(L"Enabled", DISPID_ENABLED, VT_BOOL);
  both(L"IsOpenButtonVisible", 11, VT_BOOL);
  both(L"IsToSaveAsMultiPageFile", 12, VT_BOOL);
  both(L"IsToAllowChooseColor", 13, VT_BOOL);
  both(L"MaxUndoLevels", 14, VT_I2);
  both(L"IsEditable", 15, VT_BOOL);
  both(L"IsSaveButtonEnabled", 16, VT_BOOL);
  both(L"AppDir", 17, VT_BSTR);
  EXPECT_EQ(MembersOf(*Info(IID__KwEditorLayers).Get()), expected);
}

TEST_F(TypeLibraryTest, EventsAreTheseInThisOrderWithTheseArguments) {
  const std::vector<Member> expected = {
      {L"ErrorOccured", 1, INVOKE_FUNC, VT_I2, {L"ErrorNo", L"ErrorMsg"}},
      {L"FileSaved", 2, INVOKE_FUNC, VT_BSTR, {L"FilePath", L"CurrentPageNo", L"TotalPages"}},
      {L"MultipageFileSaved", 3, INVOKE_FUNC, VT_VOID, {}},
      {L"NewPageCreated", 4, INVOKE_FUNC, VT_BSTR, {L"FilePath", L"CurrentPageNo", L"TotalPages"}},
      {L"PageChanged", 5, INVOKE_FUNC, VT_I2, {L"PageNo"}},
  };
  const auto info = Info(DIID___KwEditorLayers);
  EXPECT_EQ(MembersOf(*info.Get()), expected);
}

// The members that have one of the flags, with the number of accessors that have it.
std::map<std::wstring, int> MembersWith(WORD flag, ITypeInfo& info) {
  std::map<std::wstring, int> members;
  FUNCDESC* function = nullptr;
  for (UINT index = 0; SUCCEEDED(info.GetFuncDesc(index, &function)); ++index) {
    if ((function->wFuncFlags & flag) != 0) ++members[MemberName(info, function->memid)];
    info.ReleaseFuncDesc(function);
  }
  return members;
}

// Both accessors of a property, because a property window may ask either.
TEST_F(TypeLibraryTest, PropertyWindowsShowWhatIsKeptAndBeginWithTheFolder) {
  const auto info = Info(IID__KwEditorLayers);
  const std::map<std::wstring, int> ofRunTime = {
      {L"m_IsFileChanged", 2}, {L"SaveFilePath", 2}, {L"IsToShowBackImage", 2}, {L"IsFileChanged", 2}};
  EXPECT_EQ(MembersWith(FUNCFLAG_FNONBROWSABLE, *info.Get()), ofRunTime);
  EXPECT_EQ(MembersWith(FUNCFLAG_FUIDEFAULT, *info.Get()), (std::map<std::wstring, int>{{L"AppDir", 2}}));
  EXPECT_EQ(MembersWith(FUNCFLAG_FHIDDEN, *info.Get()), (std::map<std::wstring, int>{}));
  // The variables notify nobody, so nothing can be bound to them.
  auto bindable = MembersWith(FUNCFLAG_FBINDABLE, *info.Get());
  EXPECT_EQ(bindable.size(), 14U);
  EXPECT_FALSE(bindable.contains(L"m_IsFileChanged"));
  EXPECT_FALSE(bindable.contains(L"SaveFilePath"));
}

TEST_F(TypeLibraryTest, ADesignerBeginsWithTheEventOfANewPage) {
  const auto info = Info(DIID___KwEditorLayers);
  EXPECT_EQ(MembersWith(FUNCFLAG_FUIDEFAULT, *info.Get()), (std::map<std::wstring, int>{{L"PageChanged", 1}}));
}

TEST_F(TypeLibraryTest, EveryArgumentOfAnEventIsByReference) {
  const auto info = Info(DIID___KwEditorLayers);
  FUNCDESC* function = nullptr;
  UINT index = 0;
  for (; SUCCEEDED(info->GetFuncDesc(index, &function)); ++index) {
    for (SHORT argument = 0; argument < function->cParams; ++argument) {
      const ELEMDESC& element = function->lprgelemdescParam[argument];
      EXPECT_EQ(element.tdesc.vt, VT_PTR);
      EXPECT_EQ(element.paramdesc.wParamFlags & (PARAMFLAG_FIN | PARAMFLAG_FOUT), PARAMFLAG_FIN | PARAMFLAG_FOUT);
    }
    info->ReleaseFuncDesc(function);
  }
  EXPECT_GE(index, 5U);
}

TEST_F(TypeLibraryTest, ClassHasTheInterfaceAndTheEventsAsItsDefaults) {
  const auto info = Info(CLSID_KwEditorLayers);
  EXPECT_EQ(MemberName(*info.Get(), MEMBERID_NIL), L"KwEditorLayers");
  TYPEATTR* attributes = nullptr;
  ASSERT_HRESULT_SUCCEEDED(info->GetTypeAttr(&attributes));
  EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
  EXPECT_TRUE((attributes->wTypeFlags & TYPEFLAG_FCONTROL) != 0);
  EXPECT_EQ(attributes->cImplTypes, 2);
  info->ReleaseTypeAttr(attributes);
  const struct {
    const wchar_t* name;
    int flags;
  } expected[] = {{L"_KwEditorLayers", IMPLTYPEFLAG_FDEFAULT},
                  {L"__KwEditorLayers", IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE}};
  for (UINT index = 0; index < 2; ++index) {
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> implemented;
    int flags = 0;
    ASSERT_HRESULT_SUCCEEDED(info->GetRefTypeOfImplType(index, &reference));
    ASSERT_HRESULT_SUCCEEDED(info->GetRefTypeInfo(reference, &implemented));
    ASSERT_HRESULT_SUCCEEDED(info->GetImplTypeFlags(index, &flags));
    EXPECT_EQ(MemberName(*implemented.Get(), MEMBERID_NIL), expected[index].name);
    EXPECT_EQ(flags, expected[index].flags);
  }
}

}  // namespace
}  // namespace kw::test
