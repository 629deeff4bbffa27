#include "fuzz/Tries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kw::TryEffect({data, size});
  return 0;
}
