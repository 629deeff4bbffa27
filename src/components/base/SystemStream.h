#pragma once

#include "components/base/SystemFile.h"

namespace kw {

// The code behind the call of the C library on a stream that failed since ForgetStreamError(); never 0.
void ForgetStreamError();
SystemCode LastStreamError();
SystemCode LastWriteError();

}  // namespace kw
