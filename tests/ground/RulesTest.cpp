#include "ground/Rules.h"

#include <gtest/gtest.h>

// The rules themselves, on texts that break them and on texts that only look like it.
namespace kw::ground {
namespace {

TEST(OperatingSystemHeadersRule, FindsThemInPortableCode) {
  for (const std::string header : {"windows.h", "oleidl.h", "unistd.h", "sys/stat.h", "winsock2.h"}) {
    const auto findings =
        OperatingSystemHeaders("src/document/A.cpp", "#include <string>\n # include <" + header + ">\n");
    ASSERT_EQ(findings.size(), 1U) << header;
    EXPECT_EQ(findings[0].line, 2);
  }
  EXPECT_EQ(OperatingSystemHeaders("src/picture/formats/A.h", "#include \"windows.h\"\n").size(), 1U);
  EXPECT_EQ(OperatingSystemHeaders("tests/control/ATest.cpp", "#include <windows.h>\n").size(), 1U);
  EXPECT_EQ(OperatingSystemHeaders("tools/kwpic/Main.cpp", "#include <unistd.h>\n").size(), 1U);
}

TEST(OperatingSystemHeadersRule, AllowsThemWhereTheSystemIsMet) {
  for (const std::string path : {"src/windows/A.cpp", "src/activex/A.h", "host/Main.cpp", "tools/kwpic/Platform.cpp",
                                 "tests/windows/ATest.cpp", "tests/activex/ATest.cpp", "README.md"})
    EXPECT_TRUE(OperatingSystemHeaders(path, "#include <windows.h>\n").empty()) << path;
}

TEST(OperatingSystemHeadersRule, AllowsTheStandardLibraryAndTheCodecs) {
  EXPECT_TRUE(OperatingSystemHeaders("src/picture/A.cpp",
                                     "#include <cstdio>\n#include <jpeglib.h>\n"
                                     "#include \"components/Bitmap.h\"\n")
                  .empty());
}

TEST(RoomOrderRule, FindsALowerRoomThatIncludesAHigherOne) {
  const auto findings = RoomOrder("src/components/A.h", "#pragma once\n#include \"control/Form.h\"\n");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].line, 2);
  EXPECT_EQ(RoomOrder("src/view/A.cpp", "#include \"document/Pages.h\"\n").size(), 1U);
  EXPECT_EQ(RoomOrder("src/windows/A.cpp", "#include \"control/Form.h\"\n").size(), 1U);
  EXPECT_EQ(RoomOrder("host/Main.cpp", "#include \"components/Unicode.h\"\n").size(), 1U);
  EXPECT_EQ(RoomOrder("tools/kwpic/Main.cpp", "#include \"control/Form.h\"\n").size(), 1U);
}

TEST(RoomOrderRule, FindsARoomOutsideTheOrder) { EXPECT_EQ(RoomOrder("src/cellar/A.cpp", "").size(), 1U); }

TEST(RoomOrderRule, AllowsTheRoomsBelow) {
  EXPECT_TRUE(RoomOrder("src/control/A.cpp", "#include \"components/A.h\"\n#include \"devices/B.h\"\n").empty());
  EXPECT_TRUE(RoomOrder("src/drawing/A.cpp", "#include \"drawing/A.h\"\n#include \"trap/Trap.h\"\n").empty());
  EXPECT_TRUE(RoomOrder("host/Main.cpp", "#include \"Panel.h\"\n#include \"activex/KwEditor.h\"\n").empty());
  EXPECT_TRUE(RoomOrder("tests/components/ATest.cpp", "#include \"control/Form.h\"\n").empty());
}

TEST(ErrorHandlersRule, FindsTryAndCatchInTheEditor) {
  const auto findings =
      ErrorHandlers("src/commands/A.cpp", "void F() {\n  try {\n    G();\n  } catch (...) {\n  }\n}\n");
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(findings[0].line, 2);
  EXPECT_EQ(findings[1].line, 4);
}

TEST(ErrorHandlersRule, SeesCodeOnlyAndTheEditorOnly) {
  const std::string text =
      "// try again\n/* try\n catch */ auto s = \"try\"; auto r = R\"x(try \" )x\"; int retry = 1'000; f('\\'');\n";
  EXPECT_TRUE(ErrorHandlers("src/control/A.cpp", text).empty());
  EXPECT_EQ(ErrorHandlers("src/control/A.cpp", text + "try {}").size(), 1U);
  EXPECT_TRUE(ErrorHandlers("src/trap/Trap.h", "try {}").empty());
  EXPECT_TRUE(ErrorHandlers("src/picture/A.cpp", "try {}").empty());
}

