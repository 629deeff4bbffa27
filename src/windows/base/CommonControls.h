#pragma once

#include <windows.h>

namespace kw::windows {

// During its life new windows of the system's control classes come from version 6 of the common controls if the module
// has a manifest for it (resource 2), whatever the host uses; else from the host's version.
class CommonControls {
public:
  CommonControls();
  CommonControls(const CommonControls&) = delete;
  CommonControls& operator=(const CommonControls&) = delete;
  ~CommonControls();

private:
  HANDLE context;
  ULONG_PTR cookie = 0;
};

}  // namespace kw::windows
