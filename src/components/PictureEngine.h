#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "components/Bitmap.h"

namespace kw {

// What the editor requires of a picture engine: it holds one page of one file.
class PictureEngine {
public:
  PictureEngine() = default;
  PictureEngine(const PictureEngine&) = delete;
  PictureEngine& operator=(const PictureEngine&) = delete;
  virtual ~PictureEngine() = default;

  // Opens the file at `path` (UTF-8), whose format is recognised by its content, and selects its first page. False,
  // with the engine emptied, where it cannot be read; LastLoadError() then says why. Never throws.
  virtual bool Load(const std::string& path) = 0;
  virtual std::string LastLoadError() const = 0;

  // Pages of the opened file; 0 when nothing is open, 1 after an operation that replaced the picture by one of its own.
  virtual std::int32_t PageCount() const = 0;
  // Makes page `page` (1 to PageCount()) the current picture. Raises SubscriptOutOfRange, or InvalidPicture where the
  // page cannot be read.
  virtual void SelectPage(std::int32_t page) = 0;
  // The per-page value: the current page's bits per pixel as it is stored in the file.
  virtual std::int16_t PageValue() const = 0;

  // Saves the current picture in the format of the path's extension. The file appears whole or not at all, also where
  // the machine stops meanwhile. Raises
  // ObjectVariableNotSet without a picture, InvalidProcedureCall for an extension that names no format, and the file
  // errors (PathNotFound, PermissionDenied, DiskFull, PathFileAccessError).
  virtual void Save(const std::string& path) = 0;
  // The same for a file that need not outlive the machine's next start: nothing waits for the disk.
  virtual void SaveScratch(const std::string& path) = 0;

  // The same for a page that becomes a file of its own: in the loaded file's own format where the extension names none,
  // and where it names JPEG but the page has one bit per pixel.
  virtual void SavePage(const std::string& path) = 0;
  // Whether the file at `path` is the one that the pages come from, under whatever name.
  virtual bool IsLoadedFrom(const std::string& path) const = 0;
  // Makes what can be decoded of a damaged page the current picture; of a page of which nothing can, white paper of the
  // size that the file states. The other pages stay. Raises SubscriptOutOfRange, and InvalidPicture where there is no
  // such size.
  virtual void RecoverPage(std::int32_t page) = 0;

  // Size of the current picture in pixels; 0 without one.
  virtual std::int32_t Width() const = 0;
  virtual std::int32_t Height() const = 0;
  virtual const Bitmap& Current() const = 0;

  virtual std::int16_t BitsPerPixel() const = 0;
  // Brings the current picture to `bitsPerPixel`; where the engine has no such depth it takes the next one up and
  // writes it back. Does nothing without a picture or when it has that depth already.
  virtual void ConvertToBitsPerPixel(std::int16_t& bitsPerPixel) = 0;

  // Prepares a scanned signature for stamping: its paper becomes white.
  virtual void PrepareSignature() = 0;

  // Runs the engine's operation of that command name ("Rotate", "Blur", ...) on the current picture, with the engine's
  // own parameters or those that its user gives; where the user cancels, nothing changes. Raises InvalidProcedureCall
  // for a name that is no operation, ObjectVariableNotSet without a picture.
  virtual void Apply(std::string_view command) = 0;
};

}  // namespace kw