TEST(OpenBarriersRule, FindsWhatLetsErrorsOut) {
  EXPECT_EQ(OpenBarriers("src/windows/A.cpp", "void F() {\n  try {\n  } catch (...) {\n  }\n}\n").size(), 2U);
  const auto callback = OpenBarriers("src/windows/A.cpp", "\nvoid CALLBACK Run(int id) {\n  Timer(id).Fire();\n}\n");
  ASSERT_EQ(callback.size(), 1U);
  EXPECT_EQ(callback[0].line, 2);
  EXPECT_EQ(OpenBarriers("src/activex/A.h", "STDMETHODIMP_(ULONG) Release() override { return core.Drop(); }").size(),
            1U);
  EXPECT_EQ(
      OpenBarriers("src/activex/A.cpp", "STDMETHODIMP A::Load(I* stream) {\n  if (stream) Read(*stream);\n}").size(),
      1U);
  EXPECT_EQ(OpenBarriers("src/activex/A.cpp", "STDAPI DllRegisterServer() { return Register(); }").size(), 1U);
  EXPECT_EQ(OpenBarriers("src/activex/A.cpp", "Core::~Core() {\n  editor.UserControl_Terminate();\n}").size(), 1U);
  EXPECT_EQ(OpenBarriers("src/windows/A.h", "  ~A() { model.SetEnabled(true); }").size(), 1U);
  EXPECT_EQ(OpenBarriers("src/windows/A.cpp", "BOOL CALLBACK Find(HWND child, LPARAM to) { text.assign(5); }").size(),
            1U);
}

TEST(OpenBarriersRule, AllowsBarriersAndWhatThrowsNothing) {
  for (const std::string text : {
           "void CALLBACK Run(int id) { Guard([id] { Timer(id).Fire(); }); }",
           "static LRESULT CALLBACK Procedure(HWND window, UINT message);",
           "STDMETHODIMP A::Load(I* stream) { return AtEdge(life, [&] { return Read(stream); }); }",
           "STDMETHODIMP A::Freeze(BOOL on) { if (on != 0) return E_NOTIMPL; return S_OK; }",
           "STDMETHODIMP Load(I* stream) override;\nvoid F() { Any(); }",
           "~A() { if (window != nullptr) DestroyWindow(window); }",
           "~A() = default;\nint F() { return Any(); }",
           "~A();\nint F() { return Any(); }",
           "// CALLBACK { Any(); }",
           "int x = ~mask(bits) { }",
       })
    EXPECT_TRUE(OpenBarriers("src/windows/A.cpp", text).empty()) << text;
  EXPECT_TRUE(OpenBarriers("src/windows/Guard.h", "try {} catch (...) {}").empty());
  EXPECT_TRUE(OpenBarriers("tests/activex/A.cpp", "void CALLBACK F() { Any(); } try {} catch (...) {}").empty());
}

TEST(LongFilesRule, CountsLines) {
  std::string text;
  for (int line = 0; line < 400; ++line) text += "x\n";
  EXPECT_TRUE(LongFiles("src/control/A.cpp", text).empty());
  EXPECT_EQ(LongFiles("src/control/A.cpp", text + "x\n").size(), 1U);
}

// The addresses are put together here, so that this file does not break the rule itself.
TEST(HostsRule, FindsAddressesAndHostNames) {
  EXPECT_EQ(Hosts("a.md",
                  "text\nsee https:"
                  "//example.invalid/x\n")
                .size(),
            1U);
  EXPECT_EQ(Hosts("scripts/a",
                  "curl packages.example"
                  ".org/list")
                .size(),
            1U);
  EXPECT_EQ(Hosts("scripts/a",
                  "ftp:"
                  "//10.0.0.1/")
                .size(),
            1U);
}

TEST(HostsRule, AllowsNameSpacesAndFileNames) {
  EXPECT_TRUE(Hosts("a.svg",
                    "<svg xmlns=\"http:"
                    "//www.w3.org/2000/svg\">")
                  .empty());
  EXPECT_TRUE(Hosts("a.cpp", "#include \"a/b.com.h\" // scripts/run, x.y(z)").empty());
}

}  // namespace
}  // namespace kw::ground
