#include "activex/ComStream.h"

#include <algorithm>

namespace kw::activex {
namespace {

ULONG PartOf(std::size_t count) { return static_cast<ULONG>(std::min<std::size_t>(count, MAXLONG)); }

}  // namespace

ComStream::ComStream(IStream& host) : stream(host), result(host.Seek({}, STREAM_SEEK_CUR, &start)) {}

bool ComStream::Note(HRESULT answer) noexcept {
  if (SUCCEEDED(result)) result = answer;
  return SUCCEEDED(answer);
}

std::size_t ComStream::Read(void* to, std::size_t count) noexcept {
  ULONG got = 0;
  if (HasFailed() || !Note(stream.Read(to, PartOf(count), &got))) return 0;
  position += got;
  return got;
}

std::size_t ComStream::Write(const void* from, std::size_t count) noexcept {
  std::size_t done = 0;
  while (done < count && !HasFailed()) {
    const ULONG part = PartOf(count - done);
    ULONG taken = 0;
    if (!Note(stream.Write(static_cast<const BYTE*>(from) + done, part, &taken))) break;
    taken = std::min(taken, part);
    done += taken;
    if (taken < part) Note(STG_E_MEDIUMFULL);
  }
  position += done;
  end = std::max(end, position);
  return done;
}

bool ComStream::Seek(std::uint64_t to) noexcept {
  if (HasFailed()) return false;
  if (to == position) return true;
  LARGE_INTEGER place;
  place.QuadPart = static_cast<LONGLONG>(start.QuadPart + to);
  if (!Note(stream.Seek(place, STREAM_SEEK_SET, nullptr))) return false;
  position = to;
  return true;
}

HRESULT ComStream::Leave(bool isAtEnd) {
  Seek(isAtEnd ? end : 0);
  return result;
}

}  // namespace kw::activex
