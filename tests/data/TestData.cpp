#include "tests/data/TestData.h"

namespace kw {

std::filesystem::path TestData(const char* name) { return std::filesystem::path(KW_TEST_DATA) / name; }

}  // namespace kw
