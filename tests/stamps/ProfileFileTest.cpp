// The scripted desktop's profile file keeps the promises that the system's keeps.

#include "tests/support/ProfileCases.h"
#include "tests/support/ScriptedDesktop.h"

namespace kw::test {
namespace {

TEST(ProfileFile, ReadsAsTheSystemDoes) {
  ScriptedDesktop desktop;
  ExpectProfileReadings(desktop);
}

TEST(ProfileFile, ReadsASectionAsTheSystemDoes) {
  ScriptedDesktop desktop;
  ExpectProfileSections(desktop);
}

TEST(ProfileFile, WritesAsTheSystemDoes) {
  ScriptedDesktop desktop;
  ExpectProfileWritings(desktop);
}

TEST(ProfileFile, KeepsEveryText) {
  ScriptedDesktop desktop;
  ExpectProfilesToKeepEveryText(desktop);
}

}  // namespace
}  // namespace kw::test
