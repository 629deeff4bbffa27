#include "components/controls/Log.h"

#include "components/base/Files.h"

namespace kw {

void Log::Append(const std::string& path, std::string_view text) { AppendToFile(path, text); }

}  // namespace kw
