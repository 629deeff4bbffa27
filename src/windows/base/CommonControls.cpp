#include "windows/base/CommonControls.h"

#include <commctrl.h>

#include "windows/base/Module.h"

namespace kw::windows {

CommonControls::CommonControls() {
  ACTCTXW description = {};
  description.cbSize = sizeof description;
  description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  description.hModule = Module();
  description.lpResourceName = ISOLATIONAWARE_MANIFEST_RESOURCE_ID;
  context = CreateActCtxW(&description);
  if (context != INVALID_HANDLE_VALUE && ActivateActCtx(context, &cookie) == FALSE) {
    ReleaseActCtx(context);
    context = INVALID_HANDLE_VALUE;
  }
  const INITCOMMONCONTROLSEX wanted = {
      sizeof wanted, ICC_BAR_CLASSES | ICC_USEREX_CLASSES | ICC_UPDOWN_CLASS | ICC_DATE_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&wanted);
}

CommonControls::~CommonControls() {
  if (context == INVALID_HANDLE_VALUE) return;
  DeactivateActCtx(0, cookie);
  ReleaseActCtx(context);
}

}  // namespace kw::windows
