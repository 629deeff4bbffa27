#include "document/ScratchBitmap.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "components/FilePath.h"
#include "components/Files.h"
#include "document/PageFiles.h"

namespace kw {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view MarkTitle = "\nKwEditor scratch bitmap\n";
constexpr std::streamoff LongestMark = 1024;

// Only the controls of one process meet in one file.
std::mutex scratchLock;

struct ScratchOwner {
  std::string machine;
  std::int64_t process = 0;
};

std::string MarkOf(const ScratchOwner& owner) {
  return std::string(MarkTitle) + owner.machine + "\n" + std::to_string(owner.process) + "\n";
}

bool IsScratchName(std::string_view name) {
  constexpr std::string_view before = "tmp";
  constexpr std::string_view behind = ".bmp";
  if (name.size() <= before.size() + behind.size() || !name.starts_with(before) || !name.ends_with(behind))
    return false;
  const std::string_view number = name.substr(before.size(), name.size() - before.size() - behind.size());
  return std::ranges::all_of(number, [](char c) { return c >= '0' && c <= '9'; });
}

// None for a file without the mark.
std::optional<ScratchOwner> OwnerOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const std::streamoff size = file.tellg();
  if (!file || size <= 0) return {};
  std::string end(static_cast<std::size_t>(std::min(size, LongestMark)), '\0');
  file.seekg(-static_cast<std::streamoff>(end.size()), std::ios::end);
  if (!file.read(end.data(), static_cast<std::streamsize>(end.size()))) return {};
  const std::size_t title = end.rfind(MarkTitle);
  if (title == std::string::npos) return {};
  const std::size_t machine = title + MarkTitle.size();
  const std::size_t line = end.find('\n', machine);
  if (line == std::string::npos) return {};
  ScratchOwner owner{end.substr(machine, line - machine)};
  std::from_chars(end.data() + line + 1, end.data() + end.size(), owner.process);
  // The mark is whole and the last thing in the file.
  if (end.substr(title) != MarkOf(owner)) return {};
  return owner;
}

void WriteMarked(const Desktop& desktop, PictureEngine& engine) {
  const std::string path = GetTempImagePath(desktop);
  engine.Save(path);
  AppendToFile(path, MarkOf({desktop.MachineName(), desktop.ProcessNumber()}));
}

}  // namespace

Bitmap ScratchBitmap::Pass(PictureEngine& engine) {
  const std::scoped_lock lock(scratchLock);
  WriteMarked(desktop, engine);
  Bitmap picture = desktop.LoadPicture(GetTempImagePath(desktop));
  return SamePicture(picture, engine.Current()) ? picture : engine.Current();
}

void ScratchBitmap::Write(PictureEngine& engine) {
  const std::scoped_lock lock(scratchLock);
  WriteMarked(desktop, engine);
}

Bitmap ScratchBitmap::Read() {
  const std::scoped_lock lock(scratchLock);
  return desktop.LoadPicture(GetTempImagePath(desktop));
}

void ScratchBitmap::Remove() {
  const std::scoped_lock lock(scratchLock);
  desktop.RemoveFile(GetTempImagePath(desktop));
}

void ScratchBitmap::RemoveLeftovers() {
  const std::string machine = desktop.MachineName();
  std::error_code error;
  fs::directory_iterator entry(ToFilesystemPath(GetWorkFolder(desktop)), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path& path = entry->path();
    std::error_code ignored;
    if (!IsScratchName(FromFilesystemPath(path.filename())) || !fs::is_regular_file(entry->symlink_status(ignored))) {
      continue;
    }
    const auto owner = OwnerOf(path);
    if (owner && owner->machine == machine && !desktop.IsProcessRunning(owner->process)) fs::remove(path, ignored);
  }
}

}  // namespace kw
