// The picture of the host in the documents shows the form as it is now.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/EditorFixture.h"
#include "tests/support/FormLook.h"

namespace kw::test {
namespace {

const std::filesystem::path Root = KW_SOURCE;

std::string ContentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The places, values and buttons of the form's controls, and the icons.
std::string LookOfTheForm() {
  ScriptedDesktop desktop;
  RecordedEvents events;
  KwEditorLayers control{desktop, events};
  std::string look;
  for (const std::string& line : LookOf(control.Form())) look += line + "\n";
  std::vector<std::filesystem::path> icons;
  for (const auto& entry : std::filesystem::directory_iterator(Root / "resources" / "icons"))
    icons.push_back(entry.path());
  std::sort(icons.begin(), icons.end());
  for (const auto& icon : icons) look += icon.filename().string() + "\n" + ContentsOf(icon);
  return look;
}

// FNV-1a, 64 bits.
std::string HashOf(const std::string& bytes) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0') << hash;
  return text.str();
}

// A text chunk of a PNG file holds its name, a zero and the text.
TEST(HostPicture, ShowsTheFormAsItIs) {
  const std::string look = HashOf(LookOfTheForm());
  RecordProperty("look", look);
  const std::string picture = ContentsOf(Root / "docs" / "host.png");
  ASSERT_FALSE(picture.empty());
  EXPECT_NE(picture.find(std::string("Look") + '\0' + look), std::string::npos)
      << "docs/host.png is older than the form: draw it anew with scripts/picture/make, and look at it";
}

}  // namespace
}  // namespace kw::test
