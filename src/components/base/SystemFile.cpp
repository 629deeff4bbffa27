#include "components/base/SystemFile.h"

#include <atomic>
#include <limits>
#include <utility>

#include "components/base/LongWork.h"
#include "components/base/SystemStream.h"

namespace kw {
namespace {

constinit const FileSystem ownSystem;
constinit std::atomic<const FileSystem*> currentSystem = &ownSystem;

}  // namespace

const FileSystem& FileSystem::Current() { return *currentSystem.load(std::memory_order_relaxed); }

void FileSystem::Replace(const FileSystem* other) { currentSystem = other != nullptr ? other : &ownSystem; }

void CloseFile::operator()(std::FILE* file) const noexcept { static_cast<void>(FileSystem::Current().Close(file)); }

SystemCode FileSystem::Read(std::FILE* file, void* to, std::size_t count, std::size_t& done) const {
  NoteWork();
  ForgetStreamError();
  done = std::fread(to, 1, count, file);
  if (done == count || std::ferror(file) == 0) return 0;
  const SystemCode code = LastStreamError();
  std::clearerr(file);
  return code;
}

SystemCode FileSystem::Write(std::FILE* file, const void* from, std::size_t count, std::size_t& done) const {
  NoteWork();
  ForgetStreamError();
  done = std::fwrite(from, 1, count, file);
  return done == count ? 0 : LastWriteError();
}

SystemCode FileSystem::Close(std::FILE* file) const {
  ForgetStreamError();
  return std::fclose(file) == 0 ? 0 : LastWriteError();
}

FileLock::FileLock(std::filesystem::path lockPath)
    : path(std::move(lockPath)), isHeld(FileSystem::Current().Lock(path, handle) == 0) {}

FileLock::~FileLock() {
  if (isHeld) FileSystem::Current().Unlock(path, handle);
}

}  // namespace kw
