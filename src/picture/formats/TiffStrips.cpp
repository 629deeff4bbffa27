#include "picture/formats/TiffStrips.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "picture/effects/ParallelRows.h"
#include "picture/formats/JpegScan.h"

namespace kw {
namespace {

// The handles of all threads take this part of the memory of a page, or less.
constexpr std::uint64_t PartOfPage = 3;

// One thread's stream on bytes that several threads read.
class StripBytes : public Stream {
public:
  StripBytes(Stream& sharedFile, std::mutex& sharedLock) : file(sharedFile), lock(sharedLock), size(file.Size()) {}

  std::size_t Read(void* to, std::size_t count) noexcept override {
    const auto reading = Lock();
    const bool isThere = file.Position() == position || file.Seek(position);
    const std::size_t done = isThere ? file.Read(to, count) : 0;
    position += done;
    return done;
  }
  std::size_t Write(const void* /*from*/, std::size_t /*count*/) noexcept override { return 0; }
  bool Seek(std::uint64_t to) noexcept override {
    position = to;
    return true;
  }
  std::uint64_t Position() const noexcept override { return position; }
  std::uint64_t Size() noexcept override { return size; }

private:
  // The other thread reads for some microseconds; to wake one that sleeps takes longer.
  std::unique_lock<std::mutex> Lock() {
    constexpr int attempts = 100;
    std::unique_lock reading(lock, std::defer_lock);
    for (int i = 0; i < attempts; ++i) {
      if (reading.try_lock()) return reading;
      std::this_thread::yield();
    }
    reading.lock();
    return reading;
  }

