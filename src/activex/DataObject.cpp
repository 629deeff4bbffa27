#include "activex/DataObject.h"

#include "activex/ComBoundary.h"
#include "activex/Enumerator.h"
#include "activex/PageData.h"

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;

// A wish for notices of any change, without the data.
bool IsAnyData(const FORMATETC& format, DWORD flags) { return format.cfFormat == 0 && (flags & ADVF_NODATA) != 0; }

}  // namespace

STDMETHODIMP DataObject::GetData(FORMATETC* format, STGMEDIUM* medium) {
  return AtComBoundary(core.Life(), [&] {
    if (format == nullptr || medium == nullptr) return E_INVALIDARG;
    *medium = {};
    const HRESULT known = CheckPageFormat(*format);
    if (FAILED(known)) return known;
    const AnnotatedPage page(core.Editor().Form());
    return page.IsEmpty() ? OLE_E_BLANK : GivePage(page, *format, *medium);
  });
}

STDMETHODIMP DataObject::GetDataHere(FORMATETC* format, STGMEDIUM* medium) {
  return AtComBoundary(core.Life(), [&] {
    if (format == nullptr || medium == nullptr) return E_INVALIDARG;
    const HRESULT known = CheckPageFormat(*format);
    if (FAILED(known)) return known;
    const AnnotatedPage page(core.Editor().Form());
    return page.IsEmpty() ? OLE_E_BLANK : GivePageHere(page, *format, *medium);
  });
}

STDMETHODIMP DataObject::QueryGetData(FORMATETC* format) {
  return AtComBoundary(core.Life(), [&] {
    if (format == nullptr) return E_INVALIDARG;
    const HRESULT known = CheckPageFormat(*format);
    if (FAILED(known)) return known;
    return AnnotatedPage(core.Editor().Form()).IsEmpty() ? OLE_E_BLANK : S_OK;
  });
}

// No format depends on the target device.
STDMETHODIMP DataObject::GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* canonical) {
  if (format == nullptr || canonical == nullptr) return E_INVALIDARG;
  *canonical = *format;
  canonical->ptd = nullptr;
  return DATA_S_SAMEFORMATETC;
}

// Pictures come in by OpenFile.
STDMETHODIMP DataObject::SetData(FORMATETC* /*format*/, STGMEDIUM* /*medium*/, BOOL /*release*/) { return E_NOTIMPL; }

STDMETHODIMP DataObject::EnumFormatEtc(DWORD direction, IEnumFORMATETC** enumerator) {
  return AtComBoundary(core.Life(), [&] {
    if (enumerator == nullptr) return E_INVALIDARG;
    *enumerator = nullptr;
    if (direction == DATADIR_SET) return E_NOTIMPL;
    if (direction != DATADIR_GET) return E_INVALIDARG;
    return Enumerator<IEnumFORMATETC, FORMATETC, FORMATETC>::Create(PageFormats(), enumerator);
  });
}

HRESULT DataObject::RequireAdvises() { return advises != nullptr ? S_OK : CreateDataAdviseHolder(&advises); }

STDMETHODIMP DataObject::DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* connection) {
  return AtComBoundary(core.Life(), [&] {
    if (format == nullptr || sink == nullptr || connection == nullptr) return E_INVALIDARG;
    *connection = 0;
    const HRESULT known = IsAnyData(*format, flags) ? S_OK : CheckPageFormat(*format);
    if (FAILED(known)) return known;
    const HRESULT made = RequireAdvises();
    if (FAILED(made)) return made;
    if (watch == nullptr) {
      watch = std::make_unique<PageWatch>(core.Platform(), core.Editor().Form());
      watch->Changed.Connect([this] { TellChanged(); });
    }
    const HRESULT advised =
        advises->Advise(this, format, flags & ~static_cast<DWORD>(ADVF_PRIMEFIRST), sink, connection);
    if (SUCCEEDED(advised) && (flags & ADVF_PRIMEFIRST) != 0) {
      if ((flags & ADVF_ONLYONCE) != 0) advises->Unadvise(*connection);  // the notice that follows is the one
      TellFirst(*format, flags, *sink);
    }
    EndIdleWatch();
    return advised;
  });
}

// The first notice, without waiting for a change.
void DataObject::TellFirst(FORMATETC& format, DWORD flags, IAdviseSink& sink) {
  STGMEDIUM medium = {};
  if ((flags & ADVF_NODATA) == 0) GetData(&format, &medium);
  sink.OnDataChange(&format, &medium);
  ReleaseStgMedium(&medium);
}

void DataObject::TellChanged() {
  const Lifetime::Outgoing outgoing(core.Life());
  const ComPtr<IDataAdviseHolder> kept = advises;
  kept->SendOnDataChange(this, 0, 0);
  EndIdleWatch();
}

// An advise for one notice ends with that notice.
void DataObject::EndIdleWatch() {
  const ComPtr<IDataAdviseHolder> kept = advises;
  ComPtr<IEnumSTATDATA> left;
  if (FAILED(kept->EnumAdvise(&left)) || left == nullptr) return;
  STATDATA one = {};
  if (left->Next(1, &one, nullptr) != S_OK) watch.reset();
  if (one.pAdvSink != nullptr) one.pAdvSink->Release();
  CoTaskMemFree(one.formatetc.ptd);
}

STDMETHODIMP DataObject::DUnadvise(DWORD connection) {
  return AtComBoundary(core.Life(), [&] {
    if (advises == nullptr) return OLE_E_NOCONNECTION;
    const ComPtr<IDataAdviseHolder> kept = advises;
    const HRESULT result = kept->Unadvise(connection);
    EndIdleWatch();
    return result;
  });
}

STDMETHODIMP DataObject::EnumDAdvise(IEnumSTATDATA** enumerator) {
  return AtComBoundary(core.Life(), [&] {
    if (enumerator == nullptr) return E_INVALIDARG;
    *enumerator = nullptr;
    const HRESULT made = RequireAdvises();
    return FAILED(made) ? made : advises->EnumAdvise(enumerator);
  });
}

}  // namespace kw::activex
