#pragma once

#include <memory>
#include <string>

#include "picture/File.h"
#include "picture/PictureFormat.h"

namespace kw {

// A picture file that is being read: its format, recognised by its content, and its pages, none of them decoded.
struct OpenedPicture {
  // Raises InvalidPicture, and file errors if the file cannot be read.
  OpenedPicture(const std::string& path, const ReadLimits& limits);

  InputFile file;
  const PictureFormat* format = nullptr;
  std::unique_ptr<PictureSource> source;
};

}  // namespace kw
