#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "components/base/Bitmap.h"
#include "picture/Stream.h"

namespace kw {

struct ReadLimits {
  // Bytes that the pixels of one page may take, with what its codec needs at once to decode them: a dictionary, the
  // coefficients of all scans. A tiny file can claim to hold any number of pixels. The address space of 32 bits has to
  // hold several such pages, and the host.
  std::uint64_t pageMemory = std::uint64_t{1} << (sizeof(void*) >= 8 ? 30U : 28U);
};

// Pages that a document may have: their numbers have 16 bits.
constexpr std::size_t MostPages = 32767;

struct WriteOptions {
  // 1 to 100; for JPEG.
  int jpegQuality = 90;
};

struct PageSize {
  std::uint64_t width = 0;
  std::uint64_t height = 0;
};

// What was found in a file when it was opened: its pages. It holds no open file; each operation is handed a stream of
// the same bytes. Pages count from 1; the caller keeps them in range. Everything raises InvalidPicture, with the reason
// as its description, where the bytes are not a sound picture or a page is larger than the limits allow.
class PictureSource {
public:
  PictureSource() = default;
  PictureSource(const PictureSource&) = delete;
  PictureSource& operator=(const PictureSource&) = delete;
  virtual ~PictureSource() = default;

  // At least 1.
  virtual std::int32_t PageCount() const { return 1; }
  // Bits of one pixel as they are stored, all its samples together. Does not decode the page.
  virtual std::int16_t StoredBitsPerPixel(Stream& file, std::int32_t page) = 0;
  // The size that the file states for a page, whatever its pixels are like; 0 where the format has one page only.
  virtual PageSize StatedSize(Stream& /*file*/, std::int32_t /*page*/) { return {}; }
  // Decodes a page. Its depth is the next one of Bitmap that holds the stored pixels. Of a page that is damaged or cut
  // off, what its codec can still decode is returned, as long as that is a whole row or more; the rest is empty paper
  // and `warning` says so. It is empty for a sound page.
  virtual Bitmap Read(Stream& file, std::int32_t page, std::string& warning) = 0;
  // Writes a file of the same format that holds this page alone, with its coded pixels as they are. False, with nothing
  // written, for a page that cannot be taken over so: it has to be read and written again.
  virtual bool Copy(Stream& file, std::int32_t page, Stream& to) = 0;
};

// Adds pages to the end of a document of several.
class PageAppender {
public:
  PageAppender() = default;
  PageAppender(const PageAppender&) = delete;
  PageAppender& operator=(const PageAppender&) = delete;
  virtual ~PageAppender() = default;

  // Adds the one page of a file that a format with an appender made (PictureFormat::write, PictureSource::Copy), with
  // its coded pixels as they are. False, with nothing written, where they mean nothing in this document: the page has
  // to be read and written again. Where it raises InvalidPicture, the document has its old pages still, and they are
  // whole.
  virtual bool Append(Stream& page) = 0;
};

// One row of the table of formats.
struct PictureFormat {
  std::string_view name;
  // In lower case, without the dot; unused places are empty.
  std::array<std::string_view, 3> extensions;
  // Tells by the first bytes of a file (all of it, or RecognisedBytes) whether it is of this format.
  bool (*recognises)(std::span<const std::uint8_t> head);
  std::unique_ptr<PictureSource> (*open)(Stream& file, const ReadLimits& limits);
  // Writes the picture in the depth nearest to its own that the format has. A failing stream shows in the stream;
  // raises InvalidPicture for a picture that the format cannot hold.
  void (*write)(const Bitmap& picture, Stream& to, const WriteOptions& options);
  // Goes on with the document in a stream that can be read and written, or begins one in an empty stream. nullptr for
  // formats of one page. Raises InvalidPicture for a stream that it cannot go on with.
  std::unique_ptr<PageAppender> (*append)(Stream& document);
};

constexpr std::size_t RecognisedBytes = 16;

// The row whose recogniser knows these first bytes, or null.
const PictureFormat* FormatOfContent(std::span<const std::uint8_t> head);
// The row with the extension of `path` (letter case is ignored), or null.
const PictureFormat* FormatOfPath(std::string_view path);

// A page to decode into. Raises InvalidPicture for a size below 1 or past the limits.
Bitmap NewPage(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits);
// The same with pixels of any value, for who decodes or whitens all of them.
Bitmap NewUnfilledPage(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits);
// The same checks alone.
void RequirePageFits(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits);

// Raises OutOfMemory where a change of a picture would make one of `bytes`, more than a page may have.
void RequireResultFits(std::uint64_t bytes, const ReadLimits& limits);

// Copies `count` bytes from `position` on. Raises InvalidPicture where either stream fails.
void CopyBytes(Stream& from, std::uint64_t position, std::uint64_t count, Stream& to);

}  // namespace kw
