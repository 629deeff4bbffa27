#include "tests/architecture/Rules.h"

#include <gtest/gtest.h>

// The rules themselves, on texts that break them and on texts that only look like it.
namespace kw::architecture {
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
                                     "#include \"components/base/Bitmap.h\"\n")
                  .empty());
}

TEST(FilesPastTheSeamRule, FindsThemInTheProduct) {
  for (const std::string call : {"std::ifstream file(path);", "std::fopen(a, b);", "std::filesystem::remove(path);",
                                 "CreateFileW(path.c_str());", "fs::directory_iterator entry(folder);"}) {
    EXPECT_EQ(FilesPastTheSeam("src/document/A.cpp", call).size(), 1U) << call;
    EXPECT_EQ(FilesPastTheSeam("tools/kwpic/A.cpp", call).size(), 1U) << call;
    EXPECT_TRUE(FilesPastTheSeam("src/components/base/SystemFilePosix.cpp", call).empty()) << call;
    EXPECT_TRUE(FilesPastTheSeam("tests/document/ATest.cpp", call).empty()) << call;
    EXPECT_TRUE(FilesPastTheSeam("src/document/A.cpp", "// " + call).empty()) << call;
  }
  EXPECT_EQ(FilesPastTheSeam("src/windows/base/ProfileFile.cpp", "DeleteFileW(path);").size(), 1U);
}

RoomTable SomeRooms() {
  RoomTable rooms;
  rooms.Add("src/components/base/CMakeLists.txt", "kw_room(base)\n");
  rooms.Add("src/picture/CMakeLists.txt", "kw_room(picture DEPENDS base LIBS kw_codecs)\n");
  rooms.Add("src/commands/CMakeLists.txt", "# the commands\nkw_room(commands DEPENDS base\n  picture)\n");
  rooms.Add("src/commands/toolbox/CMakeLists.txt", "kw_room(toolbox DEPENDS picture commands)\n");
  rooms.Add("src/activex/CMakeLists.txt", "kw_type_library(kw_types A.idl)\nkw_room(activex DEPENDS toolbox)\n");
  return rooms;
}

TEST(RoomOrderRule, FindsWhatARoomDoesNotDependOn) {
  const auto findings = SomeRooms().Order("src/picture/A.h", "#pragma once\n#include \"commands/Form.h\"\n");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].line, 2);
  EXPECT_EQ(SomeRooms().Order("src/commands/A.cpp", "#include \"commands/toolbox/A.h\"\n").size(), 1U);
  EXPECT_EQ(SomeRooms().Order("src/commands/toolbox/A.cpp", "#include \"components/base/A.h\"\n").size(), 1U)
      << "another room hands it on";
  EXPECT_EQ(SomeRooms().Order("src/activex/A.cpp", "#include \"picture/formats/A.h\"\n").size(), 1U);
  EXPECT_EQ(SomeRooms().Order("host/Main.cpp", "#include \"components/base/Unicode.h\"\n").size(), 1U);
  EXPECT_EQ(SomeRooms().Order("tools/kwpic/Main.cpp", "#include \"commands/Form.h\"\n").size(), 1U);
}

TEST(RoomOrderRule, FindsAFileOutsideTheRooms) {
  EXPECT_EQ(SomeRooms().Order("src/cellar/A.cpp", "").size(), 1U);
  EXPECT_EQ(SomeRooms().Order("src/components/A.cpp", "").size(), 1U);
}

TEST(RoomOrderRule, AllowsWhatARoomDependsOn) {
  const std::string lower = "#include \"components/base/A.h\"\n#include \"picture/effects/B.h\"\n";
  EXPECT_TRUE(SomeRooms().Order("src/commands/A.cpp", lower + "#include \"commands/A.h\"\n").empty());
  EXPECT_TRUE(SomeRooms().Order("src/commands/toolbox/A.cpp", "#include \"commands/A.h\"\n").empty());
  EXPECT_TRUE(SomeRooms().Order("tools/kwpic/Main.cpp", lower).empty());
  EXPECT_TRUE(SomeRooms().Order("host/Main.cpp", "#include \"Panel.h\"\n#include \"activex/KwEditor.h\"\n").empty());
  EXPECT_TRUE(SomeRooms().Order("tests/components/ATest.cpp", "#include \"commands/Form.h\"\n").empty());
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
           "STDMETHODIMP A::Load(I* stream) { return AtComBoundary(life, [&] { return Read(stream); }); }",
           "STDMETHODIMP A::Freeze(BOOL on) { if (on != 0) return E_NOTIMPL; return S_OK; }",
           "STDMETHODIMP Load(I* stream) override;\nvoid F() { Any(); }",
           "~A() { if (window != nullptr) DestroyWindow(window); }",
           "~A() = default;\nint F() { return Any(); }",
           "~A();\nint F() { return Any(); }",
           "// CALLBACK { Any(); }",
           "int x = ~mask(bits) { }",
       })
    EXPECT_TRUE(OpenBarriers("src/windows/A.cpp", text).empty()) << text;
  EXPECT_TRUE(OpenBarriers("src/windows/base/Guard.h", "try {} catch (...) {}").empty());
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
}  // namespace kw::architecture
