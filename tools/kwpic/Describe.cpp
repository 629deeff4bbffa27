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

std::string MarkdownOfEffects() {
  std::string text = "| Command | Parameters | Bits per pixel of the result |\n|---|---|---|\n";
  for (const Effect& effect : Effects()) {
    std::string parameters;
    if (effect.procedure == nullptr) {
      parameters = " every parameter of the others, named `<command><parameter>`";
    } else {
      for (const Parameter& parameter : effect.parameters) {
        if (!parameters.empty()) parameters += ";";
        parameters += " `" + std::string(parameter.name) + "` " + Describe(parameter);
      }
    }
    text +=
        "| `" + std::string(effect.command) + "` |" + parameters + " | " + std::string(effect.resultingDepth) + " |\n";
  }
  return text;
}

std::string UsualExtensions() {
  std::string text;
  for (const PictureFormat* format : Formats()) {
    if (!text.empty()) text += ", ";
    text += format->extensions.front();
  }
  return text;
}

std::string DocumentExtensions(Which which) {
  std::vector<std::string> extensions;
  for (const PictureFormat* format : Formats()) {
    if (format->append == nullptr) continue;
    for (const std::string_view extension : format->extensions) {
      if (!extension.empty()) extensions.push_back("." + std::string(extension));
      if (which == Which::Usual) break;
    }
  }
  std::string text;
  for (std::size_t i = 0; i < extensions.size(); ++i) {
    if (i != 0) text += i + 1 == extensions.size() ? " or " : ", ";
    text += extensions[i];
  }
  return text;
}

}  // namespace kw
