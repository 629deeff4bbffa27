#pragma once

#include <windows.h>

#include <cstddef>
#include <span>

#include "components/platform/ParameterQuestion.h"

namespace kw::windows {

// Shows a modal dialog for the parameters: a field with a spin button and a slider for each, and the preview beside
// them. Enter accepts the values, Escape cancels, "Defaults" restores the standard values. `values` holds one value for
// each field and takes the chosen ones. Returns false, with `values` unchanged, if the user cancelled or the owner was
// destroyed. Raises OutOfMemory if the system cannot create the window.
bool AskParameters(HWND owner, const ParameterQuestion& question, std::span<double> values);

// The ids of the dialog's controls. Part p of field i has the id FieldId(i, p).
namespace parameter_dialog {
constexpr int Defaults = 100;
constexpr int Picture = 101;
constexpr int Message = 102;
enum Part : int { LabelPart, NumberPart, SpinPart, SliderPart, UnitPart, PartCount };
constexpr int FieldId(std::size_t field, Part part) { return 200 + static_cast<int>(field) * PartCount + part; }
}  // namespace parameter_dialog

}  // namespace kw::windows
