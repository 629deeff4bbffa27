#pragma once

#include <windows.h>

#include <oleidl.h>

#include <string>
#include <vector>

#include "activex/EditorCore.h"

namespace kw::activex {

// An OLE verb that a container runs by number and may offer in a menu: a command of the editor, or its properties.
struct Verb {
  LONG number;
  std::wstring menuText;

  // The verb's registry value: menu text, menu flags, attributes.
  std::wstring RegistryText() const;
};

// All verbs: the commands by rising number, then the properties.
std::vector<Verb> Verbs();

// Copies a verb for an enumerator's caller. False if memory runs out.
bool HandOut(const Verb& verb, OLEVERB& given);
HRESULT EnumerateVerbs(IEnumOLEVERB** enumerator);

// Runs a verb's command, with or without a window. OLEOBJ_S_INVALIDVERB if there is no such verb,
// OLEOBJ_S_CANNOT_DOVERB_NOW if the editor is busy.
HRESULT RunVerb(EditorCore& core, LONG number);

}  // namespace kw::activex
