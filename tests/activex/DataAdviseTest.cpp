// Notices that the annotated page has changed.

#include <windows.h>

#include <ole2.h>

#include <functional>
#include <utility>

#include "tests/activex/Fixture.h"
#include "tests/activex/GivenPage.h"

namespace kw::test {
namespace {

class DataSink final : public IAdviseSink {
public:
  int notices = 0;
  DWORD lastMedium = TYMED_NULL;
  GivenPicture last;
  std::function<void()> onNotice;
  ULONG references = 1;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == IID_IAdviseSink ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP_(void) OnDataChange(FORMATETC* /*format*/, STGMEDIUM* medium) override {
    ++notices;
    lastMedium = medium->tymed;
    if (medium->tymed == TYMED_HGLOBAL) last = PictureOf(medium->hGlobal);
    if (onNotice) onNotice();
  }
  STDMETHODIMP_(void) OnViewChange(DWORD /*aspect*/, LONG /*index*/) override {}
  STDMETHODIMP_(void) OnRename(IMoniker* /*moniker*/) override {}
  STDMETHODIMP_(void) OnSave() override {}
  STDMETHODIMP_(void) OnClose() override {}
};

class DataAdviseTest : public ControlTest {
protected:
  void TearDown() override {
    if (control != nullptr && connection != 0) As<IDataObject>()->DUnadvise(connection);
    control.Reset();
    PumpMessages(20);
    EXPECT_EQ(sink.references, 1U) << "the control keeps the sink";
    ControlTest::TearDown();
  }
  void Open(int width) {
    OpenDocument(*control.Get(), scratch.WriteBitmap(L"page" + std::to_wstring(width) + L".bmp", width, 10,
                                                     [](int x, int) { return RGB(x, 0, 0); }));
  }
  HRESULT Advise(DWORD flags, const FORMATETC& wanted = FormatOf(CF_DIB, TYMED_HGLOBAL)) {
    FORMATETC format = wanted;
    return As<IDataObject>()->DAdvise(&format, flags, &sink, &connection);
  }
  // The notices of the next half second.
  int Notices() const {
    const int before = sink.notices;
    PumpMessages(500);
    return sink.notices - before;
  }

  DataSink sink;
  DWORD connection = 0;
};

TEST_F(DataAdviseTest, TellsOnceThatThePageHasChanged) {
  ASSERT_EQ(Advise(0), S_OK);
  EXPECT_EQ(Notices(), 0);
  Open(20);
  EXPECT_EQ(Notices(), 1);
  EXPECT_EQ(sink.last.width, 20);
  EXPECT_EQ(Notices(), 0);
  Open(30);
  EXPECT_EQ(Notices(), 1);
  EXPECT_EQ(sink.last.width, 30);
  EXPECT_EQ(As<IDataObject>()->DUnadvise(connection), S_OK);
  Open(40);
  EXPECT_EQ(Notices(), 0);
  EXPECT_EQ(As<IDataObject>()->DUnadvise(connection), OLE_E_NOCONNECTION);
  connection = 0;
}

TEST_F(DataAdviseTest, TellsWithoutTheDataIfItIsNotWanted) {
  FORMATETC any = {};
  any.dwAspect = static_cast<DWORD>(-1);
  any.lindex = -1;
  any.tymed = static_cast<DWORD>(-1);
  EXPECT_EQ(Advise(0, any), DV_E_FORMATETC) << "any format is for notices without data";
  ASSERT_EQ(Advise(ADVF_NODATA, any), S_OK);
  Open(20);
  EXPECT_EQ(Notices(), 1);
  EXPECT_EQ(sink.lastMedium, static_cast<DWORD>(TYMED_NULL));
}

TEST_F(DataAdviseTest, TellsOnlyOnceIfAskedFor) {
  ASSERT_EQ(Advise(ADVF_ONLYONCE), S_OK);
  Open(20);
  EXPECT_EQ(Notices(), 1);
  Open(30);
  EXPECT_EQ(Notices(), 0);
  connection = 0;
}

TEST_F(DataAdviseTest, TellsAtOnceIfAskedFor) {
  Open(20);
  ASSERT_EQ(Advise(ADVF_PRIMEFIRST), S_OK);
  EXPECT_EQ(sink.notices, 1);
  EXPECT_EQ(sink.last.width, 20);
  Open(30);
  EXPECT_EQ(Notices(), 1);
  EXPECT_EQ(As<IDataObject>()->DUnadvise(connection), S_OK);
  ASSERT_EQ(Advise(ADVF_PRIMEFIRST | ADVF_ONLYONCE), S_OK);
  EXPECT_EQ(sink.notices, 3);
  Open(40);
  EXPECT_EQ(Notices(), 0);
  connection = 0;
}

TEST_F(DataAdviseTest, RefusesWhatItDoesNotGive) {
  EXPECT_EQ(Advise(0, FormatOf(CF_BITMAP, TYMED_GDI)), DV_E_FORMATETC);
  EXPECT_EQ(Advise(0, FormatOf(CF_DIB, TYMED_ISTREAM)), DV_E_TYMED);
  FORMATETC format = FormatOf(CF_DIB, TYMED_HGLOBAL);
  EXPECT_EQ(As<IDataObject>()->DAdvise(&format, 0, nullptr, &connection), E_INVALIDARG);
  EXPECT_EQ(As<IDataObject>()->DAdvise(&format, 0, &sink, nullptr), E_INVALIDARG);
  EXPECT_EQ(As<IDataObject>()->DUnadvise(1), OLE_E_NOCONNECTION);
}

TEST_F(DataAdviseTest, ListsItsSinks) {
  ASSERT_EQ(Advise(ADVF_NODATA), S_OK);
  ComPtr<IEnumSTATDATA> sinks;
  ASSERT_EQ(As<IDataObject>()->EnumDAdvise(&sinks), S_OK);
  STATDATA one = {};
  ASSERT_EQ(sinks->Next(1, &one, nullptr), S_OK);
  EXPECT_EQ(one.dwConnection, connection);
  EXPECT_EQ(one.formatetc.cfFormat, CF_DIB);
  one.pAdvSink->Release();
}

TEST_F(DataAdviseTest, ASinkMayLeaveInItsNotice) {
  ASSERT_EQ(Advise(0), S_OK);
  sink.onNotice = [&] { EXPECT_EQ(As<IDataObject>()->DUnadvise(std::exchange(connection, 0)), S_OK); };
  Open(20);
  EXPECT_EQ(Notices(), 1);
  Open(30);
  EXPECT_EQ(Notices(), 0);
}

TEST_F(DataAdviseTest, ASinkMayOpenAnotherDocument) {
  ASSERT_EQ(Advise(0), S_OK);
  bool isOpen = false;
  sink.onNotice = [&] {
    if (!std::exchange(isOpen, true)) Open(30);
  };
  Open(20);
  EXPECT_EQ(Notices(), 2);
  EXPECT_EQ(sink.last.width, 30);
}

TEST_F(DataAdviseTest, ASinkMayLetGoOfTheControl) {
  ASSERT_EQ(Advise(0), S_OK);
  Open(20);
  sink.onNotice = [&] { control.Reset(); };
  EXPECT_EQ(Notices(), 1);
}

TEST_F(DataAdviseTest, ASinkThatStaysIsReleasedWithTheControl) {
  ASSERT_EQ(Advise(0), S_OK);
  Open(20);
  control.Reset();
  EXPECT_EQ(Notices(), 0);
}

}  // namespace
}  // namespace kw::test
