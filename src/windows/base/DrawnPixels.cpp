#include "windows/base/DrawnPixels.h"

#include <windows.h>

#include <zlib.h>

#include <cstddef>
#include <span>
#include <utility>

#include "windows/base/Module.h"

namespace kw::windows {
namespace {

std::span<Bytef> RawData(int resource) {
  const HRSRC found = FindResourceW(Module(), MAKEINTRESOURCEW(resource), RT_RCDATA);
  const HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(Module(), found);
  if (loaded == nullptr) return {};
  return {static_cast<Bytef*>(LockResource(loaded)), SizeofResource(Module(), found)};
}

}  // namespace

std::vector<DrawnPixels> ReadDrawings(int resource, std::size_t count, int side) {
  const std::span<Bytef> packed = RawData(resource);
  constexpr int GzipWithLargestWindow = 16 + MAX_WBITS;
  z_stream stream = {};
  if (packed.empty() || inflateInit2(&stream, GzipWithLargestWindow) != Z_OK) return {};
  stream.next_in = packed.data();
  stream.avail_in = static_cast<uInt>(packed.size());
  const auto width = static_cast<std::size_t>(side);
  std::vector<DrawnPixels> drawings;
  while (drawings.size() < count) {
    DrawnPixels pixels(width * width);
    const auto size = static_cast<uInt>(pixels.size() * sizeof pixels.front());
    stream.next_out = reinterpret_cast<Bytef*>(pixels.data());
    stream.avail_out = size;
    static_cast<void>(inflate(&stream, Z_SYNC_FLUSH));
    if (stream.avail_out != 0) break;
    drawings.push_back(std::move(pixels));
  }
  inflateEnd(&stream);
  return drawings.size() == count ? drawings : std::vector<DrawnPixels>();
}

}  // namespace kw::windows
