#include "components/base/Files.h"

#include <optional>
#include <utility>

#include "components/base/FilePath.h"
#include "components/base/LongWork.h"
#include "components/base/RunTimeError.h"
#include "components/base/SystemFile.h"

namespace kw {
namespace {

SystemCode MakeFoldersAt(const std::filesystem::path& path) {
  const FileSystem& files = FileSystem::Current();
  FileKind kind{};
  if (files.LookAt(path, kind) == 0 && kind == FileKind::Folder) return 0;
  const std::filesystem::path parent = path.parent_path();
  if (!parent.empty() && parent != path) {
    if (const SystemCode code = MakeFoldersAt(parent); code != 0) return code;
  }
  if (!path.has_filename()) return 0;
  const SystemCode code = files.MakeFolder(path);
  return IsTaken(code) && files.LookAt(path, kind) == 0 && kind == FileKind::Folder ? 0 : code;
}

// None if there is no such file, or if it is not a plain one.
std::optional<FileIdentity> IdentityOf(const std::string& path) {
  FileFacts facts;
  const SystemCode code = FileSystem::Current().LookAt(ToFilesystemPath(path), facts);
  if (code != 0 && !IsMissing(code)) RaiseFileError(code);
  if (code != 0 || facts.kind != FileKind::Plain) return {};
  return facts.identity;
}

}  // namespace

void AppendToFile(const std::string& path, std::string_view text) {
  NoteWork();
  if (const SystemCode code = FileSystem::Current().Append(ToFilesystemPath(path), text); code != 0) {
    RaiseFileError(code);
  }
}

std::string LookUpFile(const std::string& path) {
  const std::filesystem::path native = ToFilesystemPath(path);
  FileKind kind{};
  const SystemCode code = FileSystem::Current().LookAt(native, kind);
  if (code != 0 && !IsMissing(code)) RaiseFileError(code);
  if (code != 0 || kind == FileKind::Folder) return {};
  return FromFilesystemPath(native.filename());
}

void RemoveFileAt(const std::string& path) {
  if (LookUpFile(path).empty()) Raise(ErrorNumber::FileNotFound);
  const SystemCode code = FileSystem::Current().Remove(ToFilesystemPath(path));
  if (code != 0) Raise(ErrorNumber::PathFileAccessError, code);
}

bool IsSameFile(const std::string& a, const std::string& b) {
  if (a == b) return true;
  const auto one = IdentityOf(a);
  return one && one == IdentityOf(b);
}

void MakeFolders(const std::string& path) {
  if (const SystemCode code = MakeFoldersAt(ToFilesystemPath(path)); code != 0) RaiseFileError(code);
}

}  // namespace kw
