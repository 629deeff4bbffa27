#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "components/base/Bitmap.h"
#include "components/base/Parameter.h"
#include "picture/PictureFormat.h"

namespace kw {

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
  std::span<const Parameter> parameters;
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

// The row of a command, nullptr if there is none. Upper and lower case differ.
const Effect* FindEffect(std::string_view command);

// True for "Option", whose values are those of all other effects.
bool HoldsSettings(const Effect& effect);

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

// The values that effects run with. They are the parameters of the effect "Option": all parameters of all other
// effects, in the order of the table.
class EffectSettings {
public:
  // Every parameter at its default.
  EffectSettings();

  std::span<const double> ValuesOf(const Effect& effect) const;
  // Sets the parameters of one effect; those of all effects if it is "Option". Raises InvalidProcedureCall for a value
  // out of its range; then nothing is changed.
  void Set(const Effect& effect, std::span<const double> chosen);

private:
  std::vector<double> values;
};

}  // namespace kw
