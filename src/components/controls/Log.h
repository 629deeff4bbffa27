#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "components/controls/Control.h"

namespace kw {

// Appends texts to files. Nothing is buffered and no file stays open between two calls.
class Log : public Control {
public:
  explicit Log(std::string controlName) : Control(std::move(controlName), "KwLogCtl") {}

  // Creates the file if needed. Raises PathNotFound, PermissionDenied, PathFileAccessError or DiskFull with the
  // system's last error code.
  void Append(const std::string& path, std::string_view text);
};

}  // namespace kw
