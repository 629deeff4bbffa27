// The annotated page written to a host's stream: where, how much at once, and what if the stream fails or calls back.

#include <windows.h>

#include <ole2.h>
#include <psapi.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/activex/GivenPage.h"
#include "tests/activex/Sinks.h"

namespace kw::test {
namespace {

// A stream of the host's own, in memory, that a test can make fail.
class HostStream final : public IStream {
public:
  std::vector<BYTE> bytes;
  std::uint64_t position = 0;
  std::uint64_t size = 0;
  bool isKept = true;  // otherwise only the size counts
  ULONG largest = 0;
  int writes = 0;
  // Called with each piece; how much of it is taken, and the answer.
  std::function<HRESULT(ULONG count, ULONG& taken)> onWrite;
  HRESULT seekResult = S_OK;
  ULONG references = 1;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool isKnown = iid == IID_IUnknown || iid == IID_ISequentialStream || iid == IID_IStream;
    *object = isKnown ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP Read(void* /*to*/, ULONG /*count*/, ULONG* /*got*/) override { return STG_E_ACCESSDENIED; }
  STDMETHODIMP Write(const void* from, ULONG count, ULONG* taken) override {
    ++writes;
    ULONG wanted = count;
    const HRESULT answer = onWrite ? onWrite(count, wanted) : S_OK;
    if (taken != nullptr) *taken = wanted;
    if (FAILED(answer)) return answer;
    largest = std::max(largest, count);
    if (isKept) {
      if (bytes.size() < position + wanted) bytes.resize(static_cast<std::size_t>(position + wanted));
      std::copy_n(static_cast<const BYTE*>(from), wanted, bytes.begin() + static_cast<std::ptrdiff_t>(position));
    }
    position += wanted;
    size = std::max(size, position);
    return answer;
  }
  STDMETHODIMP Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* place) override {
    if (FAILED(seekResult)) return seekResult;
    const std::uint64_t from = origin == STREAM_SEEK_SET ? 0 : origin == STREAM_SEEK_CUR ? position : size;
    position = from + static_cast<std::uint64_t>(move.QuadPart);
    if (place != nullptr) place->QuadPart = position;
    return S_OK;
  }
  STDMETHODIMP SetSize(ULARGE_INTEGER /*size*/) override { return E_NOTIMPL; }
  STDMETHODIMP CopyTo(IStream* /*to*/, ULARGE_INTEGER /*count*/, ULARGE_INTEGER* /*read*/,
                      ULARGE_INTEGER* /*written*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Commit(DWORD /*flags*/) override { return E_NOTIMPL; }
  STDMETHODIMP Revert() override { return E_NOTIMPL; }
  STDMETHODIMP LockRegion(ULARGE_INTEGER /*from*/, ULARGE_INTEGER /*count*/, DWORD /*kind*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP UnlockRegion(ULARGE_INTEGER /*from*/, ULARGE_INTEGER /*count*/, DWORD /*kind*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Stat(STATSTG* /*facts*/, DWORD /*flags*/) override { return E_NOTIMPL; }
  STDMETHODIMP Clone(IStream** /*clone*/) override { return E_NOTIMPL; }
};

class DataStreamTest : public ControlTest {
protected:
  void SetUp() override {
    ControlTest::SetUp();
    OpenDocument(*control.Get(), scratch.WriteBitmap(L"page.bmp", 300, 200, [](int x, int y) {
      return RGB((x * 7919 + y * 104729) % 251, (x * y) % 239, (x * 31 + y) % 241);
    }));
  }
  void TearDown() override {
    EXPECT_EQ(stream.references, 1U) << "the control keeps the stream";
    ControlTest::TearDown();
  }
  HRESULT Write() {
    FORMATETC format = FormatOf(CF_TIFF, TYMED_ISTREAM);
    STGMEDIUM medium = {};
    medium.tymed = TYMED_ISTREAM;
    medium.pstm = &stream;
    return As<IDataObject>()->GetDataHere(&format, &medium);
  }
  // What the control shows of the stream's bytes from there on.
  GivenPicture Reopened(std::size_t from) {
    const std::wstring path = scratch.File(L"written.tif");
    std::ofstream(std::filesystem::path(path), std::ios::binary)
        .write(reinterpret_cast<const char*>(stream.bytes.data() + from),
               static_cast<std::streamsize>(stream.bytes.size() - from));
    const auto second = Ocx::Create();
    OpenDocument(*second.Get(), path);
    ComPtr<IDataObject> read;
    EXPECT_EQ(second.As(&read), S_OK);
    return DibOf(*read.Get());
  }

