#pragma once

#include <cstdint>
#include <string>

namespace kw {

// What the control tells its container. It must outlive the control. A handler may change the arguments; it may run a
// message loop and call the control again, but must not destroy it.
class EditorEvents {
public:
  EditorEvents() = default;
  EditorEvents(const EditorEvents&) = delete;
  EditorEvents& operator=(const EditorEvents&) = delete;
  virtual ~EditorEvents() = default;

  // An error of a procedure was reported.
  virtual void ErrorOccured(std::int16_t& errorNo, std::string& errorMsg) = 0;
  // A page file was written. Pages count from 1.
  virtual void NewPageCreated(std::string& filePath, std::int16_t& currentPageNo, std::int16_t& totalPages) = 0;
  // Another page is shown; 0 for the only page of a document that was not split.
  virtual void PageChanged(std::int16_t& pageNo) = 0;
  // A property was assigned: the persisted key or the property's name.
  virtual void PropertyChanged(const std::string& propertyName) = 0;
};

}  // namespace kw
