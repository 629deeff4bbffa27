#include "Libraries.h"

namespace kw {

std::string Libraries() { return KW_LIBRARIES; }

}  // namespace kw
