#pragma once

#include "components/base/Bitmap.h"
#include "components/platform/Desktop.h"
#include "picture/PictureDocument.h"

namespace kw {

// The bitmap file that hands a picture from one component to another (GetTempImagePath). All controls of a process that
// have one work folder have one such file, whatever threads they live on; so each call here holds a lock while it uses
// the file. No call handles messages.
//
// The file ends with a mark: the machine's name and the number of the process.
class ScratchBitmap {
public:
  explicit ScratchBitmap(Desktop& platform) : desktop(platform) {}

  // Writes the engine's picture. If the file is another one directly after that, reads it. What comes back is the
  // engine's picture, whoever else wrote the file. Raises the errors of PictureDocument::Save and of LoadPicture.
  Bitmap Pass(PictureDocument& engine);
  // The same, then removes the file. The picture is handed over before that, which may raise the errors of Remove().
  void PassAndRemove(PictureDocument& engine, Bitmap& picture);
  // The two halves of Pass(). Between them another control may write the file or remove it.
  void Write(PictureDocument& engine);
  Bitmap Read();

  // Raises the errors of Desktop::RemoveFile.
  void Remove();
  // Removes what processes of this machine that are gone left in the work folder. A file without the mark is not
  // touched.
  void RemoveLeftovers();

private:
  Desktop& desktop;
};

}  // namespace kw
