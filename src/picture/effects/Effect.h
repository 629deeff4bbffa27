#pragma once

#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "components/Bitmap.h"

namespace kw {

// A number that an effect works with.
struct EffectParameter {
  std::string_view name;
  double least;
  double greatest;
  double standard;
  // Only whole numbers are allowed.
  bool whole;
};

// One row of the table of effects. docs/effects.md says what each computes.
struct Effect {
  // The command that runs it.
  std::string_view command;
  // Changes the picture; `values` are those of the parameters, in their order and checked. The pixels are changed in
  // place where the effect allows it. An effect that throws has left the picture as it was. nullptr in the row
  // "Option", whose values are the settings of all other rows.
  void (*procedure)(Bitmap& picture, std::span<const double> values);
  std::span<const EffectParameter> parameters;
  // Bits per pixel of the result.
  std::string_view resultingDepth;
  // A shell should ask for the parameters before the effect runs.
  bool asks;
};

// The table, one row an effect, sorted by command.
std::span<const Effect> Effects();

// The row of a command, nullptr where there is none. Upper and lower case differ.
const Effect* FindEffect(std::string_view command);

// Runs an effect; "Option" changes no picture. Raises InvalidProcedureCall where `values` are not as many as the
// parameters or not in their ranges, ObjectVariableNotSet without a picture, OutOfMemory where the result does not fit;
// the picture is then as it was.
void ApplyEffect(const Effect& effect, Bitmap& picture, std::span<const double> values);

// The same with every parameter at its default.
void ApplyEffect(const Effect& effect, Bitmap& picture);

// Raises InvalidProcedureCall where ApplyEffect would for these values.
void RequireInRange(const Effect& effect, std::span<const double> values);

// The picture as an effect would make it with these values; raises as ApplyEffect does.
using EffectPreview = std::function<Bitmap(std::span<const double> values)>;

// What a shell offers to ask the user for parameters. `values` hold what is set now and take what the user chose; false
// means that the user cancelled. The preview lasts as long as the call.
using ParameterSource =
    std::function<bool(const Effect& effect, std::span<double> values, const EffectPreview& preview)>;

// The values that effects run with. They are the parameters of the effect "Option": all parameters of all other
// effects, in the order of the table.
class EffectSettings {
public:
  // Every parameter at its default.
  EffectSettings();

  std::span<const double> ValuesOf(const Effect& effect) const;
  // Raises InvalidProcedureCall for a value out of its range; then nothing is changed.
  void Set(const Effect& effect, std::span<const double> chosen);

private:
  std::vector<double> values;
};

// Runs an effect on the picture with the settings' values or, where the effect asks and there is somebody to ask, with
// those that `source` gives; they hold for this one time, except those of "Option", which become the settings. False
// where the user cancelled: nothing has changed then. Raises as ApplyEffect does; "Option" needs no picture.
bool RunEffect(const Effect& effect, Bitmap& picture, EffectSettings& settings, const ParameterSource& source);

}  // namespace kw
