#include "picture/PictureFormat.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "components/base/RunTimeError.h"
#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

#define KW_ADDRESS_OF_FORMAT(Name, ...) &Name##Format,
constexpr const PictureFormat* AllFormats[] = {KW_FORMATS(KW_ADDRESS_OF_FORMAT)};
#undef KW_ADDRESS_OF_FORMAT

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace

std::span<const PictureFormat* const> Formats() { return AllFormats; }

const PictureFormat* FormatOfContent(std::span<const std::uint8_t> head) {
  const auto* const found =
      std::ranges::find_if(AllFormats, [&](const auto* format) { return format->recognises(head); });
  return found == std::end(AllFormats) ? nullptr : *found;
}

const PictureFormat* FormatOfPath(std::string_view path) {
  const std::size_t dot = path.find_last_of("./\\");
  if (dot == std::string_view::npos || path[dot] != '.') return nullptr;
  const std::string extension = LowerCase(path.substr(dot + 1));
  if (extension.empty()) return nullptr;
  for (const PictureFormat* format : AllFormats) {
    if (std::ranges::find(format->extensions, extension) != format->extensions.end()) return format;
  }
  return nullptr;
}

void RequirePageFits(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits) {
  constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max());
  if (width == 0 || height == 0) RaiseUnreadable("The picture has no pixels.");
  if (width > most || height > most ||
      PixelMemory(static_cast<std::int32_t>(width), static_cast<std::int32_t>(height), bitsPerPixel) >
          limits.pageMemory) {
    RaiseUnreadable("The picture is too large: " + std::to_string(width) + " x " + std::to_string(height) + " pixels.");
  }
}

void RequireWorkFits(std::uint64_t bytes, const ReadLimits& limits) {
  if (bytes > limits.WorkMemory()) RaiseUnreadable("The picture is too large: its decoding takes too much memory.");
}

Bitmap NewPage(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits) {
  RequirePageFits(width, height, bitsPerPixel, limits);
  return {static_cast<std::int32_t>(width), static_cast<std::int32_t>(height), bitsPerPixel};
}

Bitmap NewUnfilledPage(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits) {
  RequirePageFits(width, height, bitsPerPixel, limits);
  return Bitmap::Unfilled(static_cast<std::int32_t>(width), static_cast<std::int32_t>(height), bitsPerPixel);
}

void RequireResultFits(std::uint64_t bytes, const ReadLimits& limits) {
  if (bytes > limits.pageMemory) Raise(ErrorNumber::OutOfMemory);
}

void CopyBytes(Stream& from, std::uint64_t position, std::uint64_t count, Stream& to) {
  if (!from.Seek(position)) RaiseUnreadable("The file cannot be read.");
  constexpr std::uint64_t blockSize = std::uint64_t{256} * 1024;
  std::vector<std::uint8_t> block(static_cast<std::size_t>(std::min(count, blockSize)));
  while (count != 0) {
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, block.size()));
    if (!from.ReadAll(block.data(), part)) RaiseUnreadable("The file cannot be read.");
    if (!to.WriteAll({block.data(), part})) RaiseUnreadable("The picture cannot be written.");
    count -= part;
  }
}

}  // namespace kw
