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
  // Changes the picture, in place if the effect allows it. `values` are the values of the parameters, in their order
  // and checked. If it throws, the picture is as it was. nullptr in the row "Option", whose values are the settings of
  // all other rows.
  void (*procedure)(Bitmap& picture, std::span<const double> values) = nullptr;
  std::span<const Parameter> parameters = {};
  // Bits per pixel of the result.
  std::string_view resultingDepth;
  // A shell should ask for the parameters before the effect runs.
  bool asks = false;
  // Bytes of the largest picture that the effect makes. nullptr if none is larger than the given picture.
  std::uint64_t (*memory)(const Bitmap& picture, std::span<const double> values) = nullptr;
  // Moves pixels, so that only the whole picture shows what the effect does.
  bool movesPixels = false;
  // Replaces the values that mean "find it in the picture" by what is found in this picture. nullptr if there are none.
  void (*find)(const Bitmap& picture, std::span<double> values) = nullptr;
  // Changes the picture as the procedure and then ToDepth do that gives the picture its old depth again, in one step.
  // False, with the picture as it was, if there is no such step for this picture. nullptr if there never is.
  bool (*keepingDepth)(Bitmap& picture, std::span<const double> values) = nullptr;
};

// The table, one row an effect, sorted by command.
std::span<const Effect> Effects();

// The row of a command, nullptr if there is none. Case-sensitive.
const Effect* FindEffect(std::string_view command);

// True for "Option", whose values are those of all other effects.
bool HoldsSettings(const Effect& effect);

// The default of each parameter, in their order.
std::vector<double> StandardValues(const Effect& effect);

// Runs an effect; "Option" changes no picture. Raises InvalidProcedureCall if `values` do not match the parameters in
// number or range, ObjectVariableNotSet without a picture, OutOfMemory if the result or an intermediate picture exceeds
// the memory of a page. After an error the picture is as it was.
void ApplyEffect(const Effect& effect, Bitmap& picture, std::span<const double> values, const ReadLimits& limits = {});

// Runs an effect for a caller that next brings the result to the depth of the picture by ToDepth: it has that depth
// already if that is less work. Otherwise as ApplyEffect.
void ApplyEffectKeepingDepth(const Effect& effect, Bitmap& picture, std::span<const double> values,
                             const ReadLimits& limits = {});

// ApplyEffect with every parameter at its default.
void ApplyEffect(const Effect& effect, Bitmap& picture);

// Raises InvalidProcedureCall if ApplyEffect would for these values.
void RequireInRange(const Effect& effect, std::span<const double> values);

// The settings: the values that effects run with. They are the parameters of "Option", that is, all parameters of all
// other effects, in the order of the table.
class EffectSettings {
public:
  // Every parameter at its default.
  EffectSettings();

  std::span<const double> ValuesOf(const Effect& effect) const;
  // Sets the parameters of one effect, or of all effects if it is "Option". Raises InvalidProcedureCall for a value out
  // of its range; then nothing is changed.
  void Set(const Effect& effect, std::span<const double> chosen);

private:
  std::vector<double> values;
};

}  // namespace kw
