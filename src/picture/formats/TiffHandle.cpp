#include "picture/formats/TiffHandle.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <memory>
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

int CloseStream(thandle_t /*client*/) { return 0; }

toff_t SizeOfStream(thandle_t client) { return StreamOf(client).Size(); }

}  // namespace

TiffHandle::TiffHandle(Stream& stream, Use use, std::uint64_t mostMemory) {
  const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                             TIFFOpenOptionsFree);
  if (options == nullptr || !stream.Seek(0)) RaiseUnreadable("The file cannot be read.");
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
  if (!good)
    RaiseUnreadable(message.empty() ? "The TIFF data cannot be used."
                                    : "The TIFF data cannot be used: " + message + ".");
}

std::string TiffHandle::Damage() const {
  return message.empty() ? std::string() : "The TIFF data is damaged or cut short: " + message + ".";
}

int TiffHandle::KeepMessage(TIFF* /*codec*/, void* handle, const char* /*module*/, const char* format,
                            va_list arguments) {
  // Called from C, so it must not throw: without memory the message is lost.
  try {
    auto& message = static_cast<TiffHandle*>(handle)->message;
    std::array<char, 256> text{};
    if (message.empty() && std::vsnprintf(text.data(), text.size(), format, arguments) > 0) message = text.data();
  } catch (...) {
  }
  return 1;
}

int TiffHandle::KeepWarning(TIFF* codec, void* handle, const char* module, const char* format, va_list arguments) {
  // Only the fax decoders warn of damaged pixels; the other warnings are about tags that are not needed.
  const bool aboutPixels = module != nullptr && std::string_view(module).starts_with("Fax");
  return aboutPixels ? KeepMessage(codec, handle, module, format, arguments) : 1;
}

}  // namespace kw
