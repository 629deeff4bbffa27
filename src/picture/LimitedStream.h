#pragma once

#include "picture/Stream.h"

namespace kw {

// Limits the size of another stream: a write beyond the limit fails as it does on a full disk.
class LimitedStream : public Stream {
public:
  // `to` must be empty and outlive this object.
  LimitedStream(Stream& to, std::uint64_t mostBytes) : target(to), most(mostBytes) {}

  std::size_t Read(void* to, std::size_t count) noexcept override { return target.Read(to, count); }
  std::size_t Write(const void* from, std::size_t count) noexcept override;
  bool Seek(std::uint64_t position) noexcept override { return target.Seek(position); }
  std::uint64_t Position() const noexcept override { return target.Position(); }
  std::uint64_t Size() noexcept override { return end; }
  bool Settle() noexcept override { return target.Settle(); }

  // Whether a write did not fit.
  bool IsFull() const { return isFull; }
  // Raises DiskFull if a write did not fit.
  void RaiseIfFull() const;

private:
  Stream& target;
  std::uint64_t most;
  std::uint64_t end = 0;
  bool isFull = false;
};

}  // namespace kw
