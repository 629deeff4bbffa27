#pragma once

#include <windows.h>

namespace kw::windows {

// While one of these lives, windows of the system's control classes are those of version 6 if the module carries the
// manifest that asks for it (resource 2), whatever the host uses; else they are the host's.
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
