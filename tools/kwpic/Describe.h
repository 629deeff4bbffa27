#pragma once

#include <string>

#include "picture/effects/Effect.h"

namespace kw {

// A number as short as it can be written.
std::string Short(double number);

// Range and default of a parameter, in words.
std::string Describe(const Parameter& parameter);

// The table of effects, one line each and one for each parameter.
std::string DescribeEffects();
// The same as the table in docs/effects.md.
std::string MarkdownOfEffects();

// The usual extension of each format: "fmf, tif, ...".
std::string UsualExtensions();
// The extensions of the formats that hold several pages, all of them or the usual ones: ".fmf, .tif or .tiff".
enum class Which { Usual, All };
std::string DocumentExtensions(Which which);

}  // namespace kw
