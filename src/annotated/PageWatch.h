#pragma once

#include <cstdint>
#include <vector>

#include "components/base/Event.h"
#include "components/controls/Timer.h"
#include "components/platform/Desktop.h"
#include "drawing/DisplayItem.h"
#include "form/EditorForm.h"

namespace kw {

// Tells when the annotated page looks different. It looks ten times a second, so what changes together is told once,
// and a drag, a stroke or the opening of a document costs its listener little. It keeps no pixels.
class PageWatch {
public:
  // Both must outlive the watch. Raises OutOfMemory if there is no timer left.
  PageWatch(Desktop& desktop, const EditorForm& watched);

  Event<> Changed;

private:
  struct Look {
    PixelRect area;
    std::vector<DisplayItem> items;  // without their pictures
    std::vector<std::uint64_t> pictures;
    friend bool operator==(const Look&, const Look&) = default;
  };
  Look Present() const;
  void Compare();

  const EditorForm& form;
  Look last;
  Timer timer;
};

}  // namespace kw
