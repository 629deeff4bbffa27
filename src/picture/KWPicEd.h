#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "components/PictureEngine.h"
#include "picture/File.h"
#include "picture/PictureFormat.h"
#include "picture/effects/Effect.h"

namespace kw {

// The picture engine. Pages of a file of several are decoded when their pixels are first asked for, and a page that was
// not changed is saved in its own format with its coded pixels as they are; so splitting a document decodes nothing.
// No file stays open between two calls. A file that changed since it was loaded no longer gives pages (InvalidPicture).
// Saving over the loaded file makes the current picture the engine's one page.
//
// What asks for pixels (Width, Height, Current, BitsPerPixel, ConvertToBitsPerPixel, PrepareSignature, Apply, Save in
// another format) raises InvalidPicture where the selected page cannot be decoded. Load decodes the page of a one-page
// file, so there this cannot happen.
class KWPicEd : public PictureEngine {
public:
  bool Load(const std::string& path) override;
  std::string LastLoadError() const override { return lastLoadError; }
  // Of the loaded file; empty where the picture is the engine's own.
  std::string_view FormatName() const;
  // What of the current page could not be read, as whole sentences; empty where all of it was and as long as nothing
  // asked for the page's pixels.
  const std::string& Warning() const { return warning; }

  // What reading and saving keep to, from the next file on.
  struct Options {
    // The memory for the pixels of one page; a larger one cannot be read, and no effect makes one.
    ReadLimits reading;
    WriteOptions writing;
    // Bytes that all pages of a document may take in files where they are encoded anew: a small file can hold any
    // number of pages that are large in another format. What goes beyond raises DiskFull.
    std::uint64_t encodedBytes = std::uint64_t{4} << 30U;
  };
  Options& GetOptions() { return options; }

  std::int32_t PageCount() const override;
  void SelectPage(std::int32_t page) override;
  std::int16_t PageValue() const override { return pageValue; }

  void Save(const std::string& path) override;
  void SaveScratch(const std::string& path) override;
  void SavePage(const std::string& path) override;
  bool IsLoadedFrom(const std::string& path) const override;
  void RecoverPage(std::int32_t page) override;

  // Adds the current page to the end of the document `path`, whose format has to be one of several pages (fmf, TIFF); a
  // file that does not exist is made. The pages that it has stay untouched even where the machine stops meanwhile, and
  // of several processes one after the other adds its page. A page of such a format that was not changed keeps its
  // coded pixels. Raises InvalidProcedureCall for another format, InvalidPicture for a file that is not of its format,
  // and the errors of Save.
  void Append(const std::string& path);
  // The same, to a document that is being made.
  void AppendTo(PageAppender& target) const;

  std::int32_t Width() const override;
  std::int32_t Height() const override;
  const Bitmap& Current() const override;

  std::int16_t BitsPerPixel() const override;
  // A depth beyond 32 keeps all colours: 24, or 32 where the picture has that already. Raises InvalidProcedureCall for
  // a depth below 1.
  void ConvertToBitsPerPixel(std::int16_t& bitsPerPixel) override;

  void PrepareSignature() override;

  void Apply(std::string_view command) override;
  // Whom Apply asks for the parameters of the effects that are marked so; nobody at the start. Where the engine got
  // another picture while the user was asked, Apply does nothing.
  void AskParametersFrom(ParameterSource source) { parameterSource = std::move(source); }
  // The parameters that effects run with. The effect "Option" changes them too.
  EffectSettings& Settings() { return settings; }

  // Makes `picture` the current one; an operation on the picture ends with this. The engine then holds one page, which
  // no longer comes from a file. An empty picture empties the engine.
  void Replace(Bitmap picture);

private:
  // The loaded file.
  struct Document {
    std::string path;
    FileStamp stamp;
    const PictureFormat* format = nullptr;
    std::unique_ptr<PictureSource> source;
    // Bytes of its pages that were encoded anew, where it has several.
    mutable std::uint64_t encoded = 0;
    // The selected page is damaged, and `current` is what there is of it.
    bool isRecovered = false;
  };

  void Open(const std::string& path);
  void RequireUnchanged(const InputFile& file) const;
  bool SaveAsStored(Stream& to) const;
  void WriteAnew(const PictureFormat& format, Stream& to) const;
  void SaveAs(const PictureFormat* format, const std::string& path, Durability durability);

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
  // Counts the pictures that became the current one.
  std::uint64_t changes = 0;
  EffectSettings settings;
  ParameterSource parameterSource;
};

}  // namespace kw
