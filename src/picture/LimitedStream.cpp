#include "picture/LimitedStream.h"

#include <algorithm>

#include "components/base/RunTimeError.h"

namespace kw {

std::size_t LimitedStream::Write(const void* from, std::size_t count) noexcept {
  const std::uint64_t position = target.Position();
  if (position > most || count > most - position) {
    isFull = true;
    return 0;
  }
  const std::size_t done = target.Write(from, count);
  end = std::max(end, position + done);
  return done;
}

void LimitedStream::RaiseIfFull() const {
  if (isFull) Raise(ErrorNumber::DiskFull);
}

}  // namespace kw
