#pragma once

#include <windows.h>

#include <oleidl.h>
#include <wrl/client.h>

#include <optional>

namespace kw::activex {

// The client site that the container gave the control. Every question has an answer, even if there is no site or the
// container does not know the question.
class ClientSite {
public:
  void Set(IOleClientSite* newSite) { site = newSite; }
  IOleClientSite* Get() const { return site.Get(); }
  // Null if there is no site or the site lacks the interface.
  template <class Interface>
  Microsoft::WRL::ComPtr<Interface> As() const {
    Microsoft::WRL::ComPtr<Interface> found;
    if (site != nullptr) site.As(&found);
    return found;
  }

  // An ambient property of the container; empty if the container does not have it.
  std::optional<bool> AmbientBoolean(DISPID property) const;
  std::optional<LONG> AmbientNumber(DISPID property) const;

private:
  // As a value of this type, which owns no memory.
  std::optional<VARIANT> AmbientValue(DISPID property, VARTYPE type) const;

  Microsoft::WRL::ComPtr<IOleClientSite> site;
};

}  // namespace kw::activex
