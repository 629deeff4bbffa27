#pragma once

// Every picture format, one a line: X(Name, extensions), the usual extension first. Name.cpp defines NameFormat. A file
// is offered to the formats in this order: a document of FMF is a TIFF file, too. CMake reads these lines
// (cmake/KwFormats.cmake).
#define KW_FORMATS(X)           \
  X(Fmf, "fmf")                 \
  X(Tiff, "tif", "tiff")        \
  X(Jpeg, "jpg", "jpeg", "jpe") \
  X(Gif, "gif")                 \
  X(Bmp, "bmp", "dib")
