#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "components/base/Bitmap.h"
#include "picture/File.h"
#include "picture/PictureFormat.h"
#include "picture/effects/Effect.h"

namespace kw {

// Reads the first page of an image file. Raises FileNotFound or InvalidPicture.
Bitmap LoadPicture(const std::string& path);

// One page of a file of any number of pages, to look at, to change and to save. Pages of a file of several are decoded
// when their pixels are first asked for, and a page that was not changed is saved in its own format with its coded
// pixels as they are; so splitting a document decodes nothing.
// No file stays open between two calls. A file that changed since it was loaded no longer gives pages (InvalidPicture).
// Saving over the loaded file makes the current picture the document's one page.
//
// No call takes a file that cannot be read at the moment for a damaged one: the errors of Save, from Load False.
//
// What asks for pixels (Width, Height, Current, BitsPerPixel, ConvertToBitsPerPixel, PrepareSignature, Apply, Save in
// another format) raises InvalidPicture if the selected page cannot be decoded. Load decodes the page of a one-page
// file, so this cannot happen there unless the options say otherwise.
class PictureDocument {
public:
  PictureDocument() = default;
  PictureDocument(const PictureDocument&) = delete;
  PictureDocument& operator=(const PictureDocument&) = delete;
  virtual ~PictureDocument() = default;

  // Opens the file at `path` (UTF-8), whose format is recognised by its content, and selects its first page. False,
  // with the document emptied, if it cannot be read; LastLoadError() then says why, unless there is no memory even for
  // that. Never throws.
  bool Load(const std::string& path);
  // As Load, for a caller that needs the pixels of the first page: also False if it cannot be decoded.
  bool LoadPage(const std::string& path);
  std::string LastLoadError() const { return lastLoadError; }
  // The format of the loaded file; empty if the picture does not come from a file.
  std::string_view FormatName() const;
  // What of the current page could not be read, as whole sentences; empty if all of it was and as long as nothing
  // asked for the page's pixels.
  const std::string& Warning() const { return warning; }

  // Limits and options of reading and saving, from the next file on.
  struct Options {
    // The memory for the pixels of one page; a larger one cannot be read, and no effect makes one.
    ReadLimits reading;
    WriteOptions writing;
    // Bytes that all pages of a document may take in files in which they are encoded anew: a small file can hold any
    // number of pages that are large in another format. What goes beyond raises DiskFull.
    std::uint64_t encodedBytes = std::uint64_t{4} << 30U;
    // A one-page file is decoded as a page of several is, when its pixels are first asked for.
    bool decodesWhenAsked = false;
  };
  Options& GetOptions() { return options; }

  // Pages of the opened file; 0 if nothing is open, 1 after an operation that replaced the picture by another.
  std::int32_t PageCount() const;
  // Makes page `page` (1 to PageCount()) the current picture. Raises SubscriptOutOfRange, or InvalidPicture if the page
  // cannot be read.
  void SelectPage(std::int32_t page);
  // The current page's bits per pixel as it is stored in the file.
  std::int16_t PageValue() const { return pageValue; }

  // Saves the current picture in the format of the path's extension. The file appears whole or not at all, also if the
  // machine stops meanwhile. Raises ObjectVariableNotSet without a picture, InvalidProcedureCall for an extension that
  // names no format, and the file errors (PathNotFound, PermissionDenied, DiskFull, PathFileAccessError).
  void Save(const std::string& path);
  // As Save, but does not wait for the disk: the file may be lost if the machine stops. `mark` follows the picture in
  // the file.
  void SaveScratch(const std::string& path, std::string_view mark);
  // As Save, for a page that becomes a file of its own: in the loaded file's own format if the extension names
  // none, and if it names JPEG but the page has one bit per pixel.
  void SavePage(const std::string& path);
  // Whether the file at `path` is the one that the pages come from, under whatever name.
  bool IsLoadedFrom(const std::string& path) const;
  // Makes what can be decoded of a damaged page the current picture; of a page of which nothing can, white paper of the
  // size that the file states. The other pages stay. Raises SubscriptOutOfRange, and InvalidPicture if there is no such
  // size.
  void RecoverPage(std::int32_t page);

  // Adds the current page to the end of the document `path`, whose format has to be one of several pages (fmf, TIFF); a
  // file that does not exist is made. The pages that it has stay untouched even if the machine stops meanwhile, and
  // of several processes one after the other adds its page. A page of such a format that was not changed keeps its
  // coded pixels. Raises InvalidProcedureCall for another format, InvalidPicture for a file that is not of its format,
  // and the errors of Save.
  void Append(const std::string& path);
  // As above, to a document that is being written.
  void AppendTo(PageAppender& target) const;

  // Size of the current picture in pixels; 0 without one.
  std::int32_t Width() const;
  std::int32_t Height() const;
  const Bitmap& Current() const;

  std::int16_t BitsPerPixel() const;
  // Brings the current picture to `bitsPerPixel`; if there is no such depth, takes the next one up and writes it back.
  // A depth beyond 32 keeps all colours: 24, or 32 if the picture has that already. Does nothing without a picture or
  // if it has that depth already. Raises InvalidProcedureCall for a depth below 1.
  void ConvertToBitsPerPixel(std::int16_t& bitsPerPixel);

  // Prepares a scanned signature for stamping: its paper becomes white.
  void PrepareSignature();

  // Runs an effect on the current picture with these values; "Option" changes no picture. Raises ObjectVariableNotSet
  // without a picture and the errors of ApplyEffect; the picture is then as it was.
  //
  // `nextDepth` is the depth that the caller brings the result to directly after it, by ConvertToBitsPerPixel; 0 if
  // there is none. The result may have that depth already, if this takes less time and memory: what comes of both calls
  // is the same.
  void Apply(const Effect& effect, std::span<const double> values, std::int16_t nextDepth = 0);

  // Makes `picture` the current one; an operation on the picture ends with this. The document then has one page, which
  // no longer comes from a file. An empty picture empties it.
  void Replace(Bitmap picture);

private:
  // The loaded file.
  struct Document {
    std::string path;
    FileStamp stamp;
    const PictureFormat* format = nullptr;
    std::unique_ptr<PictureSource> source;
    // Bytes of its pages that were encoded anew, if it has several.
    mutable std::uint64_t encoded = 0;
    // The selected page is damaged, and `current` is what there is of it.
    bool isRecovered = false;
  };

  void Open(const std::string& path);
  void AppendAnew(PageAppender& target) const;
  template <class Work>
  bool LoadBy(const Work& open);
  // Replaces the current picture by what change() makes of it. If that throws, it must leave the picture as it was.
  void Change(const std::function<void(Bitmap&)>& change);
  void RequireUnchanged(const InputFile& file) const;
  bool SaveAsStored(Stream& to) const;
  void WriteAnew(const PictureFormat& format, Stream& to) const;
  void SaveAs(const PictureFormat* format, const std::string& path, Durability durability, std::string_view mark = {});

  // Empty once the picture was replaced.
  Document document;
  std::int32_t selected = 0;
  std::int16_t pageValue = 0;
  // The selected page; empty until it is asked for.
  mutable Bitmap current;
  // Belongs to `current`.
  mutable std::string warning;
  Options options;
  std::string lastLoadError;
};

}  // namespace kw
