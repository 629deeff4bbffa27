// Documents, errors and files, seen by a host: good files, bad files, the trace and the scratch bitmap.

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "tests/activex/Fixture.h"
#include "tests/activex/MainThread.h"
#include "tests/activex/Sinks.h"
#include "tests/data/TestData.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class DocumentTest : public ControlTest {
protected:
  DocumentTest() : connection(control.Get(), DIID___KwEditorLayers, &sink) {}
  void TearDown() override {
    connection.Cut();
    ControlTest::TearDown();
  }
  // Opens a file and returns the boxes that came up, the list of pending work left out.
  std::vector<std::string> Open(const std::wstring& path) {
    sink.events.clear();
    const BoxAnswerer user({AnyBox()});
    EXPECT_EQ(control->OpenFile(Text(path)), S_OK);
    std::vector<std::string> boxes = user.Boxes();
    EXPECT_FALSE(boxes.empty());
    if (!boxes.empty()) {
      EXPECT_NE(boxes[0].find("Yet to implement : ReCreateUndoFileIndex/tmrWatchClipBoard_Timer"), std::string::npos);
      boxes.erase(boxes.begin());
    }
    return boxes;
  }
  std::wstring Write(const std::wstring& name, const std::string& bytes) {
    std::ofstream(std::filesystem::path(scratch.File(name)), std::ios::binary).write(bytes.data(), std::ssize(bytes));
    return scratch.File(name);
  }
  static std::string Read(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool IsTrue(HRESULT (STDMETHODCALLTYPE _KwEditorLayers::*get)(VARIANT_BOOL*)) const {
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ((control.Get()->*get)(&value), S_OK);
    return value != VARIANT_FALSE;
  }
  static std::vector<std::string> Names(const std::vector<std::string>& events) {
    std::vector<std::string> names;
    names.reserve(events.size());
    for (const std::string& event : events) names.push_back(event.substr(0, event.find('(')));
    return names;
  }

  EventSink sink;
  Connection connection;
};

const std::vector<std::string> InvalidFile = {"File Error: Invalid file format.."};

TEST_F(DocumentTest, UnreadableFilesAreRefusedAndTheNextOneOpens) {
  const std::string tiff = Read(scratch.WriteTiff(L"good.tif", 1));
  const std::wstring bad[] = {
      scratch.File(L"missing.tif"),
      Write(L"empty.tif", ""),
      Write(L"cut.tif", tiff.substr(0, tiff.size() / 2)),
      Write(L"text.tif", "This is no picture at all."),
      Write(L"huge.bmp",
            std::string("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\xff\xff\xff\x7f\xff\xff\xff\x7f\1\0\x18\0", 30) +
                std::string(24, '\0')),
      scratch.Path() + L"folder.tif",
  };
  std::filesystem::create_directory(scratch.File(L"folder.tif"));
  for (const std::wstring& path : bad) {
    const std::vector<std::string> boxes = Open(path);
    EXPECT_FALSE(boxes.empty()) << std::string(path.begin(), path.end());
    for (const std::string& box : boxes) EXPECT_EQ(box, InvalidFile[0]);
    EXPECT_FALSE(IsTrue(&_KwEditorLayers::get_IsEditable));
    EXPECT_TRUE(IsTrue(&_KwEditorLayers::get_Enabled));
  }
  control->put_IsEditable(VARIANT_TRUE);
  EXPECT_TRUE(Open(scratch.File(L"good.tif")).empty());
  EXPECT_TRUE(IsTrue(&_KwEditorLayers::get_IsEditable));
  EXPECT_EQ(Read(scratch.File(L"good.tif")), tiff) << "the host's file was changed";
}

