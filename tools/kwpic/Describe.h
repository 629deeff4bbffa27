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

}  // namespace kw
