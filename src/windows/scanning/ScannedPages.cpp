#include "windows/scanning/ScannedPages.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "components/base/RunTimeError.h"
#include "windows/base/Guard.h"

namespace kw::windows {
namespace {

BITMAPINFOHEADER HeadOf(const PackedDib& dib) {
  BITMAPINFOHEADER head = {};
  std::memcpy(&head, dib.data(), sizeof head);
  return head;
}

std::uint64_t StrideOf(const BITMAPINFOHEADER& head) {
  return (std::uint64_t{static_cast<std::uint32_t>(head.biWidth)} * head.biBitCount + 31) / 32 * 4;
}

std::uint32_t ColoursOf(const BITMAPINFOHEADER& head) {
  const std::uint32_t most = head.biBitCount <= 8 ? 1U << head.biBitCount : 0;
  return head.biClrUsed == 0 ? most : head.biClrUsed;
}

// The number of bytes before the rows.
std::uint64_t HeadBytes(const BITMAPINFOHEADER& head) {
  const bool hasMasks = head.biCompression == BI_BITFIELDS && head.biSize == sizeof head;
  return head.biSize + (hasMasks ? 12U : 0U) + std::uint64_t{ColoursOf(head)} * sizeof(RGBQUAD);
}

// The number of bytes of the whole bitmap; 0 if the header is invalid.
std::uint64_t BytesOf(const BITMAPINFOHEADER& head) {
  constexpr WORD depths[] = {1, 4, 8, 16, 24, 32};
  const bool isKnown = std::find(std::begin(depths), std::end(depths), head.biBitCount) != std::end(depths);
  if (head.biSize < sizeof head || head.biSize > 4096 || head.biPlanes != 1 || !isKnown) return 0;
  if (head.biWidth <= 0 || head.biHeight == 0 || head.biHeight == std::numeric_limits<LONG>::min()) return 0;
  if (ColoursOf(head) > 256) return 0;
  const bool isPlain = head.biCompression == BI_RGB || head.biCompression == BI_BITFIELDS;
  const std::uint64_t rows = StrideOf(head) * static_cast<std::uint64_t>(std::abs(std::int64_t{head.biHeight}));
  return HeadBytes(head) + (isPlain ? rows : head.biSizeImage);
}

const BITMAPINFO* InfoOf(const PackedDib& dib) { return reinterpret_cast<const BITMAPINFO*>(dib.data()); }

bool HaveSameColours(const PackedDib& a, const PackedDib& b) {
  const BITMAPINFOHEADER headA = HeadOf(a);
  const BITMAPINFOHEADER headB = HeadOf(b);
  return headA.biBitCount == headB.biBitCount && headA.biSize == headB.biSize && ColoursOf(headA) == ColoursOf(headB) &&
         std::memcmp(a.data() + headA.biSize, b.data() + headB.biSize, ColoursOf(headA) * sizeof(RGBQUAD)) == 0;
}

// A memory device context with a bitmap of its own.
class Sheet {
public:
  explicit Sheet(const BITMAPINFO& info) : context(CreateCompatibleDC(nullptr)) {
    bitmap = CreateDIBSection(context, &info, DIB_RGB_COLORS, &rows, nullptr, 0);
    if (context == nullptr || bitmap == nullptr) {
      Close();
      Raise(ErrorNumber::OutOfMemory, static_cast<std::int32_t>(GetLastError()));
    }
    before = SelectObject(context, bitmap);
  }
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;
  ~Sheet() { Close(); }

  HDC Context() const { return context; }
  const void* Rows() const {
    GdiFlush();
    return rows;
  }

private:
  void Close() {
    if (before != nullptr) SelectObject(context, before);
    if (bitmap != nullptr) DeleteObject(bitmap);
    if (context != nullptr) DeleteDC(context);
  }

