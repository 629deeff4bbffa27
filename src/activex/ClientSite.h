#pragma once

#include <windows.h>

#include <oleidl.h>
#include <wrl/client.h>

#include <optional>

namespace kw::activex {

// The place that the container gave the control, and what it says about itself there. Everything has an answer when
// there is no site or the container does not know the question.
class ClientSite {
public:
  void Set(IOleClientSite* newSite) { site = newSite; }
  IOleClientSite* Get() const { return site.Get(); }
  // Null when there is no site or it has no such interface.
  template <class Interface>
  Microsoft::WRL::ComPtr<Interface> As() const {
    Microsoft::WRL::ComPtr<Interface> found;
    if (site != nullptr) site.As(&found);
    return found;
  }

  // An ambient property of the container; empty where it has none.
  std::optional<bool> AmbientBoolean(DISPID property) const;

private:
  Microsoft::WRL::ComPtr<IOleClientSite> site;
};

}  // namespace kw::activex
