#include "windows/printing/Printer.h"

#include <winspool.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "components/base/RunTimeError.h"

namespace kw::windows {
namespace {

[[noreturn]] void RaisePrinterError() { Raise(ErrorNumber::PrinterError, static_cast<std::int32_t>(GetLastError())); }

// A large page goes to the driver in bands of about this many bytes.
constexpr std::size_t BandBytes = std::size_t{4} << 20U;

struct Extent {
  int width;
  int height;
};

Extent PrintedSize(const Bitmap& picture, HDC device) {
  constexpr double screenResolution = 96;
  const auto resolution = [](double stated) { return stated > 0 ? stated : screenResolution; };
  const double width = picture.Width() / resolution(picture.HorizontalResolution()) * GetDeviceCaps(device, LOGPIXELSX);
  const double height = picture.Height() / resolution(picture.VerticalResolution()) * GetDeviceCaps(device, LOGPIXELSY);
  const double scale = std::min({1.0, GetDeviceCaps(device, HORZRES) / width, GetDeviceCaps(device, VERTRES) / height});
  return {std::max(1, static_cast<int>(std::lround(width * scale))),
          std::max(1, static_cast<int>(std::lround(height * scale)))};
}

// A BITMAPINFO with up to 256 colours.
struct Description {
  BITMAPINFOHEADER head;
  RGBQUAD colours[256];
};

Description DescriptionOf(const Bitmap& picture) {
  Description description = {};
  description.head.biSize = sizeof description.head;
  description.head.biWidth = picture.Width();
  description.head.biPlanes = 1;
  description.head.biBitCount = static_cast<WORD>(picture.BitsPerPixel());
  const auto palette = picture.Palette();
  description.head.biClrUsed = static_cast<DWORD>(palette.size());
  for (std::size_t i = 0; i < palette.size(); ++i) {
    description.colours[i] = {palette[i].blue, palette[i].green, palette[i].red, 0};
  }
  return description;
}

}  // namespace

Printer::~Printer() {
  if (device == nullptr) return;
  if (isJobOpen) AbortDoc(device);
  DeleteDC(device);
}

void Printer::Use(HDC newDevice, std::wstring name) {
  struct Delete {
    void operator()(HDC context) const { DeleteDC(context); }
  };
  std::unique_ptr<std::remove_pointer_t<HDC>, Delete> taken(newDevice);
  EndJob();
  if (device != nullptr) DeleteDC(device);
  device = taken.release();
  jobName = std::move(name);
}

void Printer::RequireDevice() {
  if (device != nullptr) return;
  DWORD length = 0;
  GetDefaultPrinterW(nullptr, &length);
  std::vector<wchar_t> name(length + 1);
  if (length == 0 || GetDefaultPrinterW(name.data(), &length) == FALSE) RaisePrinterError();
  device = CreateDCW(L"WINSPOOL", name.data(), nullptr, nullptr);
  if (device == nullptr) RaisePrinterError();
}

void Printer::RequireJob() {
  RequireDevice();
  if (isJobOpen) return;
  DOCINFOW job = {};
  job.cbSize = sizeof job;
  job.lpszDocName = jobName.empty() ? L"KwEditor" : jobName.c_str();
  if (StartDocW(device, &job) <= 0) RaisePrinterError();
  isJobOpen = true;
}

void Printer::RequirePage() {
  RequireJob();
  if (isPageOpen) return;
  if (StartPage(device) <= 0) RaisePrinterError();
  isPageOpen = true;
}

void Printer::PrintPicture(const Bitmap& picture) {
  RequirePage();
  if (!picture.IsEmpty()) DrawBands(picture);
}

void Printer::EndPage() {
  if (!isPageOpen) return;
  isPageOpen = false;
  if (::EndPage(device) <= 0) RaisePrinterError();
}

void Printer::NewPage() {
  RequirePage();
  EndPage();
}

void Printer::DrawBands(const Bitmap& picture) {
  const Extent size = PrintedSize(picture, device);
  Description description = DescriptionOf(picture);
  const std::size_t stride = (picture.RowBytes() + 3) / 4 * 4;  // the system's rows are padded to multiples of 4 bytes
  const auto bandRows = static_cast<std::int32_t>(std::clamp<std::size_t>(BandBytes / stride, 1, 65536));
  std::vector<std::uint8_t> band;
  // When a picture is reduced, keep the thin black lines of a bilevel page and average the colours of others.
  SetStretchBltMode(device, picture.BitsPerPixel() == 1 ? BLACKONWHITE : HALFTONE);
  SetBrushOrgEx(device, 0, 0, nullptr);
  for (std::int32_t first = 0; first < picture.Height(); first += bandRows) {
    const std::int32_t rows = std::min(bandRows, picture.Height() - first);
    band.assign(stride * static_cast<std::size_t>(rows), 0);
    for (std::int32_t y = 0; y < rows; ++y) {
      const auto row = picture.Row(first + y);
      std::memcpy(band.data() + stride * static_cast<std::size_t>(y), row.data(), row.size());
    }
    const auto at = [&](std::int32_t y) { return static_cast<int>(std::int64_t{size.height} * y / picture.Height()); };
    description.head.biHeight = -rows;  // top-down
    const int drawn =
        StretchDIBits(device, 0, at(first), size.width, at(first + rows) - at(first), 0, 0, picture.Width(), rows,
                      band.data(), reinterpret_cast<BITMAPINFO*>(&description), DIB_RGB_COLORS, SRCCOPY);
    if (drawn == 0 || drawn == static_cast<int>(GDI_ERROR)) RaisePrinterError();
  }
}

void Printer::EndJob() {
  if (!isJobOpen) return;
  isJobOpen = false;
  // Aborts a job that cannot be ended.
  struct Ending {
    explicit Ending(HDC printed) : device(printed) {}
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;
    ~Ending() {
      if (device != nullptr) AbortDoc(device);
    }
    HDC device;
  };
  Ending ending(device);
  EndPage();
  if (EndDoc(device) <= 0) RaisePrinterError();
  ending.device = nullptr;
}

}  // namespace kw::windows
