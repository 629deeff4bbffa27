#pragma once

#include <windows.h>

#include <cstddef>
#include <span>

#include "components/platform/ParameterQuestion.h"

namespace kw::windows {

// Asks for the numbers in a modal dialog: a field for each with a spin button and a slider, the preview beside them.
// Enter takes the values, Escape cancels, "Defaults" brings back the standard ones. `values` holds one value a field;
// it takes the chosen ones. False where the user cancelled, or the owner went; the values are then as they were.
// Raises OutOfMemory where the system gives no window.
bool AskParameters(HWND owner, const ParameterQuestion& question, std::span<double> values);

// The dialog's controls, for those that look for them: the parts of field i have FieldId(i) + a part.
namespace parameter_dialog {
constexpr int Defaults = 100;
constexpr int Picture = 101;
constexpr int Message = 102;
enum Part : int { LabelPart, NumberPart, SpinPart, SliderPart, UnitPart, PartCount };
constexpr int FieldId(std::size_t field, Part part) { return 200 + static_cast<int>(field) * PartCount + part; }
}  // namespace parameter_dialog

}  // namespace kw::windows
