#include "picture/formats/JpegTrap.h"

#include <jerror.h>

#include "components/base/RunTimeError.h"

namespace kw {
namespace {

void Leave(j_common_ptr codec) {
  auto* trap = reinterpret_cast<JpegTrap*>(codec->err);
  codec->err->format_message(codec, trap->message.data());
  std::longjmp(trap->jump, 1);
}

void Note(j_common_ptr codec, int level) {
  auto* trap = reinterpret_cast<JpegTrap*>(codec->err);
  if (level >= 0) return;
  trap->warned = true;
  if (codec->err->msg_code != JWRN_HIT_MARKER || trap->ranDry) return;
  trap->ranDry = true;
  trap->rowsBefore = reinterpret_cast<jpeg_decompress_struct*>(codec)->output_scanline;
}

void StaySilent(j_common_ptr /*codec*/) {}

}  // namespace

void Prepare(JpegTrap& trap) {
  jpeg_std_error(&trap.manager);
  trap.manager.error_exit = Leave;
  trap.manager.emit_message = Note;
  trap.manager.output_message = StaySilent;
}

void RequireMemory(const JpegTrap& trap) {
  if (trap.manager.msg_code == JERR_OUT_OF_MEMORY) Raise(ErrorNumber::OutOfMemory);
}

}  // namespace kw
