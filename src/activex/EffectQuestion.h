#pragma once

#include "picture/effects/Effect.h"
#include "windows/ParameterDialog.h"

namespace kw::activex {

// What the user is asked before an effect runs on the picture, which must outlive the question: its row of the table
// as a dialog.
windows::ParameterQuestion QuestionOf(const Effect& effect, const Bitmap& picture);

}  // namespace kw::activex
