#include "commands/Keyboard.h"

#include <algorithm>
#include <array>

#include "trap/Procedure.h"

namespace kw {
namespace {

constexpr std::int16_t Escape = 27;
constexpr std::int16_t DeleteKey = 46;
constexpr std::int16_t Enter = 13;

// The character that a letter gives with the Ctrl key.
constexpr std::int16_t Ctrl(char letter) { return static_cast<std::int16_t>(letter - 'A' + 1); }

}  // namespace

Keyboard::Keyboard(const EditorContext& context, Dispatcher& commands)
    : EditorContext(context), dispatcher(commands), layerKeys(context.form, context.layers) {
  form.picCanvas.KeyDown.Connect([this](std::int16_t code, std::int16_t shift) { picCanvas_KeyDown(code, shift); });
  form.picCanvas.KeyPress.Connect([this](std::int16_t character) { picCanvas_KeyPress(character); });
  form.picCanvas.KeyUp.Connect([this](std::int16_t code, std::int16_t shift) { picCanvas_KeyUp(code, shift); });
  form.picCanvas.KeyUse.Connect(
      [this](std::int16_t code, std::int16_t shift, bool& isInUse) { isInUse = IsInUseOnCanvas(code, shift); });
  form.editor.KeyUse.Connect(
      [this](std::int16_t code, std::int16_t shift, bool& isInUse) { isInUse = IsInUse(code, shift); });
  form.mnuSelectAll.Click.Connect([this] { mnuSelectAll_Click(); });
  form.mnuMergeDown.Click.Connect([this] { mnuMergeDown_Click(); });
}

bool Keyboard::IsInUse(std::int16_t keyCode, std::int16_t shift) const {
  if (!layers.HasPage()) return false;
  if (keyCode == Enter || keyCode == Escape || keyCode == DeleteKey) return true;
  const bool isLetter = keyCode >= 'A' && keyCode <= 'Z';
  return isLetter && shift == Mouse::ControlKey && ShortcutOf(Ctrl(static_cast<char>(keyCode))) != nullptr;
}

bool Keyboard::IsInUseOnCanvas(std::int16_t keyCode, std::int16_t shift) const {
  return IsInUse(keyCode, shift) || layerKeys.HasUseOf(keyCode, shift);
}

const Keyboard::Shortcut* Keyboard::ShortcutOf(std::int16_t character) {
  static constexpr auto shortcuts = std::to_array<Shortcut>({
      {'A', [](Keyboard& keyboard) { keyboard.mnuSelectAll_Click(); }},
      {'C', [](Keyboard& keyboard) { keyboard.ClickIfEnabled("Copy"); }},
      {'X', [](Keyboard& keyboard) { keyboard.ClickIfEnabled("Cut"); }},
      {'M', [](Keyboard& keyboard) { keyboard.mnuMergeDown_Click(); }},
      {'V', [](Keyboard& keyboard) { keyboard.ClickIfEnabled("Paste"); }},
      {'Z', [](Keyboard& keyboard) { keyboard.ClickIfEnabled("Undo"); }},
      {'Y', [](Keyboard& keyboard) { keyboard.ClickIfEnabled("Redo"); }},
      {'F', [](Keyboard& keyboard) { keyboard.layers.BringForward(); }},
      {'B', [](Keyboard& keyboard) { keyboard.layers.SendBackward(); }},
  });
  const auto* const found =
      std::ranges::find_if(shortcuts, [&](const Shortcut& row) { return Ctrl(row.letter) == character; });
  return found == shortcuts.end() ? nullptr : found;
}

void Keyboard::picCanvas_KeyDown(std::int16_t keyCode, std::int16_t shift) {
  Procedure run(trap, "picCanvas_KeyDown");
  // The form's own keys come here, too.
  if (form.editor.ActiveControl() != &form.picCanvas) return;
  run([&] { layerKeys.Strike(keyCode, shift); });
}

void Keyboard::picCanvas_KeyPress(std::int16_t keyAscii) {
  Procedure run(trap, "picCanvas_KeyPress");
  if (!layers.HasPage()) return;
  if (keyAscii == Escape) {
    run([&] { m_EscapeFlag = 0; });
    run([&] { zoom.UpdateAndZoom(); });
    run([&] { layers.AbandonDrag(); });
  }
  run([&] {
    if (const Shortcut* const shortcut = ShortcutOf(keyAscii); shortcut != nullptr) shortcut->run(*this);
  });
}

void Keyboard::picCanvas_KeyUp(std::int16_t keyCode, std::int16_t shift) {
  static_cast<void>(shift);
  Procedure run(trap, "picCanvas_KeyUp");
  if (!layers.HasPage()) return;
  run([&] {
    if (keyCode == DeleteKey) ClickIfEnabled("Clear");
  });
}

void Keyboard::mnuSelectAll_Click() { const Procedure run(trap, "mnuSelectAll_Click"); }
void Keyboard::mnuMergeDown_Click() { const Procedure run(trap, "mnuMergeDown_Click"); }

void Keyboard::ClickIfEnabled(const char* key) {
  if (BarOf(form.tbrBasicTools, key).ButtonOf(key).enabled) dispatcher.tbrBasicTools_ButtonClick(key);
}

}  // namespace kw
