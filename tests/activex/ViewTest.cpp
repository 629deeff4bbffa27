// The picture that a container asks for, with and without a window.

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>

#include <set>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"

namespace kw::test {
namespace {

// A 32-bit bitmap to draw into, filled with a colour that no control has.
class Canvas {
public:
  static constexpr COLORREF Untouched = RGB(255, 0, 255);

  Canvas(int width, int height)
      : width(width),
        height(height),
        context(CreateCompatibleDC(nullptr)),
        bitmap(NewBitmap(width, height)),
        before(SelectObject(context, bitmap)) {
    const HBRUSH brush = CreateSolidBrush(Untouched);
    const RECT all = {0, 0, width, height};
    FillRect(context, &all, brush);
    DeleteObject(brush);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    SelectObject(context, before);
    DeleteObject(bitmap);
    DeleteDC(context);
  }

  HDC Context() const { return context; }
  COLORREF At(int x, int y) const { return GetPixel(context, x, y); }
  std::size_t ColoursIn(const RECT& part) const {
    std::set<COLORREF> colours;
    for (int y = part.top; y < part.bottom; y += 3) {
      for (int x = part.left; x < part.right; x += 3) colours.insert(At(x, y));
    }
    return colours.size();
  }

private:
  static HBITMAP NewBitmap(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  }

  int width;
  int height;
  HDC context;
  HBITMAP bitmap;
  HGDIOBJ before;
};

class ViewSink final : public IAdviseSink {
public:
  int changes = 0;
  ULONG references = 1;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == IID_IAdviseSink ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP_(void) OnDataChange(FORMATETC* /*format*/, STGMEDIUM* /*medium*/) override {}
  STDMETHODIMP_(void) OnViewChange(DWORD aspect, LONG /*index*/) override {
    changes += aspect == DVASPECT_CONTENT ? 1 : 0;
  }
  STDMETHODIMP_(void) OnRename(IMoniker* /*moniker*/) override {}
  STDMETHODIMP_(void) OnSave() override {}
  STDMETHODIMP_(void) OnClose() override { ++closes; }

  int closes = 0;
};

class ViewTest : public ControlTest {};

TEST_F(ViewTest, DrawsTheFormWithoutAWindow) {
  const Canvas canvas(640, 480);
  const RECTL bounds = {20, 30, 620, 450};
  EXPECT_EQ(As<IViewObjectEx>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, canvas.Context(), &bounds,
                                      nullptr, nullptr, 0),
            S_OK);
  const RECT inside = {20, 30, 620, 450};
  EXPECT_GT(canvas.ColoursIn(inside), 3U) << "a form of one colour is none";
  EXPECT_NE(canvas.At(21, 31), Canvas::Untouched);
  EXPECT_NE(canvas.At(618, 448), Canvas::Untouched);
  EXPECT_EQ(canvas.At(19, 200), Canvas::Untouched) << "it drew outside its bounds";
  EXPECT_EQ(canvas.At(300, 29), Canvas::Untouched);
  EXPECT_EQ(canvas.At(620, 200), Canvas::Untouched);
  EXPECT_EQ(canvas.At(300, 450), Canvas::Untouched);
}

TEST_F(ViewTest, LooksAtTheClipboardWithEachDrawing) {
  const Canvas canvas(100, 80);
  const RECTL bounds = {0, 0, 100, 80};
  const int before = TracedTimes(scratch.Path(), "tmrWatchClipBoard_Timer");
  for (const int paints : {1, 2}) {
    EXPECT_EQ(As<IViewObject>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, canvas.Context(), &bounds,
                                      nullptr, nullptr, 0),
              S_OK);
    EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_Paint"), paints);
    EXPECT_EQ(TracedTimes(scratch.Path(), "tmrWatchClipBoard_Timer"), before + paints);
  }
}

TEST_F(ViewTest, DrawsIntoAMetafile) {
  const HDC metafile = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  const RECTL bounds = {0, 0, 200, 150};
  EXPECT_EQ(
      As<IViewObject>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, metafile, &bounds, nullptr, nullptr, 0),
      S_OK);
  const HENHMETAFILE done = CloseEnhMetaFile(metafile);
  ENHMETAHEADER header = {};
  GetEnhMetaFileHeader(done, sizeof header, &header);
  EXPECT_GT(header.nRecords, 2U);
  DeleteEnhMetaFile(done);
}

