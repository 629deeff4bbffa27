#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kw {

// Bytes with a current position: a file or a block of memory. Nothing here throws, because codec libraries written in C
// call it; a failure shows as a short count.
class Stream {
public:
  Stream() = default;
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  virtual ~Stream() = default;

  // Both move the position by the bytes that they return. Fewer than `count`: the end of the bytes, or a failure.
  virtual std::size_t Read(void* to, std::size_t count) noexcept = 0;
  virtual std::size_t Write(const void* from, std::size_t count) noexcept = 0;
  virtual bool Seek(std::uint64_t position) noexcept = 0;
  virtual std::uint64_t Position() const noexcept = 0;
  virtual std::uint64_t Size() noexcept = 0;

  // Whether a call failed; Size() answers 0 then. The end of the bytes is no failure.
  virtual bool HasFailed() const noexcept { return false; }

  // What was written before is on the disk before anything that is written later.
  virtual bool Settle() noexcept { return true; }

  bool ReadAll(void* to, std::size_t count) noexcept { return Read(to, count) == count; }
  bool WriteAll(std::span<const std::uint8_t> bytes) noexcept {
    return Write(bytes.data(), bytes.size()) == bytes.size();
  }
};

// Reads a block of memory that the caller keeps alive.
class MemoryReader : public Stream {
public:
  explicit MemoryReader(std::span<const std::uint8_t> source) : bytes(source) {}
  std::size_t Read(void* to, std::size_t count) noexcept override;
  std::size_t Write(const void* from, std::size_t count) noexcept override;
  bool Seek(std::uint64_t to) noexcept override;
  std::uint64_t Position() const noexcept override { return position; }
  std::uint64_t Size() noexcept override { return bytes.size(); }

private:
  std::span<const std::uint8_t> bytes;
  std::uint64_t position = 0;
};

// A file in memory.
class MemoryFile : public Stream {
public:
  std::size_t Read(void* to, std::size_t count) noexcept override;
  // Writes nothing if there is no memory left.
  std::size_t Write(const void* from, std::size_t count) noexcept override;
  bool Seek(std::uint64_t to) noexcept override;
  std::uint64_t Position() const noexcept override { return position; }
  std::uint64_t Size() noexcept override { return bytes.size(); }
  std::span<const std::uint8_t> Bytes() const { return bytes; }

private:
  std::vector<std::uint8_t> bytes;
  std::uint64_t position = 0;
};

}  // namespace kw
