#pragma once

#include <string_view>

#include "components/platform/Desktop.h"
#include "picture/PictureDocument.h"
#include "picture/effects/Effect.h"

namespace kw {

// The picture engine as the editor hosts it: its operations take no argument. It asks the user for the parameters of
// those effects whose rows say so.
class KWPicEd : public PictureDocument {
public:
  // The desktop must outlive the engine.
  explicit KWPicEd(Desktop& platform) : desktop(platform) {}

  // Runs the operation of that command ("Rotate", "Blur", ...) on the current picture; if the user cancels, or if the
  // engine got another picture while the user was asked, nothing changes. Raises InvalidProcedureCall for a name that
  // is no operation and the errors of PictureDocument::Apply; "Option" needs no picture.
  // `nextDepth` as there.
  void Apply(std::string_view command, std::int16_t nextDepth = 0);

  // The values that effects run with, and that the user is offered. The operation "Option" changes them.
  EffectSettings& Settings() { return settings; }

private:
  Desktop& desktop;
  EffectSettings settings;
};

}  // namespace kw
