#include "picture/PictureDocument.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <utility>

#include "components/base/Files.h"
#include "components/base/RunTimeError.h"
#include "picture/Depth.h"
#include "picture/LimitedStream.h"
#include "picture/OpenedPicture.h"
#include "picture/Signature.h"
#include "picture/Unreadable.h"
#include "picture/formats/Formats.h"

namespace kw {

Bitmap LoadPicture(const std::string& path) {
  if (LookUpFile(path).empty()) Raise(ErrorNumber::FileNotFound);
  PictureDocument document;
  if (!document.Load(path)) Raise(ErrorNumber::InvalidPicture);
  return document.Current();
}

template <class Work>
bool PictureDocument::LoadBy(const Work& open) {
  const auto tell = [this](const char* reason) {
    // What was read is given back first: the reason needs memory, too.
    Replace({});
    try {
      lastLoadError = reason;
    } catch (const std::bad_alloc&) {
      lastLoadError.clear();
    }
  };
  lastLoadError.clear();
  Replace({});
  try {
    open();
    return true;
  } catch (const std::bad_alloc&) {
    tell("There is not enough memory for the picture.");
  } catch (const std::exception& error) {
    tell(error.what());
  }
  return false;
}

bool PictureDocument::Load(const std::string& path) {
  return LoadBy([&] { Open(path); });
}

bool PictureDocument::LoadPage(const std::string& path) {
  return LoadBy([&] {
    Open(path);
    Current();
  });
}

void PictureDocument::Open(const std::string& path) {
  OpenedPicture opened(path, options.reading);
  std::int16_t bits = 0;
  TellingFailures(opened.file, [&] {
    opened.source->RequireSoundCodes(opened.file);
    bits = opened.source->Header(opened.file, 1).bitsPerPixel;
    if (opened.source->PageCount() == 1 && !options.decodesWhenAsked) {
      current = opened.source->Read(opened.file, 1, warning);
    }
  });
  document = {path, opened.file.Stamp(), opened.format, std::move(opened.source)};
  selected = 1;
  pageValue = bits;
}

void PictureDocument::RequireUnchanged(const InputFile& file) const {
  if (file.Stamp() != document.stamp) RaiseUnreadable("The file has changed since it was opened.");
}

std::string_view PictureDocument::FormatName() const {
  return document.format == nullptr ? std::string_view() : document.format->name;
}

std::int32_t PictureDocument::PageCount() const {
  if (document.source != nullptr) return document.source->PageCount();
  return current.IsEmpty() ? 0 : 1;
}

void PictureDocument::SelectPage(std::int32_t page) {
  if (page < 1 || page > PageCount()) Raise(ErrorNumber::SubscriptOutOfRange);
  // If there is only one page, it is selected already.
  if (document.source == nullptr || (page == selected && !current.IsEmpty())) return;
  InputFile file(document.path);
  RequireUnchanged(file);
  std::int16_t bits = 0;
  TellingFailures(file, [&] { bits = document.source->Header(file, page).bitsPerPixel; });
  selected = page;
  pageValue = bits;
  current = {};
  warning.clear();
  document.isRecovered = false;
}

void PictureDocument::RecoverPage(std::int32_t page) {
  if (page < 1 || page > PageCount()) Raise(ErrorNumber::SubscriptOutOfRange);
  if (document.source == nullptr) return;
  InputFile file(document.path);
  RequireUnchanged(file);
  Bitmap picture;
  std::string missing;
  try {
    TellingFailures(file, [&] { picture = document.source->Read(file, page, missing); });
  } catch (const RunTimeError& error) {
    if (error.Number() != static_cast<std::int32_t>(ErrorNumber::InvalidPicture)) throw;
    missing = error.Description();
    PageSize size;
    TellingFailures(file, [&] { size = document.source->StatedSize(file, page); });
    picture = NewUnfilledPage(size.width, size.height, 1, options.reading);
    for (std::int32_t y = 0; y < picture.Height(); ++y) std::ranges::fill(picture.MutableRow(y), std::uint8_t{0xFF});
  }
  selected = page;
  current = std::move(picture);
  warning = std::move(missing);
  pageValue = static_cast<std::int16_t>(current.BitsPerPixel());
  document.isRecovered = true;
}

const Bitmap& PictureDocument::Current() const {
  if (current.IsEmpty() && document.source != nullptr) {
    InputFile file(document.path);
    RequireUnchanged(file);
    std::string missing;
    Bitmap picture;
    TellingFailures(file, [&] { picture = document.source->Read(file, selected, missing); });
    current = std::move(picture);
    warning = std::move(missing);
  }
  return current;
}

std::int32_t PictureDocument::Width() const { return Current().Width(); }

std::int32_t PictureDocument::Height() const { return Current().Height(); }

std::int16_t PictureDocument::BitsPerPixel() const { return static_cast<std::int16_t>(Current().BitsPerPixel()); }

void PictureDocument::Replace(Bitmap picture) {
  document = {};
  selected = picture.IsEmpty() ? 0 : 1;
  pageValue = static_cast<std::int16_t>(picture.BitsPerPixel());
  current = std::move(picture);
  warning.clear();
}

void PictureDocument::ConvertToBitsPerPixel(std::int16_t& bitsPerPixel) {
  const Bitmap& picture = Current();
  if (picture.IsEmpty()) return;
  if (bitsPerPixel < 1) Raise(ErrorNumber::InvalidProcedureCall);
  constexpr std::array<int, 5> depths{1, 4, 8, 24, 32};
  const auto* next = std::ranges::lower_bound(depths, bitsPerPixel);
  const int depth = next != depths.end() ? *next : std::max(picture.BitsPerPixel(), 24);
  bitsPerPixel = static_cast<std::int16_t>(depth);
  if (depth == picture.BitsPerPixel()) return;
  RequireResultFits(PixelMemory(picture.Width(), picture.Height(), depth), options.reading);
  Replace(ToDepth(picture, depth));
}

void PictureDocument::PrepareSignature() {
  if (Current().IsEmpty()) Raise(ErrorNumber::ObjectVariableNotSet);
  Change([](Bitmap& picture) { WhitenPaper(picture); });
}

void PictureDocument::Apply(const Effect& effect, std::span<const double> values, std::int16_t nextDepth) {
  if (HoldsSettings(effect)) return RequireInRange(effect, values);
  const bool keepsDepth = Current().BitsPerPixel() == nextDepth;
  Change([&](Bitmap& picture) {
    if (keepsDepth) {
      ApplyEffectKeepingDepth(effect, picture, values, options.reading);
    } else {
      ApplyEffect(effect, picture, values, options.reading);
    }
  });
}

void PictureDocument::Change(const std::function<void(Bitmap&)>& change) {
  // If nobody else holds the pixels, they are changed in place.
  Bitmap picture = std::exchange(current, {});
  try {
    change(picture);
  } catch (...) {
    current = std::move(picture);
    throw;
  }
  Replace(std::move(picture));
}

bool PictureDocument::SaveAsStored(Stream& to) const {
  if (document.isRecovered) return false;
  std::unique_ptr<InputFile> file;
  try {
    file = std::make_unique<InputFile>(document.path);
    RequireUnchanged(*file);
  } catch (const RunTimeError&) {
    // The file is gone or was replaced. The page can still be saved if it was decoded before.
    if (current.IsEmpty()) throw;
    return false;
  }
  bool isCopied = false;
  TellingFailures(*file, [&] { isCopied = document.source->Copy(*file, selected, to); });
  return isCopied;
}

void PictureDocument::Save(const std::string& path) { SaveAs(FormatOfPath(path), path, Durability::Lasting); }

void PictureDocument::SaveScratch(const std::string& path, std::string_view mark) {
  SaveAs(FormatOfPath(path), path, Durability::Passing, mark);
}

void PictureDocument::SavePage(const std::string& path) {
  const PictureFormat* format = FormatOfPath(path);
  const bool isUnfit = format == &JpegFormat && pageValue == 1;
  SaveAs((format == nullptr || isUnfit) && document.format != nullptr ? document.format : format, path,
         Durability::Lasting);
}

bool PictureDocument::IsLoadedFrom(const std::string& path) const {
  return document.source != nullptr && IsSameFile(path, document.path);
}

void PictureDocument::SaveAs(const PictureFormat* format, const std::string& path, Durability durability,
                             std::string_view mark) {
  if (PageCount() == 0) Raise(ErrorNumber::ObjectVariableNotSet);
  if (format == nullptr) Raise(ErrorNumber::InvalidProcedureCall);
  // No more pages can be read from a file that is about to be replaced. The current picture stays.
  const bool overItself = document.source != nullptr && IsSameFile(path, document.path);
  if (overItself) Current();
  OutputFile file(path, durability);
  TellingFailures(file, [&] {
    if (document.format != format || !SaveAsStored(file)) WriteAnew(*format, file);
    if (!mark.empty() && file.Seek(file.Size())) file.Write(mark.data(), mark.size());
  });
  file.Commit();
  if (overItself) document = {};
}

// The pages of one document share the limit; a single page has all of it.
void PictureDocument::WriteAnew(const PictureFormat& format, Stream& to) const {
  const Bitmap& picture = Current();
  const bool isOneOfSeveral = PageCount() > 1;
  LimitedStream limited(to, options.encodedBytes - std::min(document.encoded, options.encodedBytes));
  const auto count = [&] {
    if (isOneOfSeveral) document.encoded += limited.Size();
  };
  try {
    format.write(picture, limited, options.writing);
  } catch (...) {
    count();
    limited.RaiseIfFull();
    throw;
  }
  count();
  limited.RaiseIfFull();
}

void PictureDocument::AppendTo(PageAppender& target) const {
  if (PageCount() == 0) Raise(ErrorNumber::ObjectVariableNotSet);
  if (document.format != nullptr && document.format->append != nullptr) {
    MemoryFile stored;
    bool isAppended = false;
    TellingFailures(stored, [&] { isAppended = SaveAsStored(stored) && target.Append(stored); });
    if (isAppended) return;
  }
  AppendAnew(target);
}

void PictureDocument::AppendAnew(PageAppender& target) const {
  MemoryFile page;
  TellingFailures(page, [&] { WriteAnew(TiffFormat, page); });
  if (!target.Append(page)) RaiseUnreadable("The page cannot be added to the document.");
}

void PictureDocument::Append(const std::string& path) {
  const PictureFormat* format = FormatOfPath(path);
  if (format == nullptr || format->append == nullptr) Raise(ErrorNumber::InvalidProcedureCall);
  // No page can be read from a file that is being changed, so the current page is decoded first.
  const bool isToItself = document.source != nullptr && IsSameFile(path, document.path);
  if (isToItself) Current();
  const auto appendTo = [&](FileStream& file) {
    TellingFailures(file, [&] {
      const auto target = format->append(file);
      if (isToItself)
        AppendAnew(*target);
      else
        AppendTo(*target);
    });
  };
  for (;;) {
    if (const auto existing = ChangedFile::Open(path)) {
      appendTo(*existing);
      existing->Finish();
      // The pages are those of the file as it was.
      if (isToItself) Replace(Bitmap(current));
      return;
    }
    // Another process may create the document meanwhile; then the page is appended to it.
    OutputFile made(path);
    appendTo(made);
    if (made.CommitNew()) return;
  }
}

}  // namespace kw
