#include <unistd.h>

#include "Platform.h"

namespace kw {

bool IsTerminal(std::FILE* file) { return isatty(fileno(file)) != 0; }

}  // namespace kw

int main(int count, char** values) {
  return kw::RunProgram(kw::Arguments(values + (count > 0 ? 1 : 0), values + count));
}
