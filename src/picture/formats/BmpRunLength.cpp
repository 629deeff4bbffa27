#include "picture/formats/BmpRunLength.h"

#include <algorithm>
#include <array>

namespace kw {
namespace {

// Reads a stream byte by byte.
class ByteReader {
public:
  explicit ByteReader(Stream& stream) : file(stream) {}

  // False at the end.
  bool Next(std::uint8_t& byte) {
    if (at == count) {
      count = file.Read(block.data(), block.size());
      at = 0;
      if (count == 0) return false;
    }
    byte = block[at++];
    return true;
  }

private:
  Stream& file;
  std::array<std::uint8_t, 4096> block{};
  std::size_t at = 0;
  std::size_t count = 0;
};

class RunLengthDecoder {
public:
  RunLengthDecoder(Stream& file, bool fromTop, Bitmap& target)
      : bytes(file), topDown(fromTop), page(target), fourBits(target.BitsPerPixel() == 4) {}

  // Returns the number of rows.
  std::int32_t Run() {
    std::uint8_t count = 0;
    std::uint8_t value = 0;
    while (y < page.Height()) {
      if (!bytes.Next(count) || !bytes.Next(value)) return WholeRows();
      if (count != 0)
        PutRun(count, value);
      else if (!Escape(value))
        break;
      if (atEnd) return WholeRows();
    }
    return page.Height();
  }

private:
  // False at the end mark.
  bool Escape(std::uint8_t code) {
    switch (code) {
      case 0:
        x = 0;
        ++y;
        return true;
      case 1:
        return false;
      case 2:
        x = std::min(x + Required(), page.Width());
        y = std::min(y + Required(), page.Height());
        return true;
      default:
        PutPixels(code);
        return true;
    }
  }

  void PutRun(int count, unsigned value) {
    const unsigned even = fourBits ? value >> 4U : value;
    const unsigned odd = fourBits ? value & 15U : value;
    for (int i = 0; i < count; ++i) Put(i % 2 == 0 ? even : odd);
  }

  void PutPixels(int count) {
    const int byteCount = fourBits ? (count + 1) / 2 : count;
    for (int i = 0; i < byteCount; ++i) {
      const unsigned value = Required();
      if (atEnd) return;
      if (!fourBits) {
        Put(value);
        continue;
      }
      Put(value >> 4U);
      if (2 * i + 1 < count) Put(value & 15U);
    }
    // Pixels are filled up to whole words.
    if (byteCount % 2 != 0) Required();
  }

  void Put(unsigned value) {
    if (x >= page.Width()) return;
    const auto row = page.MutableRow(topDown ? y : page.Height() - 1 - y);
    const auto place = static_cast<std::size_t>(x++);
    if (!fourBits)
      row[place] = static_cast<std::uint8_t>(value);
    else if (place % 2 == 0)
      row[place / 2] = static_cast<std::uint8_t>((row[place / 2] & 0x0FU) | value << 4U);
    else
      row[place / 2] = static_cast<std::uint8_t>((row[place / 2] & 0xF0U) | value);
  }

  // Reads a byte that must be there.
  std::uint8_t Required() {
    std::uint8_t byte = 0;
    atEnd = !bytes.Next(byte) || atEnd;
    return byte;
  }

  // A row ends at its end mark, which a full last row need not have.
  std::int32_t WholeRows() const { return y + (x >= page.Width() && y < page.Height() ? 1 : 0); }

  ByteReader bytes;
  bool topDown;
  Bitmap& page;
  bool fourBits;
  // The bytes ended too early.
  bool atEnd = false;
  std::int32_t x = 0;
  std::int32_t y = 0;
};

}  // namespace

std::int32_t DecodeRunLength(Stream& file, bool topDown, Bitmap& page) {
  return RunLengthDecoder(file, topDown, page).Run();
}

}  // namespace kw
