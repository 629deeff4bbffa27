#pragma once

#include <string>
#include <utility>

#include "components/Control.h"
#include "components/MouseInput.h"

namespace kw {

// A raised frame that groups tool bars and status panels.
class RaisedArea : public Control, public MouseInput {
public:
  explicit RaisedArea(std::string controlName) : Control(std::move(controlName), "KWRaisedAreaCtl") {}
  void LoadFrom(const RaisedArea& other) { CopyDesign(other); }
};

// A raised frame that shows a picture of the image list by its key; an empty key shows none.
class RaisedPicture : public Control, public MouseInput {
public:
  explicit RaisedPicture(std::string controlName) : Control(std::move(controlName), "KWRaisedPicture") {}

  const std::string& Picture() const { return picture; }
  void SetPicture(std::string key) {
    picture = std::move(key);
    Tell(Aspect::Content);
  }
  bool TryClearPicture() override {
    SetPicture({});
    return true;
  }

private:
  std::string picture;
};

// A plain frame with an optional caption.
class Frame : public Control {
public:
  explicit Frame(std::string controlName) : Control(std::move(controlName), "Frame") {}
};

}  // namespace kw