  HostStream stream;
};

TEST_F(DataStreamTest, WritesFromTheStreamsPositionOn) {
  const GivenPicture page = DibOf(*As<IDataObject>().Get());
  stream.bytes.assign(1000, 0xEE);
  stream.position = stream.size = 1000;
  ASSERT_EQ(Write(), S_OK);
  EXPECT_EQ(stream.position, stream.bytes.size()) << "it stands behind the data";
  EXPECT_TRUE(std::all_of(stream.bytes.begin(), stream.bytes.begin() + 1000, [](BYTE b) { return b == 0xEE; }));
  EXPECT_EQ(Reopened(1000).pixels, page.pixels);
}

TEST_F(DataStreamTest, NothingWhereThereIsNoStream) {
  FORMATETC format = FormatOf(CF_TIFF, TYMED_ISTREAM);
  STGMEDIUM medium = {};
  medium.tymed = TYMED_ISTREAM;
  EXPECT_EQ(As<IDataObject>()->GetDataHere(&format, &medium), E_INVALIDARG);
}

TEST_F(DataStreamTest, AFailureOfTheStreamIsTheAnswer) {
  ASSERT_EQ(Write(), S_OK);
  const int all = stream.writes;
  for (int failing = 1; failing <= all; ++failing) {
    stream.writes = 0;
    stream.onWrite = [&](ULONG, ULONG& taken) {
      EXPECT_LE(stream.writes, failing) << "it is asked again after its failure";
      if (stream.writes < failing) return S_OK;
      taken = 0;
      return STG_E_ACCESSDENIED;
    };
    EXPECT_EQ(Write(), STG_E_ACCESSDENIED) << failing << " of " << all;
    stream.writes = 0;
    stream.onWrite = [&](ULONG count, ULONG& taken) {
      EXPECT_LE(stream.writes, failing);
      if (stream.writes == failing) taken = count / 2;
      return S_OK;
    };
    EXPECT_EQ(Write(), STG_E_MEDIUMFULL) << failing << " of " << all;
  }
}

TEST_F(DataStreamTest, AStreamWithoutPositionsIsRefused) {
  stream.seekResult = E_NOTIMPL;
  EXPECT_EQ(Write(), E_NOTIMPL);
  EXPECT_EQ(stream.writes, 0);
}

TEST_F(DataStreamTest, TheStreamMayOpenAnotherDocument) {
  const GivenPicture page = DibOf(*As<IDataObject>().Get());
  const std::wstring other = scratch.WriteTiff(L"other.tif", 1);
  bool isOpen = false;
  stream.onWrite = [&](ULONG, ULONG&) {
    if (!isOpen) {
      isOpen = true;
      OpenDocument(*control.Get(), other);
      EXPECT_EQ(DibOf(*As<IDataObject>().Get()).width, 16) << "a call in the call";
    }
    return S_OK;
  };
  ASSERT_EQ(Write(), S_OK);
  EXPECT_TRUE(isOpen);
  EXPECT_EQ(Reopened(0).pixels, page.pixels) << "the page of the moment when it was asked for";
}

TEST_F(DataStreamTest, TheStreamMayLetGoOfTheControl) {
  FORMATETC format = FormatOf(CF_TIFF, TYMED_ISTREAM);
  STGMEDIUM medium = {};
  medium.tymed = TYMED_ISTREAM;
  medium.pstm = &stream;
  auto data = As<IDataObject>();
  IDataObject* const raw = data.Get();
  stream.onWrite = [&](ULONG, ULONG&) {
    data.Reset();
    control.Reset();
    return S_OK;
  };
  EXPECT_EQ(raw->GetDataHere(&format, &medium), S_OK);
  EXPECT_FALSE(stream.bytes.empty());
}

TEST_F(DataStreamTest, GivesThePageInTheMiddleOfAProcedure) {
  EventSink events;
  Connection connection(control.Get(), DIID___KwEditorLayers, &events);
  std::vector<HRESULT> results;
  events.onEvent = [&](DISPID, VARIANT*, UINT) {
    FORMATETC format = FormatOf(CF_DIB, TYMED_HGLOBAL);
    Given given;
    results.push_back(As<IDataObject>()->GetData(&format, &given));
  };
  OpenDocument(*control.Get(), scratch.WriteTiff(L"pages.tif", 2));
  EXPECT_EQ(results.size(), 3U) << "two page files and the page";
  for (const HRESULT result : results)
    EXPECT_TRUE(result == S_OK || result == OLE_E_BLANK) << "no page yet: " << result;
  EXPECT_EQ(DibOf(*As<IDataObject>().Get()).width, 16);
  EXPECT_EQ(events.events.back(), "PageChanged(1)");
  connection.Cut();
}

// A page whose pixels take 300 MB is written with a band's memory.
TEST_F(DataStreamTest, TakesTheMemoryOfABand) {
  constexpr std::uint32_t side = 10000;
  constexpr SIZE_T band = SIZE_T{64} << 20U;
  std::string bytes("BM\0\0\0\0\0\0\0\0\x3e\0\0\0\x28\0\0\0", 18);
  for (const std::uint32_t number : {side, side, 0x10001U, 0U, 0U, 0U, 0U, 0U, 0U, 0U, 0xFFFFFFU}) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
  }
  bytes.resize(bytes.size() + std::size_t{1252} * side, '\x55');
  std::ofstream(std::filesystem::path(scratch.File(L"large.bmp")), std::ios::binary) << bytes;
  OpenDocument(*control.Get(), scratch.File(L"large.bmp"));
  const auto used = [] {
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
  };
  stream.isKept = false;
  const SIZE_T before = used();
  SIZE_T most = before;
  stream.onWrite = [&](ULONG, ULONG&) {
    most = std::max(most, used());
    return S_OK;
  };
  EXPECT_EQ(Write(), S_OK);
  EXPECT_LT(most - before, band + (SIZE_T{8} << 20U));
  EXPECT_GT(stream.size, 100000U);
}

}  // namespace
}  // namespace kw::test
