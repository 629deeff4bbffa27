// What the control does over and over leaves nothing behind: no object, handle or thread of the system and not a byte
// of its own memory.

#include <windows.h>

#include <ole2.h>
#include <oleacc.h>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/GivenPage.h"
#include "tests/activex/PageFrame.h"
#include "tests/activex/PaperlessPrinter.h"
#include "tests/activex/Sinks.h"
#include "tests/activex/SoakFixture.h"
#include "tests/support/win32/AccessibleClient.h"

namespace kw::test {
namespace {

const ExpectedBox Opening = Perhaps(ListOfPendingWork);

TEST_F(SoakTest, PageTurns) {
  EventSink sink;
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    control->OpenFile(Text(document));
  }
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  ExpectNone("two page turns", 5000, {}, [&] {
    sink.events.clear();
    TurnPage(1);
    TurnPage(-1);
    ASSERT_EQ(sink.events, (std::vector<std::string>{"PageChanged(2)", "PageChanged(1)"}));
  });
}

TEST_F(SoakTest, Openings) {
  const std::wstring bad = scratch.File(L"missing.tif");
  ExpectNone("three openings", 340, {Opening, Perhaps("File Error: Invalid file format..")}, [&] {
    for (const std::wstring& path : {document, bad, page}) ASSERT_HRESULT_SUCCEEDED(control->OpenFile(Text(path)));
  });
}

TEST_F(SoakTest, LayersMadeAndRemoved) {
  constexpr int Together = 10;
  Choose(L"Rectangle");
  const auto countParts = [&] { return PartsOf(AccessibleOf(canvas)).size(); };
  const std::size_t before = countParts();
  const auto draw = [&] {
    for (LONG i = 0; i < Together; ++i) Drag({5 + i * 38, 5}, {30 + i * 38, 45});
  };
  draw();
  EXPECT_GE(countParts(), before + Together);
  ExpectNone("ten layers", 1000, {Opening}, [&] {
    draw();
    control->OpenFile(Text(page));
  });
}

TEST_F(SoakTest, Lives) {
  ExpectNone("a life", 1000, {Opening}, [&] {
    container.LetGo();
    control.Reset();
    PumpMessages(5);
    ASSERT_TRUE(Ocx::CanUnload());
    control = Ocx::Create();
    container.Take(control.Get());
    ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_UIACTIVATE));
    control->put_AppDir(Text(scratch.Path()));
    control->put_IsToolboxVisible(VARIANT_TRUE);
    control->put_SignatureFilePath(Text(signature));
    control->OpenFile(Text(document));
    editor = container.ControlWindow();
    canvas = CanvasOf(editor);
    ASSERT_NE(canvas, nullptr);
  });
}

TEST_F(SoakTest, DesignModeAndBack) {
  ExpectNone("a switch to design mode and back", 1000, {}, [&] {
    container.SetUserMode(false);
    control->put_IsToolboxVisible(VARIANT_FALSE);
    control->put_IsToolboxVisible(VARIANT_TRUE);
    container.SetUserMode(true);
  });
}

TEST_F(SoakTest, QuestionsOfAScreenReader) {
  std::vector<Accessible> objects;
  for (const HWND window : WindowsBelow(editor)) objects.push_back(AccessibleOf(window));
  ExpectNone("all names, parts and places", 1000, {}, [&] {
    for (const Accessible& object : objects) {
      NameOf(object);
      PlaceOf(object);
      for (const LONG part : PartsOf(object)) NameOf(object, part);
    }
  });
}

// The system keeps something of each object that goes from a window to a client.
TEST_F(SoakTest, ObjectsForAScreenReader) {
  const Holdings growth =
      GrowthOf("all objects", 1000, {}, [&] { ASSERT_EQ(NamelessBelow(editor), std::vector<std::wstring>{}); });
  EXPECT_EQ(growth.ownBytes, 0);
  EXPECT_EQ(growth.ownBlocks, 0);
  EXPECT_EQ(growth.handles, 0);
  EXPECT_EQ(growth.user, 0);
}

TEST_F(SoakTest, Verbs) {
  ExpectNone("two verbs", 1000, {Perhaps("DoPreCommandProcess"), Perhaps("Capture")}, [&] {
    ASSERT_EQ(container.DoVerb(3), S_OK);
    ASSERT_EQ(container.DoVerb(8), S_OK);
  });
}

TEST_F(SoakTest, DataForTheHost) {
  QuietAdviseSink sink;
  const auto data = As<IDataObject>();
  ExpectNone("a picture and an advice", 1000, {}, [&] {
    FORMATETC dib = FormatOf(CF_DIB, TYMED_HGLOBAL);
    Given given;
    ASSERT_EQ(data->GetData(&dib, &given), S_OK);
    DWORD connection = 0;
    ASSERT_EQ(data->DAdvise(&dib, 0, &sink, &connection), S_OK);
    ASSERT_EQ(data->DUnadvise(connection), S_OK);
    ComPtr<IStream> stream;
    ASSERT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    ASSERT_EQ(As<IPersistStreamInit>()->Save(stream.Get(), FALSE), S_OK);
  });
}

TEST_F(SoakTest, ShowsOfThePropertyPage) {
  ExpectNone("a show", 1000, {}, [&] {
    PageFrame frame;
    frame.Open({control.Get()});
    ASSERT_EQ(frame.page->Apply(), S_OK);
    frame.Close();
  });
}

TEST_F(SoakTest, PrintedPages) {
  const PaperlessPrinter printer;
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    control->OpenFile(Text(document));
  }
  constexpr int PagesOfTheDocument = 3;
  ExpectNone("three printed pages", 340, {}, [&] {
    const int before = PaperlessPrinter::Pages();
    Press(L"Printer Setup");
    ASSERT_EQ(PaperlessPrinter::Pages(), before + PagesOfTheDocument);
  });
}

}  // namespace
}  // namespace kw::test
