#pragma once

#include <cstdint>
#include <string>

#include <tiffio.h>

#include "picture/Stream.h"

namespace kw {

// libtiff on a stream, without messages to the user. The stream must outlive it.
class TiffHandle {
public:
  enum class Use { Read, Write };

  // Raises InvalidPicture if libtiff refuses the file. No directory of a file to read is selected yet. While it reads,
  // libtiff gets at most `mostMemory` bytes in one block.
  TiffHandle(Stream& stream, Use use, std::uint64_t mostMemory = 0);
  TiffHandle(const TiffHandle&) = delete;
  TiffHandle& operator=(const TiffHandle&) = delete;
  ~TiffHandle();

  TIFF* Get() const { return codec; }

  // Raises InvalidPicture, with the library's own message, if `good` is false; OutOfMemory if that was its reason.
  void Require(bool good) const;

  // Raises OutOfMemory if the library lacked memory so far, whatever it made of it.
  void RequireMemory() const;

  // The library's complaints so far, as a sentence; empty if there are none.
  std::string Damage() const;

  // Sets a tag; its type and number of values are the library's.
  template <typename... Value>
  void Set(std::uint32_t tag, Value... value) const {
    Require(TIFFSetField(codec, tag, value...) == 1);
  }

  // A tag's value; its default if the file has none, `missing` if there is no default either.
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
  bool lackedMemory = false;
};

}  // namespace kw
