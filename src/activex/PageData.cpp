#include "activex/PageData.h"

#include <wrl/client.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "activex/ComBoundary.h"
#include "activex/ComStream.h"
#include "components/base/RunTimeError.h"
#include "drawing/Scale.h"
#include "picture/LimitedStream.h"
#include "picture/PictureFormat.h"
#include "windows/base/BandDrawing.h"
#include "windows/base/Guard.h"
#include "windows/base/TextDrawing.h"

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;

constexpr int DibDepth = 24;
// LCS_sRGB, which the header writes as a constant of several characters.
constexpr DWORD ColoursOfScreens = 0x73524742;
constexpr double MetresPerInch = 0.0254;
constexpr double HimetricOfInch = 2540;

struct Row {
  CLIPFORMAT id;
  DWORD media;
};

constexpr Row Rows[] = {
    {CF_DIB, TYMED_HGLOBAL},
    {CF_DIBV5, TYMED_HGLOBAL},
    {CF_TIFF, TYMED_ISTREAM | TYMED_HGLOBAL},
    {CF_ENHMETAFILE, TYMED_ENHMF},
};

DWORD MediaOf(CLIPFORMAT id) {
  const auto* const row = std::ranges::find(Rows, id, &Row::id);
  return row == std::end(Rows) ? 0 : row->media;
}

std::uint64_t DibBytes(const AnnotatedPage& page) {
  return windows::DibStride(page.Width(), DibDepth) * static_cast<std::uint64_t>(page.Height());
}

bool PassesMemory(std::uint64_t bytes) { return bytes > ReadLimits().pageMemory; }

double ResolutionOr96(double resolution) { return resolution > 0 ? resolution : Scale::ModelDpi; }

// Runs the making of data. Lack of memory is E_OUTOFMEMORY, whoever found it out.
template <class Work>
HRESULT Guarded(Work work) noexcept {
  return windows::Guard([&]() -> HRESULT { return work(); },
                        [](const std::exception* error) {
                          const auto* const known = dynamic_cast<const RunTimeError*>(error);
                          const bool isMemory = known != nullptr &&
                                                known->Number() == static_cast<std::int32_t>(ErrorNumber::OutOfMemory);
                          return isMemory ? E_OUTOFMEMORY : Report(error);
                        });
}

// A movable block of memory, freed unless it is handed over.
class Block {
public:
  explicit Block(std::size_t bytes) : handle(GlobalAlloc(GMEM_MOVEABLE, bytes)) {}
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  ~Block() {
    if (handle != nullptr) GlobalFree(handle);
  }
  HGLOBAL Get() const { return handle; }
  HGLOBAL Detach() { return std::exchange(handle, nullptr); }

private:
  HGLOBAL handle;
};

// The bytes of a block.
class Locked {
public:
  explicit Locked(HGLOBAL block) : handle(block), bytes(static_cast<std::byte*>(GlobalLock(block))) {}
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  ~Locked() {
    if (bytes != nullptr) GlobalUnlock(handle);
  }
  std::byte* Get() const { return bytes; }

private:
  HGLOBAL handle;
  std::byte* bytes;
};

std::size_t DibHeaderBytes(CLIPFORMAT id) { return id == CF_DIBV5 ? sizeof(BITMAPV5HEADER) : sizeof(BITMAPINFOHEADER); }

// Both headers begin alike; the rest of the longer one says that the colours are those of a screen.
void WriteDibHeader(const AnnotatedPage& page, CLIPFORMAT id, std::byte* to) {
  const auto perMetre = [](double resolution) { return static_cast<LONG>(std::lround(resolution / MetresPerInch)); };
  BITMAPV5HEADER header = {};
  header.bV5Size = static_cast<DWORD>(DibHeaderBytes(id));
  header.bV5Width = page.Width();
  header.bV5Height = page.Height();
  header.bV5Planes = 1;
  header.bV5BitCount = DibDepth;
  header.bV5Compression = BI_RGB;
  header.bV5SizeImage = static_cast<DWORD>(DibBytes(page));
  header.bV5XPelsPerMeter = perMetre(page.HorizontalResolution());
  header.bV5YPelsPerMeter = perMetre(page.VerticalResolution());
  header.bV5CSType = ColoursOfScreens;
  header.bV5Intent = LCS_GM_GRAPHICS;
  std::memcpy(to, &header, header.bV5Size);
}

