#pragma once

#include <windows.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "components/Bitmap.h"

namespace kw::windows {

// A number that the user is asked for.
struct ParameterField {
  std::string name;
  double least = 0;
  double greatest = 0;
  double standard = 0;
  bool isWhole = false;
  std::string unit{};  // written behind the number
  std::string zero{};  // what 0 stands for, if it is no number like the others
  // Names of the numbers from the least upward; where there are some, the user chooses one of them.
  std::vector<std::string> choices{};
};

struct ParameterQuestion {
  // Gives the picture that the values lead to, no larger than the two sizes in pixels; may raise RunTimeError, and then
  // there is no picture.
  using Preview = std::function<Bitmap(std::span<const double> values)>;

  std::string title;
  std::vector<ParameterField> fields;
  // Asked for once the size in pixels is known; may be slow, and is called under the hourglass. Empty: no preview.
  std::function<Preview(int width, int height)> makePreview{};
};

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
