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

// A file in memory. A write beyond the memory that is left writes nothing, and the file has failed from then on.
class MemoryFile : public Stream {
public:
  std::size_t Read(void* to, std::size_t count) noexcept override;
  std::size_t Write(const void* from, std::size_t count) noexcept override;
  bool HasFailed() const noexcept override { return hasFailed; }
  // Raises OutOfMemory if a write failed.
  void RaiseFailure() const;
  bool Seek(std::uint64_t to) noexcept override;
  std::uint64_t Position() const noexcept override { return position; }
  std::uint64_t Size() noexcept override { return bytes.size(); }
  std::span<const std::uint8_t> Bytes() const { return bytes; }

private:
  std::vector<std::uint8_t> bytes;
  std::uint64_t position = 0;
  bool hasFailed = false;
};

// Runs a step that reads or writes the file. Its failure, which only the file knows, is told rather than what the codec
// makes of it: a file that cannot be read is not one that is damaged.
template <class File, class Step>
void TellingFailures(const File& file, const Step& step) {
  try {
    step();
  } catch (...) {
    file.RaiseFailure();
    throw;
  }
  file.RaiseFailure();
}

}  // namespace kw
