#include "activex/EffectQuestion.h"

#include <memory>
#include <string>

#include "picture/effects/Preview.h"

namespace kw::activex {

windows::ParameterQuestion QuestionOf(const Effect& effect, const Bitmap& picture) {
  windows::ParameterQuestion question;
  question.title = effect.command;
  for (const EffectParameter& parameter : effect.parameters) {
    question.fields.push_back({std::string(parameter.name),
                               parameter.least,
                               parameter.greatest,
                               parameter.standard,
                               parameter.whole,
                               std::string(parameter.unit),
                               std::string(parameter.zero),
                               {parameter.choices.begin(), parameter.choices.end()}});
  }
  // Settings change no picture.
  if (effect.procedure == nullptr) return question;
  question.makePreview = [&effect, &picture](int width, int height) -> windows::ParameterQuestion::Preview {
    const auto preview = std::make_shared<EffectPreview>(effect, picture, PictureSize{width, height});
    return [preview](std::span<const double> values) { return preview->Of(values); };
  };
  return question;
}

}  // namespace kw::activex
