#include "windows/printing/Printer.h"

#include <winspool.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "components/base/RunTimeError.h"
#include "windows/base/BandDrawing.h"

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

void Printer::DrawBands(const Bitmap& picture) {
  const Extent size = PrintedSize(picture, device);
  const auto bandRows = static_cast<std::int32_t>(std::clamp<std::size_t>(BandBytes / picture.RowBytes(), 1, 65536));
  BandDrawing bands(device, {0, 0, size.width, size.height}, picture.Height());
  for (std::int32_t first = 0; first < picture.Height(); first += bandRows) {
    if (!bands.Draw(picture, first, std::min(bandRows, picture.Height() - first))) RaisePrinterError();
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
