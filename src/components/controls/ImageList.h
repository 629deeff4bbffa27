#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "components/base/RunTimeError.h"
#include "components/controls/Control.h"

namespace kw {

// Pictures that are known by their keys; which pixels belong to a key is a matter of the views' resources.
class ImageList : public Control {
public:
  explicit ImageList(std::string controlName) : Control(std::move(controlName), "ImageList") {}

  void Add(std::string key) { keys.push_back(std::move(key)); }
  // The picture of that key, as other controls take it. Raises ElementNotFound for an unknown key.
  const std::string& Picture(const std::string& key) const {
    const auto found = std::find(keys.begin(), keys.end(), key);
    if (found == keys.end()) Raise(ErrorNumber::ElementNotFound);
    return *found;
  }

private:
  std::vector<std::string> keys;
};

}  // namespace kw