TEST_F(DocumentTest, LockedFileIsRefused) {
  const std::wstring path = scratch.WriteTiff(L"locked.tif", 2);
  const HANDLE lock = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(lock, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(Open(path).empty());
  CloseHandle(lock);
  control->put_IsEditable(VARIANT_TRUE);
  EXPECT_TRUE(Open(path).empty());
}

TEST_F(DocumentTest, FirstPageFileOpensTheDocumentUpToTheFirstGap) {
  EXPECT_TRUE(Open(scratch.WriteTiff(L"D.tif", 4)).empty());
  EXPECT_EQ(sink.events.size(), 5U);
  ASSERT_TRUE(DeleteFileW(scratch.File(L"D_Page_3.tif").c_str()) != 0);
  ASSERT_TRUE(DeleteFileW(scratch.File(L"D.tif").c_str()) != 0);
  EXPECT_TRUE(Open(scratch.File(L"D_Page_1.tif")).empty());
  EXPECT_EQ(sink.events, std::vector<std::string>{"PageChanged(1)"}) << "nothing is split again";
}

TEST_F(DocumentTest, LaterDocumentsAreSplitUnderTheFirstName) {
  Open(scratch.WriteTiff(L"First.tif", 2));
  Open(scratch.WriteTiff(L"Second.tif", 2));
  EXPECT_TRUE(FileExists(scratch.File(L"First_Page_2.tif")));
  EXPECT_FALSE(FileExists(scratch.File(L"Second_Page_2.tif")));
}

TEST_F(DocumentTest, NamesMayHoldAnyCharacter) {
  const std::wstring name = L"Bef\x00FCnde \x65E5\x672C \xD83D\xDDC2";
  EXPECT_TRUE(Open(scratch.WriteTiff(name + L".tif", 2)).empty());
  EXPECT_TRUE(FileExists(scratch.File(name + L"_Page_2.tif")));
}

TEST_F(DocumentTest, ASecondErrorIsSilent) {
  const std::wstring document = scratch.WriteTiff(L"nodot", 2);
  const std::vector<std::string> boxes = Open(document);
  ASSERT_FALSE(boxes.empty());
  EXPECT_EQ(boxes[0].find("Critical Error: Error Number : "), 0U);
  EXPECT_EQ(std::count(sink.events.begin(), sink.events.end(), sink.events[0]), 1);
  EXPECT_FALSE(IsTrue(&_KwEditorLayers::get_Enabled));
  const std::string trace = Read(scratch.File(L"FunctionsInExecution.txt"));
  EXPECT_NE(trace.find("\r\n" + std::string(80, '*') + "\r\n"), std::string::npos);
  EXPECT_NE(trace.find("FunctionInExecution : \r\n"), std::string::npos);
  // The control is disabled now: the same again shows no report and tells no host.
  for (const std::string& box : Open(document)) EXPECT_NE(box.find("Critical Error"), 0U);
  for (const std::string& event : Names(sink.events)) EXPECT_NE(event, "ErrorOccured");
}

TEST_F(DocumentTest, FolderWithoutABackslashIsPartOfTheTraceFilesName) {
  std::filesystem::create_directory(scratch.File(L"work"));
  control->put_AppDir(Text(scratch.File(L"work")));
  control->SavePage();
  EXPECT_TRUE(FileExists(scratch.File(L"workFunctionsInExecution.txt")));
  EXPECT_FALSE(FileExists(scratch.File(L"work\\FunctionsInExecution.txt")));
  control->put_AppDir(Text(scratch.Path()));
}

TEST_F(DocumentTest, EndLeavesTheTraceAndNoScratchBitmap) {
  const auto bitmaps = [&] {
    const std::filesystem::directory_iterator files(scratch.Path());
    return std::count_if(begin(files), end(files), [](const auto& file) { return file.path().extension() == L".bmp"; });
  };
  Open(scratch.WriteTiff(L"D.tif", 1));
  EXPECT_EQ(bitmaps(), 1);
  connection.Cut();
  control.Reset();
  EXPECT_EQ(bitmaps(), 0);
  EXPECT_TRUE(FileExists(scratch.File(L"FunctionsInExecution.txt")));
}

TEST_F(DocumentTest, ScannedDocumentIsOpenedPageByPage) {
  std::filesystem::copy_file(TestData("letter.tif"), scratch.File(L"Scan.tif"));
  EXPECT_TRUE(Open(scratch.File(L"Scan.tif")).empty());
  EXPECT_EQ(Names(sink.events), (std::vector<std::string>{"NewPageCreated", "NewPageCreated", "NewPageCreated",
                                                          "NewPageCreated", "NewPageCreated", "PageChanged"}));
  EXPECT_TRUE(FileExists(scratch.File(L"Scan_Page_5.tif")));
}

TEST_F(DocumentTest, PicturesForBackgroundAndSignatureAreTaken) {
  const BoxAnswerer user;
  const std::wstring picture = TestData("colour.jpg").wstring();
  EXPECT_EQ(control->put_BGImage(Text(picture)), S_OK);
  EXPECT_EQ(control->put_SignatureFilePath(Text(picture)), S_OK);
  EXPECT_EQ(control->put_IsToShowBackImage(VARIANT_TRUE), S_OK);
  EXPECT_EQ(control->put_IsToLightenBackImage(VARIANT_TRUE), S_OK);
  EXPECT_TRUE(IsTrue(&_KwEditorLayers::get_IsToShowBackImage));
  EXPECT_TRUE(IsTrue(&_KwEditorLayers::get_Enabled));
  EXPECT_TRUE(user.Boxes().empty());
}

TEST_F(DocumentTest, ADocumentThatIsOpenedInAnEventTakesTheOthersPlace) {
  const std::wstring inner = scratch.WriteTiff(L"Inner.tif", 1);
  const std::wstring outer = scratch.WriteTiff(L"Outer.tif", 3);
  // A page file that cannot be written.
  std::filesystem::create_directory(scratch.File(L"Outer_Page_1.tif"));
  const std::map<DISPID, std::size_t> pageFiles = {
      {NewPageCreatedEventId, 1}, {ErrorOccuredEventId, 2}, {PageChangedEventId, 2}};
  for (const auto& [event, count] : pageFiles) {
    control->put_Enabled(VARIANT_TRUE);
    std::vector<std::string> then;
    bool isOpened = false;
    sink.onEvent = [&, event = event](DISPID raised, VARIANT*, UINT) {
      if (raised != event || isOpened) return;
      isOpened = true;
      EXPECT_EQ(control->OpenFile(Text(inner)), S_OK);
      then = Names(sink.events);
    };
    Open(outer);
    sink.onEvent = nullptr;
    EXPECT_TRUE(isOpened) << event;
    EXPECT_EQ(Names(sink.events), then) << event;
    EXPECT_EQ(sink.events.back(), "PageChanged(0)") << event;
    EXPECT_EQ(std::ranges::count(then, "NewPageCreated"), static_cast<std::ptrdiff_t>(count)) << event;
  }
}

TEST_F(DocumentTest, ADocumentThatIsOpenedInANoticeOfAPropertyTakesTheOthersPlace) {
  const std::wstring inner = scratch.WriteTiff(L"Inner.tif", 1);
  bool isOpened = false;
  PropertySink properties;
  properties.onChanged = [&](DISPID) {
    if (isOpened) return;
    isOpened = true;
    EXPECT_EQ(control->OpenFile(Text(inner)), S_OK);
  };
  Connection notices(control.Get(), IID_IPropertyNotifySink, &properties);
  Open(scratch.WriteTiff(L"Outer.tif", 3));
  notices.Cut();
  EXPECT_TRUE(isOpened);
  EXPECT_EQ(sink.events, std::vector<std::string>{"PageChanged(0)"});
  EXPECT_FALSE(FileExists(scratch.File(L"Outer_Page_3.tif")));
}

TEST_F(DocumentTest, ADocumentThatIsOpenedInABoxTakesTheOthersPlace) {
  const std::wstring inner = scratch.WriteTiff(L"Inner.tif", 1);
  const std::wstring outer = scratch.WriteTiff(L"Outer.tif", 3);
  // A page file that cannot be written.
  std::filesystem::create_directory(scratch.File(L"Outer_Page_2.tif"));
  const std::map<std::string, std::wstring> outerDocuments = {{"Critical Error", outer},
                                                              {"File Error", scratch.File(L"missing.tif")}};
  for (const auto& [title, path] : outerDocuments) {
    SCOPED_TRACE(title);
    control->put_Enabled(VARIANT_TRUE);
    sink.events.clear();
    std::vector<std::string> then;
    std::atomic<bool> isAsked = false;
    bool isOpened = false;
    const MainThread mainThread;
    const BoxAnswerer user({Times(2, ListOfPendingWork), Perhaps(title)}, [&, title = title](HWND box) {
      if (isAsked || !WordsOf(box).starts_with(title)) return;
      isAsked = true;
      mainThread.Post([&] {
        EXPECT_EQ(control->OpenFile(Text(inner)), S_OK);
        isOpened = true;
        then = sink.events;
      });
    });
    EXPECT_EQ(control->OpenFile(Text(path)), S_OK);
    EXPECT_TRUE(isOpened);
    // The report that the box belongs to is brought to its end.
    if (title == "Critical Error") {
      ASSERT_FALSE(sink.events.empty());
      EXPECT_TRUE(sink.events.back().starts_with("ErrorOccured(75")) << sink.events.back();
      sink.events.pop_back();
    }
    EXPECT_EQ(sink.events, then);
    ASSERT_FALSE(sink.events.empty());
    EXPECT_EQ(sink.events.back(), "PageChanged(0)");
    EXPECT_FALSE(FileExists(scratch.File(L"Outer_Page_1.tif")));
  }
}

TEST_F(DocumentTest, ThousandDirectoriesOverOneStripAreRefusedAndNothingIsWritten) {
  constexpr std::uint32_t strip = 1000000;
  constexpr int pages = 1000;
  std::string bytes("II*\0", 4);
  const auto put = [&](std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
  };
  put(8 + strip, 4);
  bytes.resize(8 + strip);
  for (int page = 1; page <= pages; ++page) {
    // Width, height, bits, compression, colours, the strip, rows of a strip, bytes of the strip.
    const std::uint32_t entries[][2] = {{256, 800}, {257, strip / 100}, {258, 1},           {259, 1},
                                        {262, 0},   {273, 8},           {278, strip / 100}, {279, strip}};
    put(static_cast<std::uint32_t>(std::size(entries)), 2);
    for (const auto& [tag, value] : entries) {
      put(tag, 2);
      put(4, 2);
      put(1, 4);
      put(value, 4);
    }
    put(page == pages ? 0 : static_cast<std::uint32_t>(bytes.size()) + 4, 4);
  }
  const std::wstring path = Write(L"hostile.tif", bytes);
  const auto files = [&] {
    std::map<std::wstring, std::uintmax_t> found;
    for (const auto& entry : std::filesystem::directory_iterator(scratch.Path())) {
      if (entry.path().filename() != L"FunctionsInExecution.txt") found[entry.path().wstring()] = entry.file_size();
    }
    return found;
  };
  const auto before = files();
  EXPECT_EQ(Open(path), InvalidFile);
  EXPECT_TRUE(sink.events.empty());
  EXPECT_EQ(files(), before);
}

TEST_F(DocumentTest, EmptyPathIsReportedAndNoCrash) {
  EXPECT_FALSE(Open(L"").empty());
  const BoxAnswerer user({Once(ListOfPendingWork), Once("File Error: Invalid file format..")});
  EXPECT_EQ(control->OpenFile(nullptr), S_OK);
}

}  // namespace
}  // namespace kw::test
