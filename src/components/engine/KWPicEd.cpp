#include "components/engine/KWPicEd.h"

#include <memory>
#include <string>
#include <vector>

#include "components/base/RunTimeError.h"
#include "components/parameters/dialog/ParameterDialog.h"
#include "picture/effects/Preview.h"

namespace kw {
namespace {

ParameterQuestion QuestionOf(const Effect& effect, const Bitmap& picture) {
  ParameterQuestion question;
  question.title = effect.command;
  question.fields = effect.parameters;
  if (HoldsSettings(effect)) return question;
  question.makePreview = [&effect, &picture](std::int32_t width, std::int32_t height) -> ParameterQuestion::Preview {
    const auto preview = std::make_shared<EffectPreview>(effect, picture, PictureSize{width, height});
    return [preview](std::span<const double> values) { return preview->Of(values); };
  };
  return question;
}

}  // namespace

void KWPicEd::Apply(std::string_view command, std::int16_t nextDepth) {
  const Effect* effect = FindEffect(command);
  if (effect == nullptr) Raise(ErrorNumber::InvalidProcedureCall);
  const auto standing = settings.ValuesOf(*effect);
  std::vector<double> values(standing.begin(), standing.end());
  if (effect->asks) {
    // While the user is asked, the pixels are held, so that another picture has other pixels.
    const Bitmap asked = Current();
    if (asked.IsEmpty() && !HoldsSettings(*effect)) Raise(ErrorNumber::ObjectVariableNotSet);
    const ParameterQuestion question = QuestionOf(*effect, asked);
    if (!ParameterDialog(desktop, question, values).ShowModal() || !Current().SharesPixelsWith(asked)) return;
  }
  if (HoldsSettings(*effect)) {
    settings.Set(*effect, values);
  } else {
    PictureDocument::Apply(*effect, values, nextDepth);
  }
}

}  // namespace kw
