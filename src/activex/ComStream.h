#pragma once

#include <windows.h>

#include <objidl.h>

#include "picture/Stream.h"

namespace kw::activex {

// A host's stream, from its present position on, as the picture library writes to it. After its first failure it is not
// called any more. What the stream held behind the written bytes stays.
class ComStream final : public Stream {
public:
  // The stream must outlive this object.
  explicit ComStream(IStream& host);

  // The first failure of the host's stream, else S_OK. A stream that takes less than it was given is full.
  HRESULT Result() const { return result; }
  // Moves the host's stream to the end of what was written, or to where it was at first.
  HRESULT Leave(bool isAtEnd);

  std::size_t Read(void* to, std::size_t count) noexcept override;
  std::size_t Write(const void* from, std::size_t count) noexcept override;
  bool Seek(std::uint64_t to) noexcept override;
  std::uint64_t Position() const noexcept override { return position; }
  std::uint64_t Size() noexcept override { return end; }
  bool HasFailed() const noexcept override { return FAILED(result); }

private:
  bool Note(HRESULT answer) noexcept;

  IStream& stream;
  ULARGE_INTEGER start = {};
  std::uint64_t position = 0;  // counted from the start
  std::uint64_t end = 0;
  HRESULT result;
};

}  // namespace kw::activex