  HDC context;
  HBITMAP bitmap = nullptr;
  HGDIOBJ before = nullptr;
  void* rows = nullptr;
};

}  // namespace

bool ScannedPages::Add(HGLOBAL memory) {
  const std::uint64_t size = memory == nullptr ? 0 : GlobalSize(memory);
  if (size < sizeof(BITMAPINFOHEADER)) return false;
  const auto* const bytes = static_cast<const std::uint8_t*>(GlobalLock(memory));
  if (bytes == nullptr) return false;
  struct Unlock {
    void operator()(HGLOBAL locked) const { GlobalUnlock(locked); }
  };
  const std::unique_ptr<void, Unlock> whileRead(memory);
  BITMAPINFOHEADER head = {};
  std::memcpy(&head, bytes, sizeof head);
  const std::uint64_t length = BytesOf(head);
  const bool isWhole = length != 0 && length <= size;
  if (isWhole) pages.emplace_back(bytes, bytes + length);
  return isWhole;
}

PackedDib ScannedPages::TakeJoined() {
  PackedDib image;
  while (pages.size() > 1 && !Guard([&] { image = Joined(); })) pages.pop_back();
  if (pages.size() == 1) image = std::move(pages.front());
  pages.clear();
  return image;
}

PackedDib ScannedPages::Joined() const {
  const bool areAlike = std::all_of(pages.begin(), pages.end(),
                                    [&](const PackedDib& page) { return HaveSameColours(page, pages.front()); });
  const BITMAPINFOHEADER first = HeadOf(pages.front());
  BITMAPINFOHEADER head = {};
  head.biSize = sizeof head;
  head.biPlanes = 1;
  head.biBitCount = areAlike && first.biBitCount <= 8 ? first.biBitCount : 24;
  head.biXPelsPerMeter = first.biXPelsPerMeter;
  head.biYPelsPerMeter = first.biYPelsPerMeter;
  head.biClrUsed = head.biBitCount <= 8 ? ColoursOf(first) : 0;
  std::int64_t height = 0;
  for (const PackedDib& page : pages) {
    head.biWidth = std::max(head.biWidth, HeadOf(page).biWidth);
    height += std::abs(std::int64_t{HeadOf(page).biHeight});
  }
  if (height > std::numeric_limits<LONG>::max()) Raise(ErrorNumber::OutOfMemory);
  head.biHeight = static_cast<LONG>(height);

  PackedDib strip(static_cast<std::size_t>(HeadBytes(head)));
  std::memcpy(strip.data(), &head, sizeof head);
  if (head.biClrUsed != 0) {
    std::memcpy(strip.data() + sizeof head, pages.front().data() + first.biSize, head.biClrUsed * sizeof(RGBQUAD));
  }
  const std::uint64_t stride = StrideOf(head);
  PackedDib joined(static_cast<std::size_t>(strip.size() + stride * static_cast<std::uint64_t>(height)));
  std::memcpy(joined.data(), strip.data(), strip.size());
  // The bottom row is stored first.
  std::uint8_t* behind = joined.data() + joined.size();
  for (const PackedDib& page : pages) {
    const BITMAPINFOHEADER own = HeadOf(page);
    const int rows = std::abs(own.biHeight);
    head.biHeight = rows;
    std::memcpy(strip.data(), &head, sizeof head);
    const Sheet sheet(*InfoOf(strip));
    PatBlt(sheet.Context(), 0, 0, head.biWidth, rows, WHITENESS);
    StretchDIBits(sheet.Context(), 0, 0, own.biWidth, rows, 0, 0, own.biWidth, rows, page.data() + HeadBytes(own),
                  InfoOf(page), DIB_RGB_COLORS, SRCCOPY);
    const std::uint64_t bytes = stride * static_cast<std::uint64_t>(rows);
    behind -= bytes;
    std::memcpy(behind, sheet.Rows(), static_cast<std::size_t>(bytes));
  }
  return joined;
}

void PutOnClipboard(const PackedDib& image, HWND owner) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, image.size());
  if (memory == nullptr) Raise(ErrorNumber::OutOfMemory, static_cast<std::int32_t>(GetLastError()));
  std::memcpy(GlobalLock(memory), image.data(), image.size());
  GlobalUnlock(memory);
  // Retry, because another program may have the clipboard open for a moment.
  bool isOpen = OpenClipboard(owner) != FALSE;
  for (int attempt = 0; !isOpen && attempt < 20; ++attempt) {
    Sleep(50);
    isOpen = OpenClipboard(owner) != FALSE;
  }
  const bool isPut = isOpen && EmptyClipboard() != FALSE && SetClipboardData(CF_DIB, memory) != nullptr;
  const auto error = static_cast<std::int32_t>(GetLastError());
  if (isOpen) CloseClipboard();
  if (isPut) return;
  GlobalFree(memory);
  Raise(ErrorNumber::CannotOpenClipboard, error);
}

}  // namespace kw::windows
