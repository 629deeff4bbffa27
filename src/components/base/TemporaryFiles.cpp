#include "components/base/TemporaryFiles.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "components/base/FilePath.h"
#include "components/base/SystemFile.h"

namespace kw {
namespace {

constexpr std::string_view TemporaryBegin = "kw";
constexpr std::string_view TemporaryEnd = ".tmp";
constexpr std::string_view HexDigits = "0123456789abcdef";
// Of each of the three numbers: machine, process, and one by chance.
constexpr std::size_t DigitsOfNumber = 8;
constexpr std::size_t DigitsOfName = 3 * DigitsOfNumber;

std::string HexOf(std::uint32_t number) {
  std::string text(DigitsOfNumber, '0');
  for (std::size_t at = DigitsOfNumber; at > 0; number >>= 4U) text[--at] = HexDigits[number & 15U];
  return text;
}

// Two machines hardly ever share a number.
std::uint32_t NumberOfMachine() {
  constexpr std::uint32_t basis = 2166136261;
  constexpr std::uint32_t prime = 16777619;
  std::uint32_t number = basis;
  for (const char one : MachineName()) number = (number ^ static_cast<unsigned char>(one)) * prime;
  return number;
}

// The part of the name that tells machine and process; none if the name is not that of a temporary file.
std::optional<std::string_view> MakerIn(std::string_view name) {
  if (name.size() != TemporaryBegin.size() + DigitsOfName + TemporaryEnd.size()) return {};
  if (!name.starts_with(TemporaryBegin) || !name.ends_with(TemporaryEnd)) return {};
  const std::string_view digits = name.substr(TemporaryBegin.size(), DigitsOfName);
  if (digits.find_first_not_of(HexDigits) != std::string_view::npos) return {};
  return digits.substr(0, 2 * DigitsOfNumber);
}

bool IsOld(const FileFacts& facts) {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
  const auto now = std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch());
  return now - Ticks(facts.changed) > std::chrono::hours(24);
}

// A process that is gone; another one may have its number by now.
bool IsOfGoneProcess(std::string_view maker) {
  if (maker.substr(0, DigitsOfNumber) != HexOf(NumberOfMachine())) return false;
  return !IsProcessRunning(std::stoll(std::string(maker.substr(DigitsOfNumber)), nullptr, 16));
}

bool IsFirstVisit(const std::filesystem::path& folder) {
  static std::mutex mutex;
  static std::set<std::filesystem::path> visited;
  constexpr std::size_t most = 1000;
  const std::scoped_lock lock(mutex);
  if (visited.size() > most) visited.clear();
  return visited.insert(folder).second;
}

}  // namespace

std::filesystem::path TemporaryBeside(const std::filesystem::path& path) {
  std::string name(TemporaryBegin);
  name += HexOf(NumberOfMachine());
  name += HexOf(static_cast<std::uint32_t>(ProcessNumber()));
  name += HexOf(std::random_device()());
  return path.parent_path() / ToFilesystemPath(name.append(TemporaryEnd));
}

void RemoveLeftovers(const std::filesystem::path& folder) {
  if (!IsFirstVisit(folder)) return;
  const FileSystem& files = FileSystem::Current();
  std::vector<std::filesystem::path> left;
  files.List(folder, [&](const std::filesystem::path& path) {
    const std::string name = FromFilesystemPath(path.filename());
    const auto maker = MakerIn(name);
    FileFacts facts;
    if (!maker || files.LookAt(path, facts) != 0) return;
    if (IsOfGoneProcess(*maker) || IsOld(facts)) left.push_back(path);
  });
  for (const auto& path : left) files.RemoveUnused(path);
}

}  // namespace kw
