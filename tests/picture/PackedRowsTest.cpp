// Rows that are packed into the end of their memory move to their places, whatever the number of threads.

#include <algorithm>
#include <atomic>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "picture/effects/ParallelRows.h"
#include "picture/formats/PackedRows.h"

namespace kw {
namespace {

class SpreadRowsTest : public testing::Test {
protected:
  SpreadRowsTest() { SetLeastWork(1); }
  ~SpreadRowsTest() override {
    SetLeastWork(0);
    SetMostThreads(0);
  }
};

TEST_F(SpreadRowsTest, EachRowComesToItsPlace) {
  std::minstd_rand random(7);
  for (const unsigned threads : {1U, 2U, 3U, 8U}) {
    SetMostThreads(threads);
    for (const std::size_t stride : {1U, 64U, 192U}) {
      for (const std::size_t rowBytes : {std::size_t{1}, stride / 2 + 1, stride - stride / 20, stride}) {
        for (const std::size_t count : {1U, 2U, 3U, 17U, 100U, 1000U}) {
          std::vector<std::uint8_t> packed(count * rowBytes);
          for (std::uint8_t& byte : packed) byte = static_cast<std::uint8_t>(random() >> 8U);
          std::vector<std::uint8_t> memory(count * stride);
          std::ranges::copy(packed, memory.end() - static_cast<std::ptrdiff_t>(packed.size()));
          SpreadRows({memory.data(), stride, rowBytes, count},
                     [&](const std::uint8_t* from, std::uint8_t* to) { std::memmove(to, from, rowBytes); });
          for (std::size_t y = 0; y < count; ++y) {
            ASSERT_EQ(std::memcmp(memory.data() + y * stride, packed.data() + y * rowBytes, rowBytes), 0)
                << "row " << y << " of " << count << ", " << rowBytes << " of " << stride << ", " << threads;
          }
        }
      }
    }
  }
}

TEST_F(SpreadRowsTest, EachRowIsMovedOnce) {
  constexpr std::size_t stride = 64;
  for (const unsigned threads : {2U, 4U, 7U, 16U}) {
    SetMostThreads(threads);
    for (std::size_t count = 1; count < 200; ++count) {
      std::vector<std::uint8_t> memory(count * stride);
      std::vector<std::atomic<int>> moves(count);
      SpreadRows({memory.data(), stride, 63, count}, [&](const std::uint8_t* /*from*/, const std::uint8_t* to) {
        ++moves[static_cast<std::size_t>(to - memory.data()) / stride];
      });
      for (std::size_t y = 0; y < count; ++y) ASSERT_EQ(moves[y], 1) << y << " of " << count << ", " << threads;
    }
  }
}

}  // namespace
}  // namespace kw
