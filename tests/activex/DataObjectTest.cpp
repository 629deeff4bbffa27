// The annotated page as a container gets it: formats, media, refusals.

#include <windows.h>

#include <ole2.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/activex/Fixture.h"
#include "tests/activex/GivenPage.h"
#include "tests/activex/Sinks.h"
#include "tests/windows/ImportPatch.h"

namespace kw::test {
namespace {

constexpr int Width = 61;
constexpr int Height = 40;
constexpr LONG DotsAcross = 11811;  // a metre: 300 an inch
constexpr LONG DotsDown = 7874;     // 200 an inch

COLORREF ColourAt(int x, int y) { return RGB(x * 4, y * 6, (x * y) % 256); }

class DataObjectTest : public ControlTest {
protected:
  void SetUp() override {
    ControlTest::SetUp();
    data = As<IDataObject>();
  }
  void TearDown() override {
    data.Reset();
    ControlTest::TearDown();
  }

  // Opens a page of ColourAt with a resolution.
  void Open() {
    const std::wstring path = scratch.WriteBitmap(L"page.bmp", Width, Height, &ColourAt);
    std::fstream file(std::filesystem::path(path), std::ios::binary | std::ios::in | std::ios::out);
    constexpr std::streamoff resolution = 38;
    file.seekp(resolution);
    file.write(reinterpret_cast<const char*>(&DotsAcross), sizeof DotsAcross);
    file.write(reinterpret_cast<const char*>(&DotsDown), sizeof DotsDown);
    file.close();
    OpenDocument(*control.Get(), path);
  }
  HRESULT Get(const FORMATETC& format, Given& given) const {
    FORMATETC asked = format;
    return data->GetData(&asked, &given);
  }
  HRESULT Query(const FORMATETC& format) const {
    FORMATETC asked = format;
    return data->QueryGetData(&asked);
  }
  HRESULT Draw(HDC context, const RECTL& bounds, BOOL(CALLBACK* goOn)(ULONG_PTR) = nullptr) const {
    return As<IViewObject>()->Draw(DVASPECT_DOCPRINT, -1, nullptr, nullptr, nullptr, context, &bounds, nullptr, goOn,
                                   0);
  }

  ComPtr<IDataObject> data;
};

HGLOBAL WINAPI NoBlock(UINT /*flags*/, SIZE_T /*bytes*/) { return nullptr; }
HDC WINAPI NoMetafile(HDC /*reference*/, LPCWSTR /*file*/, const RECT* /*frame*/, LPCWSTR /*name*/) { return nullptr; }
BOOL CALLBACK Stop(ULONG_PTR /*argument*/) { return FALSE; }

void ExpectThePage(const GivenPicture& picture) {
  ASSERT_EQ(picture.width, Width);
  ASSERT_EQ(picture.height, Height);
  for (int y = 0; y < Height; ++y) {
    for (int x = 0; x < Width; ++x) ASSERT_EQ(picture.At(x, y), ColourAt(x, y)) << x << ", " << y;
  }
}

// A top-down bitmap to draw into, magenta at first.
class Paper {
public:
  Paper(int width, int height)
      : context(CreateCompatibleDC(nullptr)), bitmap(MakeBitmap(width, height)), before(SelectObject(context, bitmap)) {
    const HBRUSH brush = CreateSolidBrush(RGB(255, 0, 255));
    const RECT all = {0, 0, width, height};
    FillRect(context, &all, brush);
    DeleteObject(brush);
  }
  Paper(const Paper&) = delete;
  Paper& operator=(const Paper&) = delete;
  ~Paper() {
    SelectObject(context, before);
    DeleteObject(bitmap);
    DeleteDC(context);
  }
  HDC Context() const { return context; }
  COLORREF At(int x, int y) const { return GetPixel(context, x, y); }

private:
  static HBITMAP MakeBitmap(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  }

