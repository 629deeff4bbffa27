#include "windows/properties/PathQuestion.h"

#include <shobjidl.h>
#include <wrl/client.h>

namespace kw::windows {
namespace {

using Microsoft::WRL::ComPtr;

std::optional<std::wstring> Ask(HWND owner, const std::wstring& start, FILEOPENDIALOGOPTIONS kind) {
  ComPtr<IFileOpenDialog> dialog;
  ComPtr<IShellItem> item;
  FILEOPENDIALOGOPTIONS options = 0;
  if (FAILED(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&dialog))) ||
      FAILED(dialog->GetOptions(&options)) ||
      FAILED(dialog->SetOptions(options | kind | FOS_FORCEFILESYSTEM | FOS_NOCHANGEDIR))) {
    return std::nullopt;
  }
  const std::wstring folder = start.substr(0, start.find_last_of(L'\\') + 1);
  if (!folder.empty() && SUCCEEDED(SHCreateItemFromParsingName(folder.c_str(), nullptr, IID_PPV_ARGS(&item))))
    dialog->SetFolder(item.Get());
  wchar_t* name = nullptr;
  if (FAILED(dialog->Show(owner)) || FAILED(dialog->GetResult(item.ReleaseAndGetAddressOf())) ||
      FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &name))) {
    return std::nullopt;
  }
  std::wstring path = name;
  CoTaskMemFree(name);
  return path;
}

}  // namespace

std::optional<std::wstring> AskForFile(HWND owner, const std::wstring& start) {
  return Ask(owner, start, FOS_FILEMUSTEXIST);
}

std::optional<std::wstring> AskForFolder(HWND owner, const std::wstring& start) {
  auto folder = Ask(owner, start, FOS_PICKFOLDERS | FOS_PATHMUSTEXIST);
  if (folder && !folder->ends_with(L'\\')) *folder += L'\\';
  return folder;
}

}  // namespace kw::windows
