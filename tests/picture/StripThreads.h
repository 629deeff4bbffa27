#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "picture/formats/Formats.h"
#include "tests/picture/ThreadsTest.h"
#include "tests/picture/TiffMaker.h"
#include "tests/picture/WatchedFile.h"

namespace kw {

class StripThreads : public ThreadsTest {
protected:
  // Whether one thread and several make of a file what the page's own handle makes of it row by row.
  testing::AssertionResult IsReadByThreads(const Bytes& bytes, ReadOutcome* outcome = nullptr) {
    ReadOutcome plain;
    const auto result = IsReadTheSame(bytes, {4}, &plain);
    if (outcome != nullptr) *outcome = plain;
    if (!result) return result;
    const ReadOutcome rows = ReadByRows(bytes);
    if (plain.isRead != rows.isRead || plain.warning != rows.warning) {
      return testing::AssertionFailure() << plain.error << plain.warning << " / by rows: " << rows.error
                                         << rows.warning;
    }
    return SamePicture(plain.picture, rows.picture) ? testing::AssertionSuccess()
                                                    : testing::AssertionFailure() << "other pixels by rows";
  }

  static ReadOutcome ReadByRows(const Bytes& bytes) {
    SetMostThreads(1);
    MemoryReader file(bytes);
    ReadOutcome outcome;
    try {
      outcome.picture = TiffFormat.open(file, FewLimits)->Read(file, 1, outcome.warning);
      outcome.isRead = true;
    } catch (const RunTimeError& error) {
      outcome.error = error.Description();
    }
    return outcome;
  }

  // How often the byte is read while the page is.
  static unsigned TimesRead(const Bytes& bytes, unsigned threads, std::size_t byte, const ReadLimits& limits = {}) {
    SetMostThreads(threads);
    WatchedFile file(bytes);
    const auto source = TiffFormat.open(file, limits);
    file.Watch();
    std::string warning;
    source->Read(file, 1, warning);
    return file.TimesRead(byte);
  }

  // Each handle reads the file's header. The threads' handles are more than the plain one. A page of 32 bits may be too
  // small for some of them, so the limits are those of 64 bits.
  static bool HasHandlesOfThreads(const Bytes& bytes, const ReadLimits& limits = {std::uint64_t{1} << 30U}) {
    return TimesRead(bytes, 4, HeaderByte, limits) > TimesRead(bytes, 1, HeaderByte, FewLimits);
  }

  static constexpr std::size_t HeaderByte = 4;
  // Too little memory for another handle.
  static constexpr ReadLimits FewLimits{std::uint64_t{2} << 20U};
  std::string path = At("page.tif");
};

inline constexpr std::uint32_t StripWidth = 61;
inline constexpr std::uint32_t StripHeight = 97;

// Soft colours, which JPEG keeps, with enough noise for codes of every length.
inline Bytes SoftSamples(std::uint32_t y, std::size_t size) {
  std::mt19937 random(y);
  Bytes line(size);
  for (std::size_t i = 0; i < size; ++i) line[i] = static_cast<std::uint8_t>(90 + i / 3 % 50 + y + random() % 4);
  return line;
}

}  // namespace kw
