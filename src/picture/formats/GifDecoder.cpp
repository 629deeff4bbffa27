#include "picture/formats/GifDecoder.h"

#include <cerrno>
#include <string>

#include "picture/Unreadable.h"
#include "picture/formats/GifCodes.h"

namespace kw {
namespace {

int ReadFile(GifFileType* codec, GifByteType* to, int count) {
  return static_cast<int>(static_cast<Stream*>(codec->UserData)->Read(to, static_cast<std::size_t>(count)));
}

[[noreturn]] void RaiseDamaged(int error) {
  if (error == D_GIF_ERR_NOT_ENOUGH_MEM) Raise(ErrorNumber::OutOfMemory);
  const char* text = GifErrorString(error);
  RaiseUnreadable(std::string("The GIF data is damaged or cut short: ") + (text != nullptr ? text : "unknown error") +
                  ".");
}

}  // namespace

GifDecoder::GifDecoder(Stream& stream) : file(stream) {
  int error = 0;
  if (!file.Seek(0)) RaiseUnreadable("The file cannot be read.");
  errno = 0;
  codec = DGifOpen(&file, ReadFile, &error);
  if (codec != nullptr) return;
  // The codec calls it a missing description of the screen.
  if (errno == ENOMEM) Raise(ErrorNumber::OutOfMemory);
  RaiseDamaged(error);
}

void GifDecoder::GoTo(std::uint64_t place) {
  if (!file.Seek(place)) RaiseUnreadable("The file cannot be read.");
}

bool GifDecoder::Next(GifFrame& frame) {
  frame = {};
  for (;;) {
    // Many files have no end mark; they end between two records.
    if (file.Position() == file.Size()) return false;
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    Require(DGifGetRecordType(codec, &record));
    if (record == TERMINATE_RECORD_TYPE) return false;
    if (record == EXTENSION_RECORD_TYPE) {
      ReadExtension(frame);
    } else if (record == IMAGE_DESC_RECORD_TYPE) {
      ReadDescription(frame);
      return true;
    }
  }
}

bool GifDecoder::SkipPixels(const GifFrame& frame) {
  int codeSize = 0;
  GifByteType* block = nullptr;
  if (DGifGetCode(codec, &codeSize, &block) == GIF_ERROR) return false;
  GifCodes codes(codeSize, std::uint64_t{frame.width} * frame.height);
  while (block != nullptr) {
    if (!codes.Take({block + 1, block[0]})) RaiseUnreadable("The GIF data is damaged: a code is out of range.");
    if (DGifGetCodeNext(codec, &block) == GIF_ERROR) return false;
  }
  return true;
}

const ColorMapObject* GifDecoder::Colours() const {
  const ColorMapObject* map = codec->Image.ColorMap != nullptr ? codec->Image.ColorMap : codec->SColorMap;
  if (map == nullptr) RaiseUnreadable("The GIF has no palette.");
  return map;
}

void GifDecoder::Require(int result) const {
  if (result == GIF_ERROR) RaiseDamaged(codec->Error);
}

void GifDecoder::ReadExtension(GifFrame& frame) {
  int function = 0;
  GifByteType* block = nullptr;
  Require(DGifGetExtension(codec, &function, &block));
  if (function == GRAPHICS_EXT_FUNC_CODE && block != nullptr) {
    GraphicsControlBlock control{};
    if (DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
      frame.transparent = control.TransparentColor;
      frame.disposal = control.DisposalMode;
    }
  }
  while (block != nullptr) Require(DGifGetExtensionNext(codec, &block));
}

void GifDecoder::ReadDescription(GifFrame& frame) {
  Require(DGifGetImageDesc(codec));
  // The library keeps a list of all frames and copies it for each new frame.
  GifFreeSavedImages(codec);
  codec->SavedImages = nullptr;
  codec->ImageCount = 0;
  const GifImageDesc& image = codec->Image;
  frame.left = static_cast<std::size_t>(image.Left);
  frame.top = static_cast<std::size_t>(image.Top);
  frame.width = static_cast<std::size_t>(image.Width);
  frame.height = static_cast<std::size_t>(image.Height);
  frame.interlaced = image.Interlace;
  if (frame.width == 0 || frame.height == 0) RaiseUnreadable("The GIF has a picture without pixels.");
}

}  // namespace kw
