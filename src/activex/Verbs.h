#pragma once

#include <windows.h>

#include <oleidl.h>

#include <string>
#include <vector>

#include "activex/EditorCore.h"

namespace kw::activex {

// A command of the editor that a container runs by its number and may offer in a menu.
struct Verb {
  LONG number;
  std::wstring menuText;

  // As the registry tells of it: menu text, flags of the menu entry, attributes.
  std::wstring RegistryText() const;
};

// In the order of their numbers.
std::vector<Verb> Verbs();

// For an enumerator. False without memory.
bool HandOut(const Verb& verb, OLEVERB& given);
HRESULT EnumerateVerbs(IEnumOLEVERB** enumerator);

// Runs the command of that number, with a window or without. OLEOBJ_S_INVALIDVERB where there is none,
// OLEOBJ_S_CANNOT_DOVERB_NOW where the editor is not free for it.
HRESULT RunVerb(EditorCore& core, LONG number);

}  // namespace kw::activex
