#pragma once

#include <utility>

namespace kw {

// A flag that is set while this lives, also if an error ends it; then it is what it was before.
class RaisedFlag {
public:
  explicit RaisedFlag(bool& raised) : flag(raised), before(std::exchange(flag, true)) {}
  RaisedFlag(const RaisedFlag&) = delete;
  RaisedFlag& operator=(const RaisedFlag&) = delete;
  ~RaisedFlag() { flag = before; }

private:
  bool& flag;
  bool before;
};

}  // namespace kw
