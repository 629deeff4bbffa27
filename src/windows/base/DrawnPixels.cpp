#include "windows/base/DrawnPixels.h"

#include <windows.h>

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <span>

#include "windows/base/Module.h"

namespace kw::windows {
namespace {

std::span<Bytef> RawData(int resource) {
  const HRSRC found = FindResourceW(Module(), MAKEINTRESOURCEW(resource), RT_RCDATA);
  const HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(Module(), found);
  if (loaded == nullptr) return {};
  return {static_cast<Bytef*>(LockResource(loaded)), SizeofResource(Module(), found)};
}

// The decoder of a resource.
class Inflater {
public:
  explicit Inflater(std::span<Bytef> packed) {
    constexpr int GzipWithLargestWindow = 16 + MAX_WBITS;
    stream.next_in = packed.data();
    stream.avail_in = static_cast<uInt>(packed.size());
    Require(inflateInit2(&stream, GzipWithLargestWindow));
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() { inflateEnd(&stream); }

  // False if there are fewer pixels.
  bool Read(DrawnPixels& pixels) {
    stream.next_out = reinterpret_cast<Bytef*>(pixels.data());
    stream.avail_out = static_cast<uInt>(pixels.size() * sizeof pixels.front());
    Require(inflate(&stream, Z_SYNC_FLUSH));
    return stream.avail_out == 0;
  }

private:
  static void Require(int result) {
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
  }

  z_stream stream = {};
};

}  // namespace

std::vector<DrawnPixels> ReadDrawings(int resource, std::size_t count, int side) {
  const std::span<Bytef> packed = RawData(resource);
  if (packed.empty()) return {};
  Inflater inflater(packed);
  const auto width = static_cast<std::size_t>(side);
  std::vector<DrawnPixels> drawings(count, DrawnPixels(width * width));
  const bool isWhole = std::ranges::all_of(drawings, [&](DrawnPixels& pixels) { return inflater.Read(pixels); });
  return isWhole ? drawings : std::vector<DrawnPixels>();
}

}  // namespace kw::windows
