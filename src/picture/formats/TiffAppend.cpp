#include "picture/formats/TiffAppend.h"

#include <limits>

#include "picture/Unreadable.h"

namespace kw {
namespace {

constexpr std::uint64_t LinkAlignment = 4;
// The number of entries precedes a directory's entries, whose size is a multiple of four.
constexpr std::uint64_t CountBytes = 2;
// Bytes that a page's directory may need beyond its own file.
constexpr std::uint64_t Slack = 1024;

[[noreturn]] void RaiseUnwritten() { RaiseUnreadable("The picture cannot be written."); }

// A document of unknown size must not be taken for an empty one.
std::uint64_t SizeOf(Stream& document) {
  const std::uint64_t size = document.Size();
  if (document.HasFailed()) RaiseUnwritten();
  return size;
}

}  // namespace

TiffAppender::TiffAppender(Stream& document, std::span<const std::uint8_t> header, std::optional<TiffMark> pageMark)
    : to(document), mark(pageMark) {
  if (SizeOf(to) == 0) {
    if (!to.Seek(0) || !to.WriteAll(header)) RaiseUnwritten();
    return;
  }
  const TiffStructure structure(to);
  if (structure.IsBig() || structure.Order() != ByteOrder::Little) {
    RaiseUnreadable("Pages cannot be added to this kind of TIFF file.");
  }
  pages = structure.Directories().size();
  link = structure.LinkOf(to, structure.Directories().back());
  if (to.HasFailed()) RaiseUnwritten();  // it may be another place
}

bool TiffAppender::Append(Stream& page) {
  if (pages == MostPages) RaiseUnreadable("The document has as many pages as a document can have.");
  const std::uint64_t end = SizeOf(to);
  if (end + page.Size() + Slack > std::numeric_limits<std::uint32_t>::max()) {
    RaiseUnreadable("The document would be larger than 4 GB.");
  }
  // Aligns the directory so that its link lies at a multiple of its own size.
  const std::uint64_t directory = (end + CountBytes + LinkAlignment - 1) / LinkAlignment * LinkAlignment - CountBytes;
  const TiffStructure structure(page);
  const auto linkOfPage = CopyTiffPageInto(structure, page, structure.Directories().front(), to, directory, mark);
  if (!linkOfPage) return false;
  std::vector<std::uint8_t> offset;
  AppendNumber(offset, directory, LinkAlignment);
  if (!to.Settle() || !to.Seek(link) || !to.WriteAll(offset) || !to.Settle()) RaiseUnwritten();
  link = *linkOfPage;
  ++pages;
  return true;
}

}  // namespace kw