// The rows of the bitmap, the last one first.
void WriteDib(const AnnotatedPage& page, CLIPFORMAT id, std::byte* to) {
  WriteDibHeader(page, id, to);
  std::byte* const rows = to + DibHeaderBytes(id);
  const auto stride = static_cast<std::size_t>(windows::DibStride(page.Width(), DibDepth));
  windows::GdiTextRenderer texts;
  page.Draw(texts, [&](std::int32_t top, const Bitmap& band) {
    for (std::int32_t y = 0; y < band.Height(); ++y) {
      const auto row = band.Row(y);
      std::byte* const place = rows + stride * static_cast<std::size_t>(page.Height() - 1 - top - y);
      std::memcpy(place, row.data(), row.size());
      std::memset(place + row.size(), 0, stride - row.size());
    }
    return true;
  });
}

HRESULT GiveDib(const AnnotatedPage& page, CLIPFORMAT id, STGMEDIUM& medium) {
  if (PassesMemory(DibBytes(page))) return STG_E_MEDIUMFULL;
  Block block(DibHeaderBytes(id) + static_cast<std::size_t>(DibBytes(page)));
  if (block.Get() == nullptr) return E_OUTOFMEMORY;
  {
    const Locked bytes(block.Get());
    if (bytes.Get() == nullptr) return E_OUTOFMEMORY;
    WriteDib(page, id, bytes.Get());
  }
  medium.tymed = TYMED_HGLOBAL;
  medium.hGlobal = block.Detach();
  return S_OK;
}

HRESULT GiveDibHere(const AnnotatedPage& page, CLIPFORMAT id, HGLOBAL block) {
  if (PassesMemory(DibBytes(page)) || DibHeaderBytes(id) + DibBytes(page) > GlobalSize(block)) return STG_E_MEDIUMFULL;
  const Locked bytes(block);
  if (bytes.Get() == nullptr) return E_OUTOFMEMORY;
  WriteDib(page, id, bytes.Get());
  return S_OK;
}

// Writes the file to `to`. If it is a host's stream that failed, the reason is the stream's.
HRESULT WriteTiff(const AnnotatedPage& page, Stream& to, const ComStream& host) {
  windows::GdiTextRenderer texts;
  const HRESULT written = Guarded([&] {
    page.WriteTiff(texts, to);
    return S_OK;
  });
  return FAILED(host.Result()) ? host.Result() : written;
}

HRESULT GiveTiffStream(const AnnotatedPage& page, ComPtr<IStream>& given) {
  ComPtr<IStream> stream;
  const HRESULT made = CreateStreamOnHGlobal(nullptr, TRUE, &stream);
  if (FAILED(made)) return made;
  ComStream target(*stream.Get());
  LimitedStream limited(target, ReadLimits().pageMemory);
  HRESULT result = WriteTiff(page, limited, target);
  if (limited.IsFull()) result = STG_E_MEDIUMFULL;
  if (SUCCEEDED(result)) result = target.Leave(false);
  if (SUCCEEDED(result)) given = stream;
  return result;
}

HRESULT GiveTiffBlock(const AnnotatedPage& page, HGLOBAL& given) {
  ComPtr<IStream> stream;
  HRESULT result = GiveTiffStream(page, stream);
  STATSTG facts = {};
  if (SUCCEEDED(result)) result = stream->Stat(&facts, STATFLAG_NONAME);
  if (FAILED(result)) return result;
  Block block(static_cast<std::size_t>(facts.cbSize.QuadPart));
  if (block.Get() == nullptr) return E_OUTOFMEMORY;
  {
    const Locked bytes(block.Get());
    ULONG got = 0;
    if (bytes.Get() == nullptr) return E_OUTOFMEMORY;
    result = stream->Read(bytes.Get(), facts.cbSize.LowPart, &got);
    if (SUCCEEDED(result) && got != facts.cbSize.LowPart) result = E_UNEXPECTED;
  }
  if (SUCCEEDED(result)) given = block.Detach();
  return result;
}

