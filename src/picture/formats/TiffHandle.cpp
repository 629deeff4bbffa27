#include "picture/formats/TiffHandle.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <memory>
#include <new>
#include <string_view>

#include "picture/Unreadable.h"

namespace kw {
namespace {

Stream& StreamOf(thandle_t client) { return *static_cast<Stream*>(client); }

tmsize_t ReadStream(thandle_t client, void* to, tmsize_t count) {
  return count < 0 ? -1 : static_cast<tmsize_t>(StreamOf(client).Read(to, static_cast<std::size_t>(count)));
}

tmsize_t WriteStream(thandle_t client, void* from, tmsize_t count) {
  return count < 0 ? -1 : static_cast<tmsize_t>(StreamOf(client).Write(from, static_cast<std::size_t>(count)));
}

toff_t SeekStream(thandle_t client, toff_t offset, int origin) {
  Stream& stream = StreamOf(client);
  const std::uint64_t base = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? stream.Position() : stream.Size();
  return stream.Seek(base + offset) ? stream.Position() : std::numeric_limits<toff_t>::max();
}

// The library has no number for it. A block that is larger than the limit is told in other words, before.
bool TellsLackOfMemory(std::string_view text) {
  constexpr std::array<std::string_view, 10> words = {"Out of memory",       "Not enough memory",   "No space for",
                                                      "Failed to allocate",  "Cannot allocate",     "cannot allocate",
                                                      "Unable to allocate",  "Insufficient memory", "malloc(",
                                                      "Insertion in tif_map"};
  return std::ranges::any_of(words,
                             [text](std::string_view part) { return text.find(part) != std::string_view::npos; });
}

// libtiff does not survive that one of the small requests fails which it makes for tags: it reads behind its lists. So
// there has to be far more memory than they need.
void RequireRoomForTags() {
  constexpr std::size_t enough = std::size_t{256} * 1024;
  void* volatile room = ::operator new(enough);  // the compiler must not leave it out
  ::operator delete(room);
}

int CloseStream(thandle_t /*client*/) { return 0; }

toff_t SizeOfStream(thandle_t client) { return StreamOf(client).Size(); }

}  // namespace

TiffHandle::TiffHandle(Stream& stream, Use use, std::uint64_t mostMemory) {
  RequireRoomForTags();
  const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                             TIFFOpenOptionsFree);
  if (options == nullptr) Raise(ErrorNumber::OutOfMemory);
  if (!stream.Seek(0)) RaiseUnreadable("The file cannot be read.");
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepMessage, this);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), KeepWarning, this);
  constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<tmsize_t>::max());
  if (mostMemory != 0) {
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(std::min(mostMemory, most)));
  }
  // m: no memory mapping; h: the header only; l: little endian.
  codec = TIFFClientOpenExt("", use == Use::Read ? "rmh" : "wl", &stream, ReadStream, WriteStream, SeekStream,
                            CloseStream, SizeOfStream, nullptr, nullptr, options.get());
  Require(codec != nullptr);
}

TiffHandle::~TiffHandle() {
  if (codec != nullptr) TIFFClose(codec);
}

void TiffHandle::Require(bool good) const {
  if (good) return;
  RequireMemory();
  RaiseUnreadable(message.empty() ? "The TIFF data cannot be used." : "The TIFF data cannot be used: " + message + ".");
}

void TiffHandle::RequireMemory() const {
  if (lackedMemory) Raise(ErrorNumber::OutOfMemory);
}

std::string TiffHandle::Damage() const {
  return message.empty() ? std::string() : "The TIFF data is damaged or cut short: " + message + ".";
}

int TiffHandle::KeepMessage(TIFF* /*codec*/, void* handle, const char* /*module*/, const char* format,
                            va_list arguments) {
  // Called from C, so it must not throw: without memory the message is lost.
  auto& tiff = *static_cast<TiffHandle*>(handle);
  try {
    std::array<char, 256> text{};
    if (!tiff.message.empty() || std::vsnprintf(text.data(), text.size(), format, arguments) <= 0) return 1;
    tiff.lackedMemory = tiff.lackedMemory || TellsLackOfMemory(text.data());
    tiff.message = text.data();
  } catch (...) {
    tiff.lackedMemory = true;
  }
  return 1;
}

int TiffHandle::KeepWarning(TIFF* codec, void* handle, const char* module, const char* format, va_list arguments) {
  // Only the fax decoders warn of damaged pixels; the other warnings are about tags that are not needed.
  const bool aboutPixels = module != nullptr && std::string_view(module).starts_with("Fax");
  return aboutPixels ? KeepMessage(codec, handle, module, format, arguments) : 1;
}

}  // namespace kw
