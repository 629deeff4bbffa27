#pragma once

namespace kw {

// Called now and then by what may take long: reading and writing files, each procedure of the editor, each band of a
// drawing. It is cheap, handles no messages and never fails.
void NoteWork() noexcept;

// What NoteWork calls from now on in the whole process, on the thread that works; null: nothing.
void WatchWork(void (*watch)() noexcept) noexcept;

}  // namespace kw