HRESULT GiveTiff(const AnnotatedPage& page, DWORD media, STGMEDIUM& medium) {
  if ((media & TYMED_ISTREAM) == 0) {
    const HRESULT result = GiveTiffBlock(page, medium.hGlobal);
    if (SUCCEEDED(result)) medium.tymed = TYMED_HGLOBAL;
    return result;
  }
  ComPtr<IStream> stream;
  const HRESULT result = GiveTiffStream(page, stream);
  if (FAILED(result)) return result;
  medium.tymed = TYMED_ISTREAM;
  medium.pstm = stream.Detach();
  return S_OK;
}

HRESULT GiveTiffHere(const AnnotatedPage& page, HGLOBAL block) {
  HGLOBAL made = nullptr;
  const HRESULT result = GiveTiffBlock(page, made);
  if (FAILED(result)) return result;
  HRESULT copied = STG_E_MEDIUMFULL;
  if (GlobalSize(made) <= GlobalSize(block)) {
    const Locked from(made);
    const Locked to(block);
    copied = from.Get() == nullptr || to.Get() == nullptr ? E_OUTOFMEMORY : S_OK;
    if (SUCCEEDED(copied)) std::memcpy(to.Get(), from.Get(), GlobalSize(made));
  }
  GlobalFree(made);
  return copied;
}

// A metafile's device context, ended in every case.
class MetafileRecording {
public:
  MetafileRecording(HDC reference, const RECT& frame)
      : context(CreateEnhMetaFileW(reference, nullptr, &frame, L"KwEditor\0Annotated page\0")) {}
  MetafileRecording(const MetafileRecording&) = delete;
  MetafileRecording& operator=(const MetafileRecording&) = delete;
  ~MetafileRecording() {
    if (context != nullptr) DeleteEnhMetaFile(CloseEnhMetaFile(context));
  }
  HDC Context() const { return context; }
  HENHMETAFILE Finish() { return CloseEnhMetaFile(std::exchange(context, nullptr)); }

private:
  HDC context;
};

// The screen, as the reference device of a metafile.
class ScreenContext {
public:
  ScreenContext() = default;
  ScreenContext(const ScreenContext&) = delete;
  ScreenContext& operator=(const ScreenContext&) = delete;
  ~ScreenContext() { ReleaseDC(nullptr, context); }
  HDC Get() const { return context; }

private:
  HDC context = GetDC(nullptr);
};

// Makes a unit of the metafile a pixel of the page. Its frame is in hundredths of a millimetre, and the device of the
// recording has some pixels for them, mostly not a whole number for each pixel of the page.
void UsePagePixels(HDC metafile, HDC device, const AnnotatedPage& page, SIZEL frame) {
  constexpr int Units = 1 << 20;
  const auto deviceUnits = [](int himetric, int devicePixels, int millimetres, int pixels) {
    return static_cast<int>(
        std::lround(Units * (static_cast<double>(himetric) * devicePixels / (100.0 * millimetres)) / pixels));
  };
  SetMapMode(metafile, MM_ANISOTROPIC);
  SetWindowExtEx(metafile, Units, Units, nullptr);
  SetViewportExtEx(
      metafile, deviceUnits(frame.cx, GetDeviceCaps(device, HORZRES), GetDeviceCaps(device, HORZSIZE), page.Width()),
      deviceUnits(frame.cy, GetDeviceCaps(device, VERTRES), GetDeviceCaps(device, VERTSIZE), page.Height()), nullptr);
}