  HDC context;
  HBITMAP bitmap;
  HGDIOBJ before;
};

TEST_F(DataObjectTest, HasNothingToGiveWithoutAPage) {
  Given given;
  EXPECT_EQ(Query(FormatOf(CF_DIB, TYMED_HGLOBAL)), OLE_E_BLANK);
  EXPECT_EQ(Get(FormatOf(CF_DIB, TYMED_HGLOBAL), given), OLE_E_BLANK);
  FORMATETC format = FormatOf(CF_TIFF, TYMED_ISTREAM);
  STGMEDIUM here = {};
  here.tymed = TYMED_ISTREAM;
  EXPECT_EQ(data->GetDataHere(&format, &here), OLE_E_BLANK);
  const Paper paper(8, 8);
  EXPECT_EQ(Draw(paper.Context(), {0, 0, 8, 8}), OLE_E_BLANK);
  SIZEL size = {};
  EXPECT_EQ(As<IViewObject2>()->GetExtent(DVASPECT_DOCPRINT, -1, nullptr, &size), OLE_E_BLANK);
}

TEST_F(DataObjectTest, NamesItsFormats) {
  ComPtr<IEnumFORMATETC> formats;
  ASSERT_EQ(data->EnumFormatEtc(DATADIR_GET, &formats), S_OK);
  std::vector<CLIPFORMAT> ids;
  FORMATETC format = {};
  while (formats->Next(1, &format, nullptr) == S_OK) {
    ids.push_back(format.cfFormat);
    EXPECT_EQ(format.ptd, nullptr);
    EXPECT_EQ(format.dwAspect, static_cast<DWORD>(DVASPECT_CONTENT));
    EXPECT_EQ(format.lindex, -1);
    EXPECT_EQ(Query(format), OLE_E_BLANK) << "known, but there is no page";
  }
  EXPECT_EQ(ids, (std::vector<CLIPFORMAT>{CF_DIB, CF_DIBV5, CF_TIFF, CF_ENHMETAFILE}));
  EXPECT_EQ(data->EnumFormatEtc(DATADIR_SET, &formats), E_NOTIMPL);
  EXPECT_EQ(data->EnumFormatEtc(77, &formats), E_INVALIDARG);
  EXPECT_EQ(data->EnumFormatEtc(DATADIR_GET, nullptr), E_INVALIDARG);
}

TEST_F(DataObjectTest, RefusesWhatItDoesNotGive) {
  Open();
  const auto expect = [&](const FORMATETC& format, HRESULT result) {
    Given given;
    given.tymed = TYMED_FILE;
    EXPECT_EQ(Get(format, given), result);
    EXPECT_EQ(given.tymed, static_cast<DWORD>(TYMED_NULL));
    EXPECT_EQ(Query(format), result);
  };
  expect(FormatOf(CF_BITMAP, TYMED_GDI), DV_E_FORMATETC);
  expect(FormatOf(0, TYMED_HGLOBAL), DV_E_FORMATETC);
  expect(FormatOf(CF_DIB, TYMED_ISTREAM), DV_E_TYMED);
  expect(FormatOf(CF_ENHMETAFILE, TYMED_HGLOBAL | TYMED_MFPICT), DV_E_TYMED);
  expect(FormatOf(CF_TIFF, 0), DV_E_TYMED);
  FORMATETC format = FormatOf(CF_DIB, TYMED_HGLOBAL);
  format.dwAspect = DVASPECT_ICON;
  expect(format, DV_E_DVASPECT);
  format.dwAspect = DVASPECT_CONTENT | DVASPECT_DOCPRINT;
  expect(format, DV_E_DVASPECT);
  format = FormatOf(CF_DIB, TYMED_HGLOBAL);
  format.lindex = 0;
  expect(format, DV_E_LINDEX);
}

TEST_F(DataObjectTest, RefusesCallsWithoutArguments) {
  FORMATETC format = FormatOf(CF_DIB, TYMED_HGLOBAL);
  STGMEDIUM medium = {};
  DWORD connection = 0;
  EXPECT_EQ(data->GetData(nullptr, &medium), E_INVALIDARG);
  EXPECT_EQ(data->GetData(&format, nullptr), E_INVALIDARG);
  EXPECT_EQ(data->GetDataHere(nullptr, &medium), E_INVALIDARG);
  EXPECT_EQ(data->GetDataHere(&format, nullptr), E_INVALIDARG);
  EXPECT_EQ(data->QueryGetData(nullptr), E_INVALIDARG);
  EXPECT_EQ(data->GetCanonicalFormatEtc(nullptr, &format), E_INVALIDARG);
  EXPECT_EQ(data->GetCanonicalFormatEtc(&format, nullptr), E_INVALIDARG);
  EXPECT_EQ(data->SetData(&format, &medium, FALSE), E_NOTIMPL);
  EXPECT_EQ(data->DAdvise(nullptr, 0, nullptr, &connection), E_INVALIDARG);
  EXPECT_EQ(data->EnumDAdvise(nullptr), E_INVALIDARG);
}

TEST_F(DataObjectTest, NoFormatDependsOnTheDevice) {
  DVTARGETDEVICE device = {};
  FORMATETC format = FormatOf(CF_DIB, TYMED_HGLOBAL);
  format.ptd = &device;
  FORMATETC canonical = {};
  EXPECT_EQ(data->GetCanonicalFormatEtc(&format, &canonical), DATA_S_SAMEFORMATETC);
  EXPECT_EQ(canonical.ptd, nullptr);
  EXPECT_EQ(canonical.cfFormat, CF_DIB);
}

TEST_F(DataObjectTest, GivesBitmapsWithTheResolutionOfThePage) {
  Open();
  for (const CLIPFORMAT id : {CLIPFORMAT{CF_DIB}, CLIPFORMAT{CF_DIBV5}}) {
    const GivenPicture picture = DibOf(*data.Get(), id);
    ExpectThePage(picture);
    EXPECT_EQ(picture.head.bV5XPelsPerMeter, DotsAcross);
    EXPECT_EQ(picture.head.bV5YPelsPerMeter, DotsDown);
    EXPECT_EQ(picture.head.bV5CSType, id == CF_DIBV5 ? 0x73524742U : 0U);
  }
}

TEST_F(DataObjectTest, GivesTheSameForPrinting) {
  Open();
  FORMATETC format = FormatOf(CF_DIB, TYMED_HGLOBAL);
  format.dwAspect = DVASPECT_DOCPRINT;
  Given given;
  ASSERT_EQ(Get(format, given), S_OK);
  ExpectThePage(PictureOf(given.hGlobal));
}

TEST_F(DataObjectTest, GivesATiffThatTheControlReads) {
  Open();
  for (const DWORD medium : {TYMED_HGLOBAL, TYMED_ISTREAM}) {
    Given given;
    ASSERT_EQ(Get(FormatOf(CF_TIFF, medium), given), S_OK);
    ASSERT_EQ(given.tymed, medium);
    std::string bytes;
    if (medium == TYMED_HGLOBAL) {
      bytes.assign(static_cast<const char*>(GlobalLock(given.hGlobal)), GlobalSize(given.hGlobal));
      GlobalUnlock(given.hGlobal);
    } else {
      bytes.resize(100000);
      ULONG got = 0;
      EXPECT_HRESULT_SUCCEEDED(given.pstm->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &got));
      bytes.resize(got);
    }
    const std::wstring path = scratch.File(L"annotated.tif");
    std::ofstream(std::filesystem::path(path), std::ios::binary) << bytes;
    {
      const auto second = Ocx::Create();
      OpenDocument(*second.Get(), path);
      ComPtr<IDataObject> read;
      ASSERT_EQ(second.As(&read), S_OK);
      const GivenPicture picture = DibOf(*read.Get());
      ExpectThePage(picture);
      EXPECT_EQ(picture.head.bV5XPelsPerMeter, DotsAcross);
      EXPECT_EQ(picture.head.bV5YPelsPerMeter, DotsDown);
    }
  }
}

TEST_F(DataObjectTest, GivesAMetafileOfTheSizeOnPaper) {
  Open();
  Given given;
  ASSERT_EQ(Get(FormatOf(CF_ENHMETAFILE, TYMED_ENHMF), given), S_OK);
  ENHMETAHEADER head = {};
  ASSERT_NE(GetEnhMetaFileHeader(given.hEnhMetaFile, sizeof head, &head), 0U);
  EXPECT_NEAR(head.rclFrame.right - head.rclFrame.left, Width * 2540 / 300.0, 1);
  EXPECT_NEAR(head.rclFrame.bottom - head.rclFrame.top, Height * 2540 / 200.0, 1);
  const Paper paper(Width + 2, Height + 2);
  const RECT place = {1, 1, 1 + Width, 1 + Height};
  ASSERT_NE(PlayEnhMetaFile(paper.Context(), given.hEnhMetaFile, &place), FALSE);
  for (int y = 0; y < Height; ++y) {
    for (int x = 0; x < Width; ++x) ASSERT_EQ(paper.At(x + 1, y + 1), ColourAt(x, y)) << x << ", " << y;
  }
  EXPECT_EQ(paper.At(0, 0), RGB(255, 0, 255));
  EXPECT_EQ(paper.At(Width + 1, Height + 1), RGB(255, 0, 255));
}

TEST_F(DataObjectTest, PrintsThePage) {
  Open();
  const Paper paper(Width + 10, Height + 10);
  ASSERT_EQ(Draw(paper.Context(), {5, 3, 5 + Width, 3 + Height}), S_OK);
  for (int y = 0; y < Height; ++y) {
    for (int x = 0; x < Width; ++x) ASSERT_EQ(paper.At(x + 5, y + 3), ColourAt(x, y)) << x << ", " << y;
  }
  EXPECT_EQ(paper.At(4, 3), RGB(255, 0, 255));
  EXPECT_EQ(paper.At(5 + Width, 3 + Height - 1), RGB(255, 0, 255));
  EXPECT_EQ(Draw(paper.Context(), {0, 0, 5, 5}, &Stop), E_ABORT);
  EXPECT_EQ(Draw(nullptr, {0, 0, 5, 5}), E_INVALIDARG);
  SIZEL size = {};
  EXPECT_EQ(As<IViewObject2>()->GetExtent(DVASPECT_DOCPRINT, -1, nullptr, &size), S_OK);
  EXPECT_NEAR(size.cx, Width * 2540 / 300.0, 1);
  EXPECT_NEAR(size.cy, Height * 2540 / 200.0, 1);
}

TEST_F(DataObjectTest, FillsABlockThatIsLargeEnough) {
  Open();
  constexpr SIZE_T needed = sizeof(BITMAPINFOHEADER) + SIZE_T{184} * Height;
  for (const CLIPFORMAT id : {CLIPFORMAT{CF_DIB}, CLIPFORMAT{CF_TIFF}}) {
    FORMATETC format = FormatOf(id, TYMED_HGLOBAL);
    Given small;
    small.tymed = TYMED_HGLOBAL;
    small.hGlobal = GlobalAlloc(GMEM_MOVEABLE, 100);
    EXPECT_EQ(data->GetDataHere(&format, &small), STG_E_MEDIUMFULL);
    Given none;
    none.tymed = TYMED_HGLOBAL;
    EXPECT_EQ(data->GetDataHere(&format, &none), E_INVALIDARG);
  }
  FORMATETC format = FormatOf(CF_DIB, TYMED_HGLOBAL);
  Given exact;
  exact.tymed = TYMED_HGLOBAL;
  exact.hGlobal = GlobalAlloc(GMEM_MOVEABLE, needed);
  EXPECT_EQ(data->GetDataHere(&format, &exact), S_OK);
  ExpectThePage(PictureOf(exact.hGlobal));
  Given other;
  other.tymed = TYMED_ISTREAM;
  EXPECT_EQ(data->GetDataHere(&format, &other), DV_E_TYMED);
  FORMATETC metafile = FormatOf(CF_ENHMETAFILE, TYMED_ENHMF);
  other.tymed = TYMED_ENHMF;
  EXPECT_EQ(data->GetDataHere(&metafile, &other), DV_E_TYMED);
}

TEST_F(DataObjectTest, SaysThatThereIsNoMemory) {
  Open();
  const auto get = [&](CLIPFORMAT id, DWORD medium) {
    Given given;
    return Get(FormatOf(id, medium), given);
  };
  {
    const ImportPatch patch(Ocx::Library(), "GlobalAlloc", &NoBlock);
    EXPECT_EQ(get(CF_DIB, TYMED_HGLOBAL), E_OUTOFMEMORY);
    EXPECT_EQ(get(CF_TIFF, TYMED_HGLOBAL), E_OUTOFMEMORY);
  }
  {
    const ImportPatch patch(Ocx::Library(), "CreateEnhMetaFileW", &NoMetafile);
    EXPECT_EQ(get(CF_ENHMETAFILE, TYMED_ENHMF), E_OUTOFMEMORY);
  }
  EXPECT_EQ(get(CF_DIB, TYMED_HGLOBAL), S_OK) << "later there is memory again";
}

TEST_F(DataObjectTest, ChangesNothingAndTellsNobody) {
  Open();
  EventSink events;
  Connection connection(control.Get(), DIID___KwEditorLayers, &events);
  const HRESULT dirty = As<IPersistStreamInit>()->IsDirty();
  const auto trace = std::filesystem::file_size(scratch.File(L"FunctionsInExecution.txt"));
  const GivenPicture picture = DibOf(*data.Get());
  EXPECT_EQ(DibOf(*data.Get()).pixels, picture.pixels);
  VARIANT_BOOL isChanged = VARIANT_TRUE;
  EXPECT_EQ(control->get_m_IsFileChanged(&isChanged), S_OK);
  EXPECT_EQ(isChanged, VARIANT_FALSE);
  EXPECT_EQ(As<IPersistStreamInit>()->IsDirty(), dirty);
  EXPECT_TRUE(events.events.empty());
  EXPECT_EQ(std::filesystem::file_size(scratch.File(L"FunctionsInExecution.txt")), trace);
  connection.Cut();
}

TEST_F(DataObjectTest, GivesWhileTheControlIsDisabled) {
  Open();
  control->put_Enabled(VARIANT_FALSE);
  ExpectThePage(DibOf(*data.Get()));
}

// So large a page that a bitmap of it passes 1 GiB: black and white, it is small in memory.
TEST_F(DataObjectTest, RefusesABlockThatIsTooLarge) {
  constexpr std::uint32_t side = 19200;
  std::string bytes("BM\0\0\0\0\0\0\0\0\x3e\0\0\0\x28\0\0\0", 18);
  for (const std::uint32_t number : {side, side, 0x10001U, 0U, 0U, 0U, 0U, 0U, 0U, 0U, 0xFFFFFFU}) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
  }
  bytes.resize(bytes.size() + std::size_t{side} * side / 8, '\x55');
  std::ofstream(std::filesystem::path(scratch.File(L"large.bmp")), std::ios::binary) << bytes;
  OpenDocument(*control.Get(), scratch.File(L"large.bmp"));
  Given given;
  EXPECT_EQ(Get(FormatOf(CF_DIB, TYMED_HGLOBAL), given), STG_E_MEDIUMFULL);
  EXPECT_EQ(Get(FormatOf(CF_DIBV5, TYMED_HGLOBAL), given), STG_E_MEDIUMFULL);
  EXPECT_EQ(Get(FormatOf(CF_ENHMETAFILE, TYMED_ENHMF), given), STG_E_MEDIUMFULL);
  EXPECT_EQ(given.tymed, static_cast<DWORD>(TYMED_NULL));
}

}  // namespace
}  // namespace kw::test
