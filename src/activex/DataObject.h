#pragma once

#include <windows.h>

#include <objidl.h>
#include <wrl/client.h>

#include <memory>

#include "activex/EditorCore.h"
#include "annotated/PageWatch.h"

namespace kw::activex {

// Gives the host what the user sees on the page, with all layers, to keep it. It changes nothing in the editor, raises
// no event and is traced nowhere, so a host may ask at any time, also in an event or while the control is disabled.
//
// Without an open page there is nothing to give: OLE_E_BLANK, as for a drawing of the page. A container that wants to
// cache how a new control looks therefore draws it (ViewObject), as it does for an object that gives no data.
class DataObject : public IDataObject {
public:
  STDMETHODIMP GetData(FORMATETC* format, STGMEDIUM* medium) override;
  STDMETHODIMP GetDataHere(FORMATETC* format, STGMEDIUM* medium) override;
  STDMETHODIMP QueryGetData(FORMATETC* format) override;
  STDMETHODIMP GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* canonical) override;
  STDMETHODIMP SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) override;
  STDMETHODIMP EnumFormatEtc(DWORD direction, IEnumFORMATETC** enumerator) override;
  STDMETHODIMP DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* connection) override;
  STDMETHODIMP DUnadvise(DWORD connection) override;
  STDMETHODIMP EnumDAdvise(IEnumSTATDATA** enumerator) override;

protected:
  explicit DataObject(EditorCore& shared) : core(shared) {}
  ~DataObject() = default;

private:
  HRESULT RequireAdvises();
  void TellChanged();
  void EndIdleWatch();
  void TellFirst(FORMATETC& format, DWORD flags, IAdviseSink& sink);

  EditorCore& core;
  Microsoft::WRL::ComPtr<IDataAdviseHolder> advises;
  std::unique_ptr<PageWatch> watch;  // while there are advises
};

}  // namespace kw::activex