HRESULT GiveMetafile(const AnnotatedPage& page, STGMEDIUM& medium) {
  if (PassesMemory(DibBytes(page))) return STG_E_MEDIUMFULL;
  const ScreenContext screen;
  const SIZEL extent = PageExtent(page);
  MetafileRecording recording(screen.Get(), {0, 0, extent.cx, extent.cy});
  if (recording.Context() == nullptr) return E_OUTOFMEMORY;
  UsePagePixels(recording.Context(), screen.Get(), page, extent);
  const RECT pixels = {0, 0, page.Width(), page.Height()};
  const HRESULT drawn = DrawPage(page, recording.Context(), pixels, [] { return true; });
  if (FAILED(drawn)) return E_OUTOFMEMORY;
  medium.hEnhMetaFile = recording.Finish();
  if (medium.hEnhMetaFile == nullptr) return E_OUTOFMEMORY;
  medium.tymed = TYMED_ENHMF;
  return S_OK;
}

}  // namespace

std::vector<FORMATETC> PageFormats() {
  std::vector<FORMATETC> formats;
  for (const Row& row : Rows) formats.push_back({row.id, nullptr, DVASPECT_CONTENT, -1, row.media});
  return formats;
}

HRESULT CheckPageFormat(const FORMATETC& format) {
  const DWORD media = MediaOf(format.cfFormat);
  if (media == 0) return DV_E_FORMATETC;
  if (format.dwAspect != DVASPECT_CONTENT && format.dwAspect != DVASPECT_DOCPRINT) return DV_E_DVASPECT;
  if (format.lindex != -1) return DV_E_LINDEX;
  return (format.tymed & media) == 0 ? DV_E_TYMED : S_OK;
}

HRESULT GivePage(const AnnotatedPage& page, const FORMATETC& format, STGMEDIUM& medium) {
  return Guarded([&] {
    switch (format.cfFormat) {
      case CF_TIFF:
        return GiveTiff(page, format.tymed, medium);
      case CF_ENHMETAFILE:
        return GiveMetafile(page, medium);
      default:
        return GiveDib(page, format.cfFormat, medium);
    }
  });
}

HRESULT GivePageHere(const AnnotatedPage& page, const FORMATETC& format, const STGMEDIUM& medium) {
  // A metafile cannot be put into another one.
  if ((medium.tymed & MediaOf(format.cfFormat) & format.tymed) == 0 || medium.tymed == TYMED_ENHMF) return DV_E_TYMED;
  if (medium.tymed == TYMED_HGLOBAL) {
    if (medium.hGlobal == nullptr) return E_INVALIDARG;
    return Guarded([&] {
      return format.cfFormat == CF_TIFF ? GiveTiffHere(page, medium.hGlobal)
                                        : GiveDibHere(page, format.cfFormat, medium.hGlobal);
    });
  }
  if (medium.pstm == nullptr) return E_INVALIDARG;
  const ComPtr<IStream> kept = medium.pstm;
  ComStream target(*kept.Get());
  const HRESULT result = WriteTiff(page, target, target);
  return SUCCEEDED(result) ? target.Leave(true) : result;
}

HRESULT DrawPage(const AnnotatedPage& page, HDC context, const RECT& bounds, const std::function<bool()>& goesOn) {
  return Guarded([&] {
    windows::GdiTextRenderer texts;
    windows::BandDrawing bands(context, bounds, page.Height());
    HRESULT result = S_OK;
    page.Draw(texts, [&](std::int32_t /*top*/, const Bitmap& band) {
      if (!goesOn()) {
        result = E_ABORT;
      } else if (!bands.Draw(band)) {
        result = E_FAIL;
      }
      return SUCCEEDED(result);
    });
    return result;
  });
}

SIZEL PageExtent(const AnnotatedPage& page) {
  const auto length = [](std::int32_t pixels, double resolution) {
    return static_cast<LONG>(std::lround(pixels * HimetricOfInch / ResolutionOr96(resolution)));
  };
  return {std::max<LONG>(1, length(page.Width(), page.HorizontalResolution())),
          std::max<LONG>(1, length(page.Height(), page.VerticalResolution()))};
}

}  // namespace kw::activex
