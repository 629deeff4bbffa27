#include "document/ScratchBitmap.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "components/base/FilePath.h"
#include "components/base/SystemFile.h"
#include "components/base/TemporaryFiles.h"
#include "document/PageFiles.h"
#include "picture/File.h"

namespace kw {
namespace {

constexpr std::string_view MarkTitle = "\nKwEditor scratch bitmap\n";
constexpr std::uint64_t LongestMark = 1024;

// Only the controls of one process meet in one file.
std::mutex scratchLock;

struct ScratchOwner {
  std::string machine;
  std::int64_t process = 0;
};

std::string MarkOf(const ScratchOwner& owner) {
  return std::string(MarkTitle) + owner.machine + "\n" + std::to_string(owner.process) + "\n";
}

// None for a name that is not that of a scratch bitmap.
std::optional<std::int64_t> NumberInName(std::string_view name) {
  constexpr std::string_view before = "tmp";
  constexpr std::string_view behind = ".bmp";
  if (!name.starts_with(before) || !name.ends_with(behind)) return {};
  std::int64_t number = 0;
  const char* const end = name.data() + name.size() - behind.size();
  const auto result = std::from_chars(name.data() + before.size(), end, number);
  if (result.ec != std::errc() || result.ptr != end || number < 0) return {};
  return number;
}

// The last bytes of a file, as many as a mark has at most; none if it cannot be read.
std::string EndOf(const std::filesystem::path& path) {
  const FileSystem& files = FileSystem::Current();
  OpenedFile file;
  std::uint64_t size = 0;
  if (files.Open(path, FileUse::Read, file) != 0 || files.SizeOf(file.get(), size) != 0) return {};
  std::string end(static_cast<std::size_t>(std::min<std::uint64_t>(size, LongestMark)), '\0');
  std::size_t done = 0;
  if (files.Seek(file.get(), size - end.size()) != 0 || files.Read(file.get(), end.data(), end.size(), done) != 0) {
    return {};
  }
  end.resize(done);
  return end;
}

// None for a file without the mark.
std::optional<ScratchOwner> OwnerOf(const std::filesystem::path& path) {
  const std::string end = EndOf(path);
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

// Returns the stamp of the written file.
FileStamp WriteMarked(const Desktop& desktop, PictureDocument& engine) {
  const std::string path = GetTempImagePath(desktop);
  engine.SaveScratch(path, MarkOf({desktop.MachineName(), desktop.ProcessNumber()}));
  return StampOf(path);
}

// The engine's own picture is what the file holds; so the file is read only if it is another one by now, to find out
// whether it can be.
Bitmap WriteAndReadBack(Desktop& desktop, PictureDocument& engine) {
  const FileStamp written = WriteMarked(desktop, engine);
  const std::string path = GetTempImagePath(desktop);
  const FileStamp present = StampOf(path);
  if (present == FileStamp() || present != written) LoadPicture(path);
  return engine.Current();
}

}  // namespace

Bitmap ScratchBitmap::Pass(PictureDocument& engine) {
  const std::scoped_lock lock(scratchLock);
  return WriteAndReadBack(desktop, engine);
}

void ScratchBitmap::PassAndRemove(PictureDocument& engine, Bitmap& picture) {
  const std::scoped_lock lock(scratchLock);
  picture = WriteAndReadBack(desktop, engine);
  desktop.RemoveFile(GetTempImagePath(desktop));
}

void ScratchBitmap::Write(PictureDocument& engine) {
  const std::scoped_lock lock(scratchLock);
  WriteMarked(desktop, engine);
}

Bitmap ScratchBitmap::Read() {
  const std::scoped_lock lock(scratchLock);
  return LoadPicture(GetTempImagePath(desktop));
}

void ScratchBitmap::Remove() {
  const std::scoped_lock lock(scratchLock);
  desktop.RemoveFile(GetTempImagePath(desktop));
}

void ScratchBitmap::RemoveLeftovers() {
  const std::filesystem::path folder = ToFilesystemPath(GetWorkFolder(desktop));
  kw::RemoveLeftovers(folder);
  const std::string machine = desktop.MachineName();
  const FileSystem& files = FileSystem::Current();
  std::vector<std::filesystem::path> left;
  files.List(folder, [&](const std::filesystem::path& path) {
    const auto number = NumberInName(FromFilesystemPath(path.filename()));
    if (!number) return;
    // A file that another process may be using is not even opened.
    constexpr std::int64_t lowerHalf = 0xFFFFFFFF;
    const std::int64_t process = *number & lowerHalf;
    if (*number != InstanceNumber(machine, process) || desktop.IsProcessRunning(process)) return;
    const auto owner = OwnerOf(path);
    if (owner && owner->machine == machine && owner->process == process) left.push_back(path);
  });
  for (const auto& path : left) files.Remove(path);
}

}  // namespace kw
