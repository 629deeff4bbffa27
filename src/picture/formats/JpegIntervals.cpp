#include "picture/formats/JpegIntervals.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <numeric>
#include <optional>

#include "picture/effects/ParallelRows.h"
#include "picture/formats/JpegScan.h"

namespace kw {
namespace {

// Bands of this many times the rows that are decoded only for their neighbours.
constexpr std::uint32_t LeastGain = 4;

// Each band gets what stands before the codes.
constexpr std::size_t LargestHead = std::size_t{1} << 20U;

constexpr std::size_t MarkerNumbers = 8;

// The rows of a page, each band as a stream of its own. A row is one of minimum coded units here.
class IntervalBands {
public:
  IntervalBands(std::span<const std::uint8_t> bytes, const JpegScan& parts, std::size_t threads)
      : stream(bytes),
        scan(parts),
        rows((scan.height + scan.unitHeight - 1) / scan.unitHeight),
        step(scan.interval / std::gcd(scan.interval, scan.unitsPerRow)) {
    for (const std::size_t count : {2 * threads, threads}) {
      const auto share = static_cast<std::uint32_t>((rows + count - 1) / count);
      // Only every `step` rows a row begins with an interval.
      rowsOfBand = (share + step - 1) / step * step;
      if (rowsOfBand >= LeastGain * (step + 1)) break;
      rowsOfBand = rows;
    }
  }

  std::size_t Count() const { return (rows + rowsOfBand - 1) / rowsOfBand; }

  // Returns false if anything is not as in a sound picture.
  bool Decode(std::size_t band, Bitmap& page) const {
    const auto begin = static_cast<std::uint32_t>(band) * rowsOfBand;
    const std::uint32_t end = std::min(rows, begin + rowsOfBand);
    // Colours of less resolution are interpolated between rows: those above and below the band take part.
    const std::uint32_t first = begin == 0 ? 0 : begin - step;
    const std::uint32_t last = std::min(rows, end + 1);
    const auto pixelsTo = [this](std::uint32_t row) {
      return static_cast<std::int32_t>(std::min(scan.height, row * scan.unitHeight));
    };

    const auto bytes = StreamOf(first, last, pixelsTo(last) - pixelsTo(first));
    MemoryReader file(bytes);
    const auto decoder = std::make_unique<JpegDecoder>(file);
    const auto& codec = decoder->ReadHeader();
    if (codec.image_width != static_cast<JDIMENSION>(page.Width()) || decoder->Depth() != page.BitsPerPixel()) {
      return false;
    }
    decoder->Start();
    std::vector<std::uint8_t> above(page.RowBytes());
    for (std::int32_t y = pixelsTo(first); y < pixelsTo(begin); ++y) {
      if (!decoder->ReadRow(above)) return false;
    }
    for (std::int32_t y = pixelsTo(begin); y < pixelsTo(end); ++y) {
      if (!decoder->ReadRow(page.MutableRow(y))) return false;
    }
    return !decoder->HasWarned();
  }

private:
  // A picture of the rows [first, last). `first` begins with an interval.
  std::vector<std::uint8_t> StreamOf(std::uint32_t first, std::uint32_t last, std::int32_t height) const {
    const std::size_t firstInterval = std::size_t{first} * scan.unitsPerRow / scan.interval;
    const std::size_t endInterval = (std::size_t{last} * scan.unitsPerRow + scan.interval - 1) / scan.interval;
    const std::size_t begin = firstInterval == 0 ? scan.codesBegin : std::size_t{scan.restarts[firstInterval - 1]} + 2;
    const std::size_t end = endInterval > scan.restarts.size() ? scan.codesEnd : scan.restarts[endInterval - 1];

    std::vector<std::uint8_t> made;
    made.reserve(scan.codesBegin + (end - begin) + 2);
    const auto head = stream.first(scan.codesBegin);
    made.assign(head.begin(), head.end());
    made[scan.heightAt] = static_cast<std::uint8_t>(height >> 8);
    made[scan.heightAt + 1] = static_cast<std::uint8_t>(height);
    const auto codes = stream.subspan(begin, end - begin);
    made.insert(made.end(), codes.begin(), codes.end());
    for (std::size_t i = firstInterval; i + 1 < endInterval; ++i) {
      made[scan.codesBegin + scan.restarts[i] - begin + 1] =
          static_cast<std::uint8_t>(JPEG_RST0 + (i - firstInterval) % MarkerNumbers);
    }
    made.insert(made.end(), {0xFF, JPEG_EOI});
    return made;
  }

  std::span<const std::uint8_t> stream;
  const JpegScan& scan;
  std::uint32_t rows;
  std::uint32_t step;
  std::uint32_t rowsOfBand = 0;
};

std::vector<std::uint8_t> AllOf(Stream& file) {
  const std::uint64_t place = file.Position();
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.Size()));
  const bool isRead = file.Seek(0) && file.ReadAll(bytes.data(), bytes.size());
  return file.Seek(place) && isRead ? std::move(bytes) : std::vector<std::uint8_t>();
}

}  // namespace

bool ReadIntervalsByThreads(Stream& file, const jpeg_decompress_struct& codec, Bitmap& page) {
  if (codec.restart_interval == 0 || file.Size() > LongestJpegScan) return false;
  const std::size_t threads =
      ThreadsForWork(std::uint64_t{page.RowBytes()} * static_cast<std::uint64_t>(page.Height()) * WorkOfJpegByte);
  if (threads < 2) return false;
  const auto bytes = AllOf(file);
  const auto scan = JpegScanOf(bytes);
  if (!scan || scan->interval == 0 || scan->height != static_cast<std::uint32_t>(page.Height())) return false;
  if (scan->codesBegin > LargestHead) return false;
  const IntervalBands bands(bytes, *scan, threads);
  if (bands.Count() < 2) return false;

  std::atomic<bool> sound{true};
  ParallelFor(bands.Count(), [&](std::size_t i) {
    try {
      if (sound && !bands.Decode(i, page)) sound = false;
    } catch (...) {
      sound = false;  // the plain way says why, or has more memory
    }
  });
  return sound;
}

}  // namespace kw
