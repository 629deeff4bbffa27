#include <cctype>

#include "tests/architecture/Rules.h"

namespace kw::architecture {
namespace {

// Where the literal or comment that begins at `start` ends (one past its last character); `start` when none begins.
std::size_t EndOfBlank(std::string_view text, std::size_t start) {
  const auto rest = text.substr(start);
  const auto past = [&](std::size_t at, std::size_t length) {
    return at == std::string_view::npos ? text.size() : at + length;
  };
  if (rest.starts_with("//")) return past(text.find('\n', start), 0);
  if (rest.starts_with("/*")) return past(text.find("*/", start + 2), 2);
  if (rest.starts_with("R\"")) {
    const auto open = text.find('(', start);
    if (open == std::string_view::npos) return text.size();
    const std::string close = ")" + std::string(text.substr(start + 2, open - start - 2)) + "\"";
    return past(text.find(close, open), close.size());
  }
  const char quote = rest[0];
  // A quote after a digit separates the digits of a number.
  const bool separates = quote == '\'' && start > 0 && std::isalnum(static_cast<unsigned char>(text[start - 1])) != 0;
  if ((quote != '"' && quote != '\'') || separates) return start;
  for (auto at = start + 1; at < text.size(); ++at) {
    if (text[at] == '\\')
      ++at;
    else if (text[at] == quote || text[at] == '\n')
      return at + 1;
  }
  return text.size();
}

}  // namespace

std::string WithoutCommentsAndLiterals(std::string_view text) {
  std::string code(text);
  for (std::size_t at = 0; at < text.size();) {
    const auto end = EndOfBlank(text, at);
    if (end == at) {
      ++at;
      continue;
    }
    for (; at < end; ++at)
      if (code[at] != '\n') code[at] = ' ';
  }
  return code;
}

}  // namespace kw::architecture