  Stream& file;
  std::mutex& lock;
  std::uint64_t size;
  std::uint64_t position = 0;
};

// What a handle needs to decode strips: the coded bytes of one, rows, its lists of strips, the codec's own state. 0 for
// codecs that are not decoded by threads: their state is large, or goes from one strip to the next.
std::uint64_t MemoryOfHandle(const TiffPage& page, std::uint32_t strips) {
  constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;
  // Of a pixel's bits, and of the rows of blocks.
  constexpr std::uint64_t rowsOfFax = 64;
  constexpr std::uint64_t rowsOfJpeg = 128;
  std::uint64_t rows = 2;
  std::uint64_t state = mebibyte;
  switch (page.layout.compression) {
    case COMPRESSION_NONE:
    case COMPRESSION_LZW:
    case COMPRESSION_PACKBITS:
    case COMPRESSION_DEFLATE:
    case COMPRESSION_ADOBE_DEFLATE:
      break;
    case COMPRESSION_CCITTRLE:
    case COMPRESSION_CCITTRLEW:
    case COMPRESSION_CCITTFAX3:
    case COMPRESSION_CCITTFAX4:
      rows = rowsOfFax;
      break;
    case COMPRESSION_JPEG:
      rows = rowsOfJpeg;
      break;
    case COMPRESSION_ZSTD:
      state = 129 * mebibyte;  // the largest window that it takes
      break;
    default:
      return 0;
  }
  constexpr std::uint64_t bytesOfLists = 64;
  std::uint64_t largest = 0;
  for (std::uint32_t i = 0; i < strips; ++i) {
    largest = std::max(largest, TIFFGetStrileByteCount(page.tiff.Get(), i));
  }
  return state + std::min(largest, page.file.Size()) + rows * page.LineBytes() + bytesOfLists * strips;
}

// The first bytes of a strip's code, `most` of them or fewer. They are not read by the library: it would note what is
// wrong with them.
std::vector<std::uint8_t> CodeOf(const TiffPage& page, std::uint32_t strip, std::uint64_t most) {
  const std::uint64_t size = std::min({TIFFGetStrileByteCount(page.tiff.Get(), strip), page.file.Size(), most});
  std::vector<std::uint8_t> code(static_cast<std::size_t>(size));
  const bool isThere = page.file.Seek(TIFFGetStrileOffset(page.tiff.Get(), strip));
  code.resize(isThere ? page.file.Read(code.data(), code.size()) : 0);
  return code;
}

// Once the library has met codes of the old style, it takes those of later strips for such codes, too.
bool MayHaveOldCodes(const TiffPage& page, std::uint32_t strips) {
  for (std::uint32_t i = 0; i < strips; ++i) {
    const auto code = CodeOf(page, i, 1);
    if (code.empty() || code[0] == 0) return true;
  }
  return false;
}

// The decoder keeps the tables of a strip for the next one: a table that a strip needs has to be its own, or one that
// no strip brings.
bool HaveTheirTables(const TiffPage& page, std::uint32_t strips) {
  unsigned brought = 0;
  // That a strip needs and has not.
  unsigned lacking = 0;
  for (std::uint32_t i = 0; i < strips; ++i) {
    const auto code = CodeOf(page, i, page.file.Size());
    const auto scan = JpegScanOf(code);
    if (!scan) return false;
    brought |= scan->definedTables;
    lacking |= scan->neededTables & ~unsigned{scan->definedTables};
  }
  return (brought & lacking) == 0;
}

bool AreIndependent(const TiffPage& page, std::uint32_t strips) {
  if (page.layout.compression == COMPRESSION_LZW) return !MayHaveOldCodes(page, strips);
  return page.layout.compression != COMPRESSION_JPEG || HaveTheirTables(page, strips);
}

std::uint64_t WorkOfByte(int compression, StripCalls calls) {
  if (calls == StripCalls::Shared) return 1;
  // Most of the time goes into reading, which threads do one after the other.
  if (compression == COMPRESSION_NONE) return 0;
  return compression == COMPRESSION_JPEG ? WorkOfJpegByte : WorkOfDecodedByte;
}

// 0 if another handle takes too much memory.
std::size_t StripThreads(const TiffPage& page, std::uint32_t strips, StripCalls calls) {
  const std::uint64_t memory = MemoryOfHandle(page, strips);
  if (memory == 0) return 0;
  const std::uint64_t handles = page.limits.pageMemory / PartOfPage / memory;
  const std::size_t threads =
      ThreadsForWork(std::uint64_t{page.LineBytes()} * page.layout.height * WorkOfByte(page.layout.compression, calls));
  const std::uint64_t parts = calls == StripCalls::Shared ? page.layout.height : strips;
  return static_cast<std::size_t>(std::min({std::uint64_t{threads}, parts, handles}));
}

// Whole strips that stay in the caches until their rows are in their places.
std::uint32_t StripsAtOnce(const TiffPage& page, std::uint32_t strips, std::size_t threads) {
  constexpr std::uint64_t bytesAtOnce = std::uint64_t{128} << 10U;
  constexpr std::uint64_t partsOfShare = 8;
  const std::uint64_t bytes = std::max(std::uint64_t{page.RowsPerStrip()} * page.LineBytes(), std::uint64_t{1});
  const std::uint64_t most = std::min(bytesAtOnce / bytes, strips / (partsOfShare * std::max<std::size_t>(threads, 1)));
  return static_cast<std::uint32_t>(std::max(most, std::uint64_t{1}));
}

}  // namespace

// Of packed runs, the library cuts off what goes beyond the end of a call's pixels.
bool PaysWhole(int compression) {
  return compression == COMPRESSION_NONE || compression == COMPRESSION_LZW || compression == COMPRESSION_DEFLATE ||
         compression == COMPRESSION_ADOBE_DEFLATE;
}

bool DecodeStripsApart(const TiffPage& page, StripCalls calls,
                       const std::function<bool(const TiffPage& own, StripRange range)>& decode) {
  const bool areWhole = calls != StripCalls::Rows;
  const bool areShared = calls == StripCalls::Shared;
  const std::uint32_t all = TIFFNumberOfStrips(page.tiff.Get());
  const std::uint32_t strips = areWhole && page.layout.planar ? all / page.layout.samples : all;
  const std::size_t threads = StripThreads(page, strips, calls);
  if (threads < (areWhole ? 1 : 2) || !AreIndependent(page, strips)) return false;
  const std::uint32_t step = areWhole && !areShared ? StripsAtOnce(page, strips, threads) : 1;
  const auto steps = areShared ? static_cast<std::uint32_t>(threads) : (strips + step - 1) / step;

  const std::size_t lineBytes = page.LineBytes();
  const std::uint32_t rowsPerStrip = page.RowsPerStrip();
  // Another process may have changed the file since the page was opened.
  const auto isThatPage = [&](const TiffPage& own) {
    return own.layout == page.layout && own.LineBytes() == lineBytes && own.RowsPerStrip() == rowsPerStrip &&
           TIFFNumberOfStrips(own.tiff.Get()) == all;
  };

  std::mutex lock;
  std::atomic<std::uint32_t> next{0};
  std::atomic<bool> sound{true};
  const auto decodeStrips = [&] {
    std::optional<StripBytes> bytes;
    std::optional<TiffPage> own;
    for (std::uint32_t i = next++; i < steps && sound; i = next++) {
      if (!own) {
        own.emplace(bytes.emplace(page.file, lock), page.directory, page.limits);
        if (!isThatPage(*own)) {
          sound = false;
          return;
        }
      }
      const StripRange part = {i * step, std::min(strips, (i + 1) * step)};
      if (!decode(*own, areShared ? StripRange{0, strips} : part)) sound = false;
    }
    if (own && own->tiff.Damage() != page.tiff.Damage()) sound = false;
  };
  ParallelFor(threads, [&](std::size_t /*thread*/) {
    try {
      decodeStrips();
    } catch (...) {
      sound = false;  // the plain way says why, or has more memory
    }
  });
  return sound;
}

}  // namespace kw
