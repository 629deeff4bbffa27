#include "CommandLine.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "Describe.h"
#include "Libraries.h"
#include "Licences.h"

namespace kw {
namespace {

using Command = Request::Command;

bool SameName(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

// Whether it can be applied: what only holds the settings of others changes no picture.
bool IsApplied(const Effect& effect) { return effect.procedure != nullptr; }

// Empty for a value that the parameter may have.
std::string ProblemWith(const std::string& text, const Parameter& parameter) {
  const char* const allowed = parameter.whole ? "+-0123456789" : "+-.0123456789eE";
  double value = 0;
  if (text.find_first_not_of(allowed) == std::string::npos && CLI::detail::lexical_cast(text, value) &&
      value >= parameter.least && value <= parameter.greatest) {
    return {};
  }
  return std::string(parameter.whole ? "a whole number" : "a number") + " from " + Short(parameter.least) + " to " +
         Short(parameter.greatest) + " is needed";
}

// The library would only say that something is missing.
void RequireKnownNames(const Arguments& arguments) {
  const auto isName = [](const std::string& argument) { return !argument.empty() && argument.front() != '-'; };
  if (arguments.empty()) throw UsageError{"a command is needed; see kwpic --help"};
  constexpr std::array<std::string_view, 6> commands{"info", "split", "join", "convert", "apply", "effects"};
  if (isName(arguments[0]) && std::ranges::find(commands, arguments[0]) == commands.end()) {
    throw UsageError{"there is no command '" + arguments[0] + "'; see kwpic --help"};
  }
  if (arguments[0] != "apply") return;
  if (arguments.size() < 2) throw UsageError{"an effect is needed; see kwpic effects"};
  const auto isMeant = [&](const Effect& effect) {
    return IsApplied(effect) && SameName(effect.command, arguments[1]);
  };
  if (isName(arguments[1]) && std::ranges::none_of(Effects(), isMeant)) {
    throw UsageError{"there is no effect '" + arguments[1] + "' to apply; see kwpic effects"};
  }
}

// The command `apply` has a command of its own for each effect, with the effect's parameters as options.
class Parser {
public:
  Parser() : app("Pictures and documents, converted and changed.", "kwpic") {
    app.require_subcommand(1);
    // A path may begin with a slash on Windows, too.
    app.allow_windows_style_options(false);
    app.set_version_flag("--version", "kwpic " KW_VERSION "\n" + Libraries());
    // Shown as the version is.
    app.add_flag_callback(
        "--licences", [] { throw CLI::CallForVersion(Licences(), 0); }, "Show its licence and those of its libraries");
    AddFileCommands();
    AddConvert();
    AddApply();
    CLI::App* effects = Add(app, "effects", "List the effects with their parameters.", Command::Effects);
    effects->add_flag("--markdown", request.isMarkdown, "As the table in docs/effects.md");
  }

  std::optional<Request> Parse(const Arguments& arguments) {
    try {
      // The library takes them from the end.
      app.parse(Arguments(arguments.rbegin(), arguments.rend()));
      if (request.inputs.empty()) request.inputs.push_back(input);
      return request;
    } catch (const CLI::CallForHelp&) {
      Write(app.help());
    } catch (const CLI::CallForAllHelp&) {
      Write(app.help("", CLI::AppFormatMode::All));
    } catch (const CLI::CallForVersion& version) {
      Write(version.what());
    } catch (const CLI::ParseError& error) {
      throw UsageError{OneLine(error.what())};
    }
    return std::nullopt;
  }

private:
  static void Write(const std::string& text) { std::fputs(text.c_str(), stdout); }

  static std::string OneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
    return text + "; see kwpic --help";
  }

  CLI::App* Add(CLI::App& to, const std::string& name, const std::string& text, Command command) {
    CLI::App* added = to.add_subcommand(name, text);
    added->callback([this, command] { request.command = command; });
    return added;
  }

  void AddFileCommands() {
    CLI::App* info = Add(app, "info", "Tell format, pages, sizes, depths and resolutions.", Command::Info);
    info->add_option("FILE", input, "The picture or document")->required();
    CLI::App* split = Add(app, "split", "Write each page to a file NAME_Page_N.", Command::Split);
    split->add_option("FILE", input, "The document")->required();
    split->add_option("DIR", request.output, "Folder of the page files; made if missing (default: that of FILE)");
    CLI::App* join = Add(app, "join", "Make one document of all pages of the files.", Command::Join);
    join->add_option("OUT", request.output, "The document: " + DocumentExtensions(Which::All))->required();
    join->add_option("FILE", request.inputs, "Pictures and documents, in their order")->required();
  }

  void AddConvert() {
    CLI::App* convert = Add(app, "convert", "Write a picture or document in the format of OUT.", Command::Convert);
    AddInputAndOutput(convert);
    convert->add_option("--page", request.page, "Only this page, counted from 1")->check(CLI::PositiveNumber);
    convert->add_option("--bpp", request.bitsPerPixel, "Bits per pixel: 1, 4, 8, 24 or 32")
        ->check(CLI::IsMember({1, 4, 8, 24, 32}));
    convert->add_option("--quality", request.quality, "Of JPEG, 1 to 100 (default 90)")->check(CLI::Range(1, 100));
  }

  void AddInputAndOutput(CLI::App* to) {
    to->add_option("IN", input, "The picture or document")->required();
    to->add_option("OUT", request.output, "The file to write; its extension says the format")->required();
  }

  void AddApply() {
    CLI::App* apply = app.add_subcommand("apply", "Apply an effect to every page; see kwpic effects.");
    apply->require_subcommand(1)->ignore_case();
    for (const Effect& effect : Effects()) {
      if (!IsApplied(effect)) continue;
      CLI::App* command = apply->add_subcommand(std::string(effect.command), "")->ignore_case();
      AddInputAndOutput(command);
      auto values = std::make_shared<std::vector<double>>(StandardValues(effect));
      for (std::size_t i = 0; i < effect.parameters.size(); ++i) {
        const Parameter& parameter = effect.parameters[i];
        command->add_option("--" + std::string(parameter.name), (*values)[i], Describe(parameter))
            ->ignore_case()
            ->check([&parameter](const std::string& text) { return ProblemWith(text, parameter); });
      }
      command->callback([this, &effect, values] {
        request.command = Command::Apply;
        request.effect = &effect;
        request.values = *values;
      });
    }
  }

  CLI::App app;
  Request request;
  // Of the commands that take one.
  std::string input;
};

}  // namespace

std::optional<Request> ReadCommandLine(const Arguments& arguments) {
  RequireKnownNames(arguments);
  return Parser().Parse(arguments);
}

}  // namespace kw
