#include "Describe.h"

#include <array>
#include <cstdio>

namespace kw {

std::string Short(double number) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.10g", number);
  return text.data();
}

std::string Describe(const Parameter& parameter) {
  const bool isWord = parameter.standard == 0 && !parameter.zero.empty();
  return Short(parameter.least) + " to " + Short(parameter.greatest) + (parameter.whole ? ", whole" : "") +
         " (default " + Short(parameter.standard) + (isWord ? ": " + std::string(parameter.zero) : "") + ")";
}

std::string DescribeEffects() {
  constexpr std::size_t column = 18;
  std::string text;
  for (const Effect& effect : Effects()) {
    std::string line(effect.command);
    line.resize(column, ' ');
    if (effect.procedure == nullptr) {
      text += line + "sets the parameters of the others; changes no picture\n";
      continue;
    }
    text += line + "bits per pixel: " + std::string(effect.resultingDepth) + "\n";
    for (const Parameter& parameter : effect.parameters) {
      std::string name = "  --" + std::string(parameter.name);
      name.resize(column, ' ');
      text += name + Describe(parameter) + "\n";
    }
  }
  return text;
}

}  // namespace kw
