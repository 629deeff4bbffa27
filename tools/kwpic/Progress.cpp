#include "Progress.h"

#include <cstdio>
#include <string>

#include "Platform.h"

namespace kw {
namespace {

constexpr int BarWidth = 40;
constexpr std::chrono::milliseconds Patience(300);

}  // namespace

Progress::Progress(std::int32_t steps, const char* noun) : total(steps), unit(noun), onTerminal(IsTerminal(stderr)) {}

void Progress::Clear() {
  if (shown) std::fprintf(stderr, "\r%*s\r", BarWidth + 30, "");
  shown = false;
}

void Progress::Step() {
  ++done;
  if (!onTerminal || total < 2 || std::chrono::steady_clock::now() - begin < Patience) return;
  shown = true;
  const auto filled = static_cast<std::size_t>(std::int64_t{BarWidth} * done / total);
  std::string bar(BarWidth, ' ');
  bar.replace(0, filled, filled, '#');
  std::fprintf(stderr, "\r[%s] %d of %d %s", bar.c_str(), static_cast<int>(done), static_cast<int>(total), unit);
  std::fflush(stderr);
}

}  // namespace kw
