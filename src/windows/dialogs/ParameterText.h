#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "windows/dialogs/ParameterDialog.h"

namespace kw::windows {

// How a parameter dialog writes and reads.

// "BlurSigma" as a label: "Blur sigma".
std::string LabelOf(std::string_view name);
// The labels with a mark before one letter of each, if there is a letter left that no other label and none of `taken`
// (small letters) has.
std::vector<std::string> WithMnemonics(std::span<const Parameter> fields, std::string_view taken);
// A number with at most three decimals, with the user's decimal separator.
std::wstring NumberText(double value);
// The number that a text holds, with either separator; empty where it is none of the field's.
std::optional<double> NumberOf(const std::wstring& text, const Parameter& field);
// The field's range, what 0 stands for and the standard value, in a line.
std::wstring RangeText(const Parameter& field);
// What one step of the spin button and the slider adds.
double StepOf(const Parameter& field);

}  // namespace kw::windows
