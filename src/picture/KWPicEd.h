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

  std::int32_t PageCount() const override;
  void SelectPage(std::int32_t page) override;
  std::int16_t PageValue() const override { return pageValue; }

  void Save(const std::string& path) override;

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
  };

  void Open(const std::string& path);
  void RequireUnchanged(const InputFile& file) const;
  bool SaveAsStored(OutputFile& to) const;

  // Empty once the picture was replaced.
  Document document;
  std::int32_t selected = 0;
  std::int16_t pageValue = 0;
  // The selected page; empty until it is asked for.
  mutable Bitmap current;
  std::string lastLoadError;
  // Counts the pictures that became the current one.
  std::uint64_t changes = 0;
  EffectSettings settings;
  ParameterSource parameterSource;
};

}  // namespace kw
