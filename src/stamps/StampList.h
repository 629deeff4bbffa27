#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "components/controls/ImageCombo.h"
#include "components/platform/Desktop.h"
#include "trap/Trap.h"

namespace kw {

// The stamps that are offered: the built-in ones, dated with the moment at which the list is filled, and the user's
// own, which the profile file stamps.lst in the work folder keeps under the keys 1, 2, 3 and so on.
class StampList {
public:
  // Both arguments must outlive the list.
  StampList(Desktop& platform, Trap& errorTrap) : desktop(platform), trap(errorTrap) {}

  // The trimmed value of a key, at most 511 characters; empty if there is none.
  std::string ReadStamp(const std::string& key) const;
  // A file that cannot be written is not reported.
  void WriteStamp(const std::string& key, const std::string& value) const;
  // Writes it behind the user's stamps that the file holds now, those of other users of the folder included. Raises
  // Overflow if these are 32767.
  void AddStamp(const std::string& value);

  // Fills the combo afresh and selects its first item. The first key without a value ends the user's stamps; the key
  // behind the 32767th is none that can be asked for, which is a reported error (Overflow); those until then are
  // listed.
  void FillStampList(ImageCombo& combo);
  // The user's stamps that were found last.
  std::int16_t UserStampCount() const { return m_UserStampCount; }
  // The key of the user's stamp behind the last one. Raises Overflow past 32767.
  std::string NextKey() const;

private:
  void AddBuiltInStamps(ImageCombo& combo) const;
  void AddUserStamps(ImageCombo& combo);
  std::map<std::string, std::string> ReadPlainStamps() const;
  // The stamp of the next key, of these if it is among them; empty if there is none.
  std::string NextStamp(const std::map<std::string, std::string>& plainStamps) const;

  Desktop& desktop;
  Trap& trap;
  std::int16_t m_UserStampCount = 0;
};

}  // namespace kw
