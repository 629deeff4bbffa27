#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>

#include "components/engine/KWPicEd.h"
#include "components/platform/Desktop.h"
#include "document/Document.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "trap/Procedure.h"

namespace kw {

// Prints pages of the open document. The page now shown is printed as the picture engine KWPic holds it, every other
// one from its page file; floating layers are in neither.
class Printing : private EditorContext {
public:
  // Everything passed in must outlive the printing.
  Printing(const EditorContext& context, Document& openDocument);

  // Shows the printer dialog and prints the pages that the user chose; returns when the job is handed over. Anything
  // may happen meanwhile; a second call then does nothing.
  void PrintPages();
  void chkCancel_Click();

private:
  class Job;
  // The document that was open at the start.
  struct Source {
    std::string path;
    std::set<std::int16_t> unwrittenPages;
    bool isSplit = false;  // into page files
  };
  struct Range {
    std::int16_t first = 0;
    std::int16_t last = 0;
  };

  Range AskForRange(Procedure& run);
  void PrintRange(Procedure& run, const Source& source, Range pages);
  void ShowCaption(Procedure& run, Range pages, std::int32_t page);
  bool PrintPage(Procedure& run, const Source& source, std::int16_t page);
  bool TakeShownPage(Procedure& run, Bitmap& picture);
  bool TakePageFile(Procedure& run, const Source& source, std::int16_t page, Bitmap& picture);
  // Called between two steps with what the scratch engine holds; empty for a rendering without a pause.
  using Pausing = std::function<void(const Bitmap& expected)>;
  Bitmap Render(const std::string& file, const Pausing& pause);
  bool Pause(Procedure& run);
  bool IsShown(const std::string& path, std::int16_t page) const;

  Document& document;
  bool isAtWork = false;    // from the dialog on to the end of the job
  bool isPrinting = false;  // cleared, it ends the loop
};

}  // namespace kw
