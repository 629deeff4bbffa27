#pragma once

#include <array>
#include <csetjmp>
#include <cstdio>
#include <string>

#include <jpeglib.h>

namespace kw {

// libjpeg reports an error by longjmp. It is therefore called only inside Trapped(), in steps that own nothing: the
// jump runs no destructors.
struct JpegTrap {
  jpeg_error_mgr manager{};
  std::jmp_buf jump{};
  std::array<char, JMSG_LENGTH_MAX> message{};
  // The coded data ended too early, after the decoder had made `rowsBefore` rows.
  bool ranDry = false;
  JDIMENSION rowsBefore = 0;
  // Whatever the decoder complained of.
  bool warned = false;
};

void Prepare(JpegTrap& trap);

template <typename Step>
bool Trapped(JpegTrap& trap, const Step& step) {
  if (setjmp(trap.jump) != 0) return false;
  step();
  return true;
}

// Raises OutOfMemory if that was the error.
void RequireMemory(const JpegTrap& trap);

}  // namespace kw
