#include "StreamFile.h"

#include <shlwapi.h>
#include <wrl/client.h>

namespace kw::host {

HRESULT WriteFileByStream(const std::wstring& path, const std::function<HRESULT(IStream&)>& write) {
  const std::wstring part = path + L".part";
  Microsoft::WRL::ComPtr<IStream> stream;
  HRESULT result = SHCreateStreamOnFileEx(part.c_str(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                                          FILE_ATTRIBUTE_NORMAL, TRUE, nullptr, &stream);
  if (FAILED(result)) return result;
  result = write(*stream.Get());
  if (SUCCEEDED(result)) result = stream->Commit(STGC_DEFAULT);
  stream.Reset();
  if (SUCCEEDED(result) && MoveFileExW(part.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) == FALSE)
    result = HRESULT_FROM_WIN32(GetLastError());
  if (FAILED(result)) DeleteFileW(part.c_str());
  return result;
}

}  // namespace kw::host
