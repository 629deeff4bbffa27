#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "components/Bitmap.h"
#include "picture/PictureFormat.h"

namespace kw {

// A number that an effect works with.
struct EffectParameter {
  std::string_view name;
  double least;
  double greatest;
  double standard;
  // Only whole numbers are allowed.
  bool whole;
  // What the number counts, as a shell writes it behind it.
  std::string_view unit = {};
  // What 0 stands for where it is no number like the others.
  std::string_view zero = {};
  // Where the number only tells a few things apart: their names, from the least number upward.
  std::span<const std::string_view> choices = {};
};

// Width and height in pixels.
struct PictureSize {
  std::int32_t width;
  std::int32_t height;
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
  // Bytes of the largest picture that the effect makes. nullptr where none is larger than the one that it is given.
  std::uint64_t (*memory)(const Bitmap& picture, std::span<const double> values) = nullptr;
  // Moves pixels, so that what it does shows on a whole picture only.
  bool movesPixels = false;
  // Replaces the values that stand for what is found in a picture by what is found in this one. nullptr where none do.
  void (*find)(const Bitmap& picture, std::span<double> values) = nullptr;
};

// The table, one row an effect, sorted by command.
std::span<const Effect> Effects();

// The row of a command, nullptr where there is none. Upper and lower case differ.
const Effect* FindEffect(std::string_view command);

// The default of each parameter, in their order.
std::vector<double> StandardValues(const Effect& effect);

// Runs an effect; "Option" changes no picture. Raises InvalidProcedureCall where `values` are not as many as the
// parameters or not in their ranges, ObjectVariableNotSet without a picture, OutOfMemory where the result, or what is
// made on the way to it, does not fit into the memory of a page; the picture is then as it was.
void ApplyEffect(const Effect& effect, Bitmap& picture, std::span<const double> values, const ReadLimits& limits = {});

// The same with every parameter at its default.
void ApplyEffect(const Effect& effect, Bitmap& picture);

// Raises InvalidProcedureCall where ApplyEffect would for these values.
void RequireInRange(const Effect& effect, std::span<const double> values);

// What a shell offers to ask the user for parameters. `values` hold what is set now and take what the user chose; false
// means that the user cancelled. The picture is what the effect will work on; EffectPreview shows what becomes of it.
using ParameterSource = std::function<bool(const Effect& effect, std::span<double> values, const Bitmap& picture)>;

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

// The values that an effect runs with: the settings' or, where the effect asks and there is somebody to ask, those that
// `source` gives. Empty where the user cancelled. Raises ObjectVariableNotSet without a picture, except for "Option".
std::optional<std::vector<double>> ChooseValues(const Effect& effect, const Bitmap& picture,
                                                const EffectSettings& settings, const ParameterSource& source);

// Runs an effect on the picture with values that were chosen; they hold for this one time, except those of "Option",
// which become the settings. Raises as ApplyEffect does; "Option" needs no picture.
void RunEffect(const Effect& effect, Bitmap& picture, EffectSettings& settings, std::span<const double> values,
               const ReadLimits& limits = {});

}  // namespace kw
