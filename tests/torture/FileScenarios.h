#pragma once

#include <vector>

#include "tests/torture/Scenarios.h"

namespace kw::test {

// What is done with files alone: documents that are joined, saved over themselves, split from a damaged file; the list
// of stamps; leftovers.
std::vector<Scenario> FileScenarios();

}  // namespace kw::test
