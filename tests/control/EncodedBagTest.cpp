// Persisted properties as bytes, which come from a host's file.

#include "control/EncodedBag.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "components/base/RunTimeError.h"
#include "tests/support/Errors.h"

namespace kw::test {
namespace {

using namespace std::string_literals;

EncodedBag::Outcome Decode(EncodedBag& bag, std::string bytes, std::size_t mostAtOnce = std::string::npos) {
  return bag.Decode([&bytes, mostAtOnce](char* to, std::size_t count) {
    const std::size_t part = std::min({count, bytes.size(), mostAtOnce});
    std::copy_n(bytes.begin(), part, to);
    bytes.erase(0, part);
    return part;
  });
}

std::string OneOfEach() {
  EncodedBag bag;
  bag.WriteBoolean("B", true, false);
  bag.WriteInteger("I", -2, 0);
  bag.WriteText("T", "text", "");
  return bag.Encode();
}

TEST(EncodedBagTest, IsReadAsItWasWritten) {
  EXPECT_EQ(OneOfEach(), "KwEP\1\0\3\0\1\0B\1\1\1\0I\2\xFE\xFF\1\0T\3\4\0\0\0text"s);
  EncodedBag bag;
  ASSERT_EQ(Decode(bag, OneOfEach() + "behind it", 1), EncodedBag::Outcome::Good) << "byte by byte";
  EXPECT_TRUE(bag.ReadBoolean("B", false));
  EXPECT_EQ(bag.ReadInteger("I", 7), -2);
  EXPECT_EQ(bag.ReadText("T", ""), "text");
  EXPECT_EQ(bag.ReadInteger("missing", 7), 7);
  EXPECT_EQ(ErrorOf([&] { bag.ReadInteger("T", 7); }), static_cast<std::int32_t>(ErrorNumber::TypeMismatch));
}

TEST(EncodedBagTest, ThatIsDamagedStaysAsItWas) {
  const std::string whole = OneOfEach();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EncodedBag bag;
    bag.WriteInteger("kept", 3, 0);
    EXPECT_EQ(Decode(bag, whole.substr(0, length)),
              length < 8 ? EncodedBag::Outcome::OtherFormat : EncodedBag::Outcome::Damaged)
        << length;
    EXPECT_EQ(bag.ReadInteger("kept", 0), 3);
  }
  EncodedBag bag;
  EXPECT_EQ(Decode(bag, "KwEQ" + whole.substr(4)), EncodedBag::Outcome::OtherFormat);
  EXPECT_EQ(Decode(bag, "KwEP\2" + whole.substr(5)), EncodedBag::Outcome::LaterVersion);
  EXPECT_EQ(Decode(bag, "KwEP\1\0\1\0\1\0B\4\1"s), EncodedBag::Outcome::Damaged) << "an unknown type";
  EXPECT_EQ(Decode(bag, "KwEP\1\0\1\0\1\0T\3\xFF\xFF\xFF\xFFx"s), EncodedBag::Outcome::Damaged) << "4 GiB of text";
}

// Whatever a host assigns, its file can be loaded again.
TEST(EncodedBagTest, LeavesOutATextThatCouldNotBeReadAgain) {
  constexpr std::size_t longest = std::size_t{4} * 32767;
  for (const std::size_t length : {longest, longest + 1}) {
    EncodedBag bag;
    bag.WriteText("T", std::string(length, 'x'), "default");
    EncodedBag again;
    ASSERT_EQ(Decode(again, bag.Encode()), EncodedBag::Outcome::Good) << length;
    EXPECT_EQ(again.ReadText("T", ""), length == longest ? std::string(length, 'x') : "default");
  }
}

}  // namespace
}  // namespace kw::test