TEST_F(ViewTest, RefusesWhatItCannotDraw) {
  const Canvas canvas(10, 10);
  const RECTL bounds = {0, 0, 10, 10};
  const auto view = As<IViewObjectEx>();
  const auto draw = [&](DWORD aspect, HDC context, const RECTL* where) {
    return view->Draw(aspect, -1, nullptr, nullptr, nullptr, context, where, nullptr, nullptr, 0);
  };
  EXPECT_EQ(draw(DVASPECT_ICON, canvas.Context(), &bounds), DV_E_DVASPECT);
  EXPECT_EQ(draw(DVASPECT_CONTENT, nullptr, &bounds), E_INVALIDARG);
  EXPECT_EQ(draw(DVASPECT_CONTENT, canvas.Context(), nullptr), E_INVALIDARG);
  const RECTL nothing = {5, 5, 5, 5};
  EXPECT_EQ(draw(DVASPECT_CONTENT, canvas.Context(), &nothing), S_OK);
  EXPECT_EQ(canvas.At(5, 5), Canvas::Untouched);
}

TEST_F(ViewTest, DescribesItsView) {
  const auto view = As<IViewObjectEx>();
  DWORD status = 0;
  EXPECT_EQ(view->GetViewStatus(&status), S_OK);
  EXPECT_EQ(status, static_cast<DWORD>(VIEWSTATUS_OPAQUE | VIEWSTATUS_SOLIDBKGND));
  SIZEL given = {5000, 4000};
  EXPECT_EQ(As<IOleObject>()->SetExtent(DVASPECT_CONTENT, &given), S_OK);
  SIZEL size = {};
  EXPECT_EQ(view->GetExtent(DVASPECT_CONTENT, -1, nullptr, &size), S_OK);
  EXPECT_EQ(size.cx, 5000);
  RECTL rectangle = {};
  EXPECT_EQ(view->GetRect(DVASPECT_CONTENT, &rectangle), S_OK);
  EXPECT_EQ(rectangle.bottom, 4000);
  EXPECT_EQ(view->GetRect(DVASPECT_ICON, &rectangle), DV_E_DVASPECT);
  EXPECT_EQ(view->GetNaturalExtent(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, &size), E_NOTIMPL);
  const RECT bounds = {0, 0, 100, 100};
  const RECT outside = {100, 100, 120, 120};
  DWORD hit = 99;
  EXPECT_EQ(view->QueryHitPoint(DVASPECT_CONTENT, &bounds, {50, 50}, 0, &hit), S_OK);
  EXPECT_EQ(hit, static_cast<DWORD>(HITRESULT_HIT));
  EXPECT_EQ(view->QueryHitPoint(DVASPECT_CONTENT, &bounds, {100, 50}, 0, &hit), S_OK);
  EXPECT_EQ(hit, static_cast<DWORD>(HITRESULT_OUTSIDE));
  EXPECT_EQ(view->QueryHitRect(DVASPECT_CONTENT, &bounds, &outside, 0, &hit), S_OK);
  EXPECT_EQ(hit, static_cast<DWORD>(HITRESULT_OUTSIDE));
}

TEST_F(ViewTest, TellsTheContainerOfChangesToThePicture) {
  ViewSink sink;
  const auto view = As<IViewObjectEx>();
  EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_PRIMEFIRST, &sink), S_OK);
  EXPECT_EQ(sink.changes, 1);
  control->put_IsOpenButtonVisible(VARIANT_TRUE);
  EXPECT_GE(sink.changes, 2);
  DWORD aspects = 0;
  ComPtr<IAdviseSink> known;
  EXPECT_EQ(view->GetAdvise(&aspects, nullptr, &known), S_OK);
  EXPECT_EQ(aspects, static_cast<DWORD>(DVASPECT_CONTENT));
  EXPECT_EQ(known.Get(), &sink);
  known.Reset();
  EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_ONLYONCE, &sink), S_OK);
  sink.changes = 0;
  control->put_IsOpenButtonVisible(VARIANT_FALSE);
  control->put_IsOpenButtonVisible(VARIANT_TRUE);
  EXPECT_EQ(sink.changes, 1);
  EXPECT_EQ(view->SetAdvise(0, 0, nullptr), S_OK);
  EXPECT_EQ(sink.references, 1U);
}

TEST_F(ViewTest, TellsTheContainerOfItsEnd) {
  ViewSink sink;
  DWORD connection = 0;
  const auto object = As<IOleObject>();
  ASSERT_EQ(object->Advise(&sink, &connection), S_OK);
  ComPtr<IEnumSTATDATA> all;
  EXPECT_EQ(object->EnumAdvise(&all), S_OK);
  all.Reset();
  EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
  EXPECT_EQ(sink.closes, 1);
  EXPECT_EQ(object->Unadvise(connection), S_OK);
  EXPECT_EQ(object->Unadvise(connection), OLE_E_NOCONNECTION);
}

}  // namespace
}  // namespace kw::test
