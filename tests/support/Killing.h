#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "components/base/FilePath.h"
#include "components/base/SystemFile.h"
#include "components/base/TemporaryFiles.h"
#include "tests/support/KilledProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::test {

// A program that writes files into one folder, ended again and again at moments that are spread over its whole run.
class Killing {
public:
  using Files = std::map<std::string, std::string>;  // names and contents

  // `prepare` fills the empty folder with the old files; the program changes them to the new ones.
  Killing(const TemporaryFolder& place, std::vector<std::string> program, std::function<void()> prepare)
      : folder(place), command(std::move(program)), fill(std::move(prepare)) {}

  // A file that is neither old nor new at any time, as a trace.
  std::string growing;
  // Whether a file may be left by the process of that number, besides temporary files.
  std::function<bool(std::int64_t process, const std::string& name, const std::string& content)> isLeftover;

  // KW_TORTURE_KILLS says how many times, if it is set; KW_TORTURE_SEED draws other moments.
  void Run(int times) {
    if (const char* const asked = std::getenv("KW_TORTURE_KILLS")) times = std::atoi(asked);
    const char* const seed = std::getenv("KW_TORTURE_SEED");
    std::mt19937 random(seed == nullptr ? 20261122U : static_cast<unsigned>(std::atoi(seed)));
    const std::chrono::microseconds duration = Measure();
    int killed = 0;
    int left = 0;
    for (int i = 0; i < times; ++i) {
      Prepare();
      KilledProcess process(command);
      const double part = (i + std::uniform_real_distribution<>(0, 1)(random)) / times;
      std::this_thread::sleep_for(std::chrono::duration_cast<std::chrono::microseconds>(duration * part));
      killed += process.Kill() ? 1 : 0;
      left += ExpectOldOrNew(process.Number(), i);
      ExpectNextRunTidiesUp(i);
      if (testing::Test::HasFailure()) break;
    }
    // It may have been quicker this time than when it was measured.
    EXPECT_TRUE(times < EnoughToJudge || killed * 4 >= times) << "it is hardly ever met at work";
    std::printf("%d of %d runs were ended before their end at %lld ms; %d left a temporary file\n", killed, times,
                static_cast<long long>(duration.count() / 1000), left);
    testing::Test::RecordProperty("killed", std::to_string(killed));
    testing::Test::RecordProperty("left", std::to_string(left));
  }

private:
  static constexpr int EnoughToJudge = 10;
#ifdef _WIN32
  static constexpr int Measurements = 1;  // a process takes seconds to start
#else
  static constexpr int Measurements = 3;
#endif

  std::chrono::microseconds Measure() {
    std::chrono::microseconds least = std::chrono::hours(1);
    for (int i = 0; i < Measurements; ++i) {
      Prepare();
      before = Look();
      const auto start = std::chrono::steady_clock::now();
      EXPECT_EQ(KilledProcess(command).ExitCode(), 0);
      const auto taken = std::chrono::steady_clock::now() - start;
      least = std::min(least, std::chrono::duration_cast<std::chrono::microseconds>(taken));
      after = Look();
    }
    EXPECT_NE(before, after);
    return least;
  }

  // Besides the old files there are some whose names are almost those of leftovers, and one of a process that lives.
  void Prepare() {
    for (const auto& entry : std::filesystem::directory_iterator(folder.Native()))
      std::filesystem::remove_all(entry.path());
    fill();
    for (const std::string& name : {own, own + ".bak", "a" + own, std::string("kw.tmp"), std::string("notes.tmp"),
                                    own.substr(0, 10) + "fffffff" + own.substr(18), std::string("tmp12.bmp")}) {
      Write(name, "of " + name);
    }
  }

  Files Look() const {
    Files files;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
      std::ifstream file(entry.path(), std::ios::binary);
      files[FromFilesystemPath(entry.path().filename())] = {std::istreambuf_iterator<char>(file), {}};
    }
    return files;
  }

  void Write(const std::string& name, const std::string& content) const {
    std::ofstream(folder.Native() / name, std::ios::binary) << content;
  }

  static bool Has(const Files& files, const std::string& name, const std::string& content) {
    const auto found = files.find(name);
    return found != files.end() && found->second == content;
  }

  // Of the process of that number, by its name.
  bool IsLeftBy(std::int64_t process, const std::string& name) const {
    constexpr std::size_t first = 10;
    constexpr std::size_t digits = 8;
    std::string number(digits + 1, '0');
    std::snprintf(number.data(), number.size(), "%08llx", static_cast<unsigned long long>(process));
    number.resize(digits);
    return name.size() == own.size() && name.ends_with(".tmp") &&
           name.substr(0, first + digits) == own.substr(0, first) + number;
  }

  // The number of temporary files that it left.
  int ExpectOldOrNew(std::int64_t process, int round) {
    int left = 0;
    const Files now = Look();
    for (const auto& [name, content] : now) {
      if (Has(before, name, content) || Has(after, name, content)) continue;
      if (name == growing) continue;
      EXPECT_TRUE(IsLeftBy(process, name) || (isLeftover && isLeftover(process, name, content)))
          << name << " is neither old nor new; round " << round;
      ++left;
    }
    for (const auto& [name, content] : before) {
      EXPECT_TRUE(!after.contains(name) || now.contains(name)) << name << " is gone; round " << round;
    }
    return left;
  }

  void ExpectNextRunTidiesUp(int round) {
    EXPECT_EQ(KilledProcess(command).ExitCode(), 0) << "round " << round;
    const Files now = Look();
    for (const auto& [name, content] : now) {
      EXPECT_TRUE(name == growing || Has(after, name, content)) << name << " is left; round " << round;
    }
    for (const auto& [name, content] : after) EXPECT_TRUE(now.contains(name)) << name << " is gone; round " << round;
  }

  const std::string own = TemporaryBeside("x").filename().string();
  const TemporaryFolder& folder;
  std::vector<std::string> command;
  std::function<void()> fill;
  Files before;
  Files after;
};

}  // namespace kw::test
