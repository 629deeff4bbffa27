#pragma once

#include "tests/picture/Scratch.h"

namespace kw {

// A file in memory that counts how it is read.
class WatchedFile : public MemoryReader {
public:
  explicit WatchedFile(Bytes contents) : MemoryReader(contents), bytes(std::move(contents)) {}

  std::size_t Read(void* to, std::size_t count) noexcept override {
    const auto begin = static_cast<std::size_t>(Position());
    const std::size_t done = MemoryReader::Read(to, count);
    ++reads;
    bytesRead += done;
    for (std::size_t at = begin; !touched.empty() && at < begin + done; ++at) ++touched[at];
    return done;
  }

  std::size_t Reads() const { return reads; }
  std::uint64_t BytesRead() const { return bytesRead; }
  // From now on, how often each byte is read.
  void Watch() { touched.assign(bytes.size(), 0); }
  unsigned TimesRead(std::size_t position) const { return touched[position]; }

private:
  Bytes bytes;
  std::vector<unsigned> touched;
  std::size_t reads = 0;
  std::uint64_t bytesRead = 0;
};

}  // namespace kw
