#include "components/base/Files.h"

#include <utility>

#include "components/base/FilePath.h"
#include "components/base/RunTimeError.h"
#include "components/base/SystemFile.h"

namespace kw {
namespace {

SystemCode MakeFoldersAt(const std::filesystem::path& path) {
  FileFacts facts;
  if (LookAt(path, facts) == 0 && facts.kind == FileKind::Folder) return 0;
  const std::filesystem::path parent = path.parent_path();
  if (!parent.empty() && parent != path) {
    if (const SystemCode code = MakeFoldersAt(parent); code != 0) return code;
  }
  if (!path.has_filename()) return 0;
  const SystemCode code = MakeFolder(path);
  return IsTaken(code) && LookAt(path, facts) == 0 && facts.kind == FileKind::Folder ? 0 : code;
}

}  // namespace

void AppendToFile(const std::string& path, std::string_view text) {
  if (const SystemCode code = AppendToSystemFile(ToFilesystemPath(path), text); code != 0) RaiseFileError(code);
}

std::string LookUpFile(const std::string& path) {
  const std::filesystem::path native = ToFilesystemPath(path);
  FileFacts facts;
  if (LookAt(native, facts) != 0 || facts.kind == FileKind::Folder) return {};
  return FromFilesystemPath(native.filename());
}

void RemoveFileAt(const std::string& path) {
  if (LookUpFile(path).empty()) Raise(ErrorNumber::FileNotFound);
  const SystemCode code = RemoveSystemFile(ToFilesystemPath(path));
  if (code != 0) Raise(ErrorNumber::PathFileAccessError, code);
}

bool IsSameFile(const std::string& a, const std::string& b) {
  FileFacts one;
  FileFacts other;
  return a == b || (LookAt(ToFilesystemPath(a), one) == 0 && LookAt(ToFilesystemPath(b), other) == 0 &&
                    one.kind == FileKind::Plain && other.kind == FileKind::Plain && one.identity == other.identity);
}

void MakeFolders(const std::string& path) {
  if (const SystemCode code = MakeFoldersAt(ToFilesystemPath(path)); code != 0) RaiseFileError(code);
}

}  // namespace kw
