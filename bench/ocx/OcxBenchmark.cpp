// The built control in a container, from what the host or the user does to the painted frame. The pages are A4 at 300
// dpi, but for those of OpenFile. Message boxes are answered at once, before they are shown. Each row's second line has
// the parts as they take alone, their sum, and what the whole takes beyond it.
//   kwocxbench [SECTION]

#include <windows.h>

#include <ole2.h>

#include <cstdio>
#include <string_view>

#include "bench/ocx/BenchedControl.h"
#include "bench/ocx/Sections.h"
#include "bench/ocx/Table.h"

namespace kw::bench {
namespace {

void Run(std::string_view section) {
  const auto isAsked = [&](std::string_view name) { return section.empty() || section == name; };
  const double begin = Now();
  if (isAsked("creation")) Creation();
  if (isAsked("properties")) Properties();
  if (isAsked("documents")) Documents();
  for (const int bits : {1, 8, 24}) {
    if (isAsked("pages")) Pages(bits);
  }
  if (isAsked("drawing")) Drawing();
  if (isAsked("pictures")) Pictures();
  std::printf("\n%d message boxes were answered before they were shown; all took %.0f s\n", BenchedControl::Boxes(),
              (Now() - begin) / 1000);
}

}  // namespace
}  // namespace kw::bench

int main(int count, char** arguments) {
  if (FAILED(OleInitialize(nullptr))) return 1;
  kw::bench::Run(count > 1 ? arguments[1] : "");
  OleUninitialize();
  return 0;
}
