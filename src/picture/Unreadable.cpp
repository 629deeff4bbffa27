#include "picture/Unreadable.h"

#include "components/base/RunTimeError.h"

namespace kw {

void RaiseUnreadable(const std::string& reason) {
  throw RunTimeError(static_cast<std::int32_t>(ErrorNumber::InvalidPicture), reason);
}

}  // namespace kw
