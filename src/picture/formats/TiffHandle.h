#pragma once

#include <cstdint>
#include <string>

#include <tiffio.h>

#include "picture/Stream.h"

namespace kw {

// libtiff at work on a stream, silently; the stream outlives it.
class TiffHandle {
public:
  enum class Use { Read, Write };

  // Raises InvalidPicture where libtiff refuses. A file to read has no directory selected yet. One block of memory that
  // libtiff asks for while it reads may have at most `mostMemory` bytes.
  TiffHandle(Stream& stream, Use use, std::uint64_t mostMemory = 0);
  TiffHandle(const TiffHandle&) = delete;
  TiffHandle& operator=(const TiffHandle&) = delete;
  ~TiffHandle();

  TIFF* Get() const { return codec; }

  // Raises InvalidPicture, with the library's own message, where `good` is false.
  void Require(bool good) const;

  // What the library found wrong so far, as a sentence; empty where nothing was.
  std::string Damage() const;

  // Sets a tag; its type and number of values are the library's.
  template <typename... Value>
  void Set(std::uint32_t tag, Value... value) const {
    Require(TIFFSetField(codec, tag, value...) == 1);
  }

  // A tag with its default where the file has none; `missing` where there is none either.
  template <typename Value>
  Value Field(std::uint32_t tag, Value missing) const {
    Value value = missing;
    return TIFFGetFieldDefaulted(codec, tag, &value) == 1 ? value : missing;
  }

private:
  [[gnu::format(printf, 4, 0)]] static int KeepMessage(TIFF* codec, void* handle, const char* module,
                                                       const char* format, va_list arguments);
  [[gnu::format(printf, 4, 0)]] static int KeepWarning(TIFF* codec, void* handle, const char* module,
                                                       const char* format, va_list arguments);

  TIFF* codec = nullptr;
  // The first error.
  std::string message;
};

}  // namespace kw
