#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace kw::test {

// Boxes whose title and text, joined by a colon, contain these words, and how often they may come.
struct ExpectedBox {
  std::string words;
  int least = 1;
  int most = 1;

  // A number in the words is not the beginning of a longer one.
  bool Is(const std::string& box) const {
    const std::size_t start = box.find(words);
    if (start == std::string::npos) return false;
    const std::size_t end = start + words.size();
    return words.empty() || end == box.size() || std::isdigit(static_cast<unsigned char>(box[end])) == 0;
  }
};

inline ExpectedBox Once(std::string words) { return {.words = std::move(words)}; }
inline ExpectedBox Times(int count, std::string words) {
  return {.words = std::move(words), .least = count, .most = count};
}
inline ExpectedBox Perhaps(std::string words) {
  return {.words = std::move(words), .least = 0, .most = std::numeric_limits<int>::max()};
}
// For a helper that hands all boxes to a test, which compares them.
inline ExpectedBox AnyBox() { return Perhaps({}); }

// The box that opening a file shows each time.
inline const std::string ListOfPendingWork = "Yet to implement : ReCreateUndoFileIndex";

// The boxes that a test expects: any other one fails the test, and so does one of these that does not come.
class ExpectedBoxes {
public:
  ExpectedBoxes() = default;
  explicit ExpectedBoxes(std::vector<ExpectedBox> all) : rows(std::move(all)) {}
  ExpectedBoxes(const ExpectedBoxes&) = delete;
  ExpectedBoxes& operator=(const ExpectedBoxes&) = delete;
  ~ExpectedBoxes() {
    for (const ExpectedBox& row : rows) {
      if (row.least > 0) ADD_FAILURE() << "an expected box did not come, " << row.least << " times: " << row.words;
    }
  }

  // One that has to come counts before those that may.
  void Add(ExpectedBox box) { rows.insert(box.least > 0 ? rows.begin() : rows.end(), std::move(box)); }
  void Came(const std::string& box) {
    for (ExpectedBox& row : rows) {
      if (row.most == 0 || !row.Is(box)) continue;
      --row.least;
      --row.most;
      return;
    }
    ADD_FAILURE() << "a box that the test does not expect: " << box;
  }

private:
  std::vector<ExpectedBox> rows;
};

}  // namespace kw::test
