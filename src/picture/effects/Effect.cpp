#include "picture/effects/Effect.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <string>

#include "components/base/RunTimeError.h"
#include "picture/effects/Families.h"

namespace kw {
namespace {

// The rows of all families and the row "Option".
class EffectTable {
public:
  EffectTable() {
    for (const auto& family :
         {DepthEffects(), FilterEffects(), MorphologyEffects(), PointEffects(), ResizeEffect(), RotateEffects()}) {
      rows.insert(rows.end(), family.begin(), family.end());
    }
    std::ranges::sort(rows, {}, &Effect::command);
    for (const Effect& row : rows) {
      for (const Parameter& parameter : row.parameters) {
        settings.push_back(parameter);
        settings.back().name = names.emplace_back(row.command).append(parameter.name);
      }
    }
    const Effect option{.command = "Option", .parameters = settings, .resultingDepth = SameDepth, .asks = true};
    rows.insert(std::ranges::upper_bound(rows, option.command, {}, &Effect::command), option);
  }

  std::span<const Effect> Rows() const { return rows; }

private:
  std::vector<Effect> rows;
  // The parameters of "Option": those of all other effects, each named <command><parameter>.
  std::vector<Parameter> settings;
  std::deque<std::string> names;
};

bool IsAllowed(const Parameter& parameter, double value) {
  // NaN compares false.
  return value >= parameter.least && value <= parameter.greatest && (!parameter.whole || std::floor(value) == value);
}

// The index of an effect's first value among those of "Option".
std::size_t OffsetOf(const Effect& effect) {
  std::size_t offset = 0;
  if (HoldsSettings(effect)) return offset;
  for (const Effect& row : Effects()) {
    if (row.command == effect.command) break;
    if (!HoldsSettings(row)) offset += row.parameters.size();
  }
  return offset;
}

void RequireApplicable(const Effect& effect, const Bitmap& picture, std::span<const double> values,
                       const ReadLimits& limits) {
  RequireInRange(effect, values);
  if (picture.IsEmpty()) Raise(ErrorNumber::ObjectVariableNotSet);
  if (effect.memory != nullptr) RequireResultFits(effect.memory(picture, values), limits);
}

}  // namespace

std::span<const Effect> Effects() {
  static const EffectTable table;
  return table.Rows();
}

bool HoldsSettings(const Effect& effect) { return effect.procedure == nullptr; }

std::vector<double> StandardValues(const Effect& effect) {
  std::vector<double> values;
  for (const Parameter& parameter : effect.parameters) values.push_back(parameter.standard);
  return values;
}

const Effect* FindEffect(std::string_view command) {
  const auto effects = Effects();
  const auto found = std::ranges::find(effects, command, &Effect::command);
  return found == effects.end() ? nullptr : &*found;
}

void RequireInRange(const Effect& effect, std::span<const double> values) {
  if (!std::ranges::equal(effect.parameters, values, IsAllowed)) Raise(ErrorNumber::InvalidProcedureCall);
}

void ApplyEffect(const Effect& effect, Bitmap& picture, std::span<const double> values, const ReadLimits& limits) {
  RequireApplicable(effect, picture, values, limits);
  if (!HoldsSettings(effect)) effect.procedure(picture, values);
}

void ApplyEffectKeepingDepth(const Effect& effect, Bitmap& picture, std::span<const double> values,
                             const ReadLimits& limits) {
  RequireApplicable(effect, picture, values, limits);
  const bool isDone = effect.keepingDepth != nullptr && effect.keepingDepth(picture, values);
  if (!isDone && !HoldsSettings(effect)) effect.procedure(picture, values);
}

void ApplyEffect(const Effect& effect, Bitmap& picture) { ApplyEffect(effect, picture, StandardValues(effect)); }

EffectSettings::EffectSettings() : values(StandardValues(*FindEffect("Option"))) {}

std::span<const double> EffectSettings::ValuesOf(const Effect& effect) const {
  return std::span(values).subspan(OffsetOf(effect), effect.parameters.size());
}

void EffectSettings::Set(const Effect& effect, std::span<const double> chosen) {
  RequireInRange(effect, chosen);
  std::ranges::copy(chosen, values.begin() + static_cast<std::ptrdiff_t>(OffsetOf(effect)));
}

}  // namespace kw
