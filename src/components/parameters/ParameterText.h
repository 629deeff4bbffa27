#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "components/base/Parameter.h"

namespace kw {

// How a parameter dialog writes and reads; all text is UTF-8. `separator` is the user's decimal separator.

// "BlurSigma" as a label: "Blur sigma".
std::string LabelOf(std::string_view name);
// The labels, each with an ampersand before its mnemonic: the first letter that no label before it and none of `taken`
// (small letters) uses. A label without such a letter gets none.
std::vector<std::string> WithMnemonics(std::span<const Parameter> fields, std::string_view taken);
// A number with at most three decimals.
std::string NumberText(double value, std::string_view separator);
// Reads a number of the field; takes the user's separator, the point and the comma alike. Empty if the text is no
// number, or one that the field does not allow.
std::optional<double> NumberOf(std::string_view text, const Parameter& field, std::string_view separator);
// One line: the field's range, the meaning of 0 if it has one, and the standard value.
std::string RangeText(const Parameter& field, std::string_view separator);

}  // namespace kw
