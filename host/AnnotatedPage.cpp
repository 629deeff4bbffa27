#include "AnnotatedPage.h"

#include <ole2.h>
#include <wrl/client.h>

#include "StreamFile.h"

namespace kw::host {
namespace {

using Microsoft::WRL::ComPtr;

FORMATETC Tiff() { return {CF_TIFF, nullptr, DVASPECT_CONTENT, -1, TYMED_ISTREAM}; }

HRESULT DataOf(IUnknown& control, ComPtr<IDataObject>& data) { return control.QueryInterface(IID_PPV_ARGS(&data)); }

}  // namespace

bool HasAnnotatedPage(IUnknown& control) {
  ComPtr<IDataObject> data;
  FORMATETC format = Tiff();
  return SUCCEEDED(DataOf(control, data)) && data->QueryGetData(&format) == S_OK;
}

HRESULT SaveAnnotatedPage(IUnknown& control, const std::wstring& path) {
  ComPtr<IDataObject> data;
  const HRESULT asked = DataOf(control, data);
  if (FAILED(asked)) return asked;
  return WriteFileByStream(path, [&data](IStream& stream) {
    FORMATETC format = Tiff();
    STGMEDIUM medium = {};
    medium.tymed = TYMED_ISTREAM;
    medium.pstm = &stream;  // stays ours
    return data->GetDataHere(&format, &medium);
  });
}

HRESULT CopyAnnotatedPage(IUnknown& control) {
  ComPtr<IDataObject> data;
  HRESULT result = DataOf(control, data);
  FORMATETC format = Tiff();
  if (SUCCEEDED(result)) result = data->QueryGetData(&format);
  if (SUCCEEDED(result)) result = OleSetClipboard(data.Get());
  // Makes the data now. Otherwise a program that pastes would get the page as it is by then, and the control would
  // stay.
  if (SUCCEEDED(result)) result = OleFlushClipboard();
  return result;
}

}  // namespace kw::host
