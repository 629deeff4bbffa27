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
  // The most memory in bytes for the pixels of one page and what its codec needs to decode them (a dictionary, the
  // coefficients of all scans). A tiny file can claim any number of pixels. An address space of 32 bits has to hold
  // several such pages and the host.
  std::uint64_t pageMemory = std::uint64_t{1} << (sizeof(void*) >= 8 ? 30U : 28U);
  // The most bytes at once while a page is read: its pixels, a part or all of them in another form, and what the codec
  // keeps.
  std::uint64_t WorkMemory() const { return pageMemory / 16 * 23; }
};

// Raises InvalidPicture if reading a page takes so many bytes at once.
void RequireWorkFits(std::uint64_t bytes, const ReadLimits& limits);

// The most pages of a document: their numbers have 16 bits.
constexpr std::size_t MostPages = 32767;

struct WriteOptions {
  // 1 to 100; for JPEG.
  int jpegQuality = 90;
};

struct PageSize {
  std::uint64_t width = 0;
  std::uint64_t height = 0;
};

// What a file states about a page: the size and the resolution (dots per inch, 0 if there is none) of the upright page,
// and the bits of one pixel as they are stored, all its samples together.
struct PageHeader {
  PageSize size;
  std::int16_t bitsPerPixel = 0;
  double horizontalResolution = 0;
  double verticalResolution = 0;
};

// The pages that were found in a file when it was opened. It keeps no file open; each operation gets a stream of the
// same bytes. Pages count from 1; the caller keeps them in range. All operations raise InvalidPicture, with the reason
// as its description, if the bytes are not a sound picture or a page exceeds the limits.
class PictureSource {
public:
  PictureSource() = default;
  PictureSource(const PictureSource&) = delete;
  PictureSource& operator=(const PictureSource&) = delete;
  virtual ~PictureSource() = default;

  // At least 1.
  virtual std::int32_t PageCount() const { return 1; }
  // Decodes no pixels, so that damaged ones do not matter.
  virtual PageHeader Header(Stream& file, std::int32_t page) = 0;
  // Goes over the coded pixels of all pages, where the codec library would take unsound ones for sound.
  virtual void RequireSoundCodes(Stream& /*file*/) {}
  // The size in a header that is unsound otherwise; 0 for formats of one page.
  virtual PageSize StatedSize(Stream& /*file*/, std::int32_t /*page*/) { return {}; }
  // Decodes a page, to the next depth of Bitmap that holds the stored pixels. If a page is damaged or cut off, returns
  // what its codec can decode, provided that is a whole row or more; the rest is white and `warning` says so. `warning`
  // is empty for a sound page.
  virtual Bitmap Read(Stream& file, std::int32_t page, std::string& warning) = 0;
  // Writes a file of the same format that holds this page alone, with its coded pixels unchanged. Returns false and
  // writes nothing if the page cannot be copied so: it has to be decoded and encoded again.
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
  // its coded pixels unchanged. Returns false and writes nothing if they have no meaning in this document: the page has
  // to be decoded and encoded again. If it raises InvalidPicture, the document still has its old pages, all whole.
  virtual bool Append(Stream& page) = 0;
};

// One row of the table of formats.
struct PictureFormat {
  // In lower case, without the dot; the first one is the usual one, unused elements are empty.
  using Extensions = std::array<std::string_view, 3>;

  std::string_view name;
  Extensions extensions;
  // Whether a file is of this format, by its first bytes (RecognisedBytes, or fewer if the file is shorter).
  bool (*recognises)(std::span<const std::uint8_t> head);
  std::unique_ptr<PictureSource> (*open)(Stream& file, const ReadLimits& limits);
  // Writes the picture in the format's depth that is nearest to its own. The stream itself reports a failed write.
  // Raises InvalidPicture for a picture that the format cannot hold.
  void (*write)(const Bitmap& picture, Stream& to, const WriteOptions& options);
  // Continues the document in a stream that can be read and written, or begins one in an empty stream. nullptr for
  // formats of one page. Raises InvalidPicture if the stream cannot be continued.
  std::unique_ptr<PageAppender> (*append)(Stream& document);
};

constexpr std::size_t RecognisedBytes = 16;

// All formats, in the order in which a file is offered to them.
std::span<const PictureFormat* const> Formats();
// The format that recognises these first bytes, or null.
const PictureFormat* FormatOfContent(std::span<const std::uint8_t> head);
// The format with the extension of `path` (letter case is ignored), or null.
const PictureFormat* FormatOfPath(std::string_view path);

// A page to decode into. Raises InvalidPicture for a size below 1 or above the limits.
Bitmap NewPage(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits);
// As above, but the pixels are uninitialised. For callers that write every pixel.
Bitmap NewUnfilledPage(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits);
// Only the checks of the two above.
void RequirePageFits(std::uint64_t width, std::uint64_t height, int bitsPerPixel, const ReadLimits& limits);

// Raises OutOfMemory if `bytes`, the size of a changed picture, are more than a page may have.
void RequireResultFits(std::uint64_t bytes, const ReadLimits& limits);

// Copies `count` bytes from `position` on. Raises InvalidPicture if either stream fails.
void CopyBytes(Stream& from, std::uint64_t position, std::uint64_t count, Stream& to);

}  // namespace kw
