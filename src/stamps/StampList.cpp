#include "stamps/StampList.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "components/base/Arithmetic.h"
#include "components/base/FilePath.h"
#include "components/base/SystemFile.h"
#include "document/PageFiles.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

constexpr const char* Section = "Stamps";

std::string StampFilePath(const Desktop& desktop) { return GetWorkFolder(desktop) + "stamps.lst"; }

// A number with leading zeros up to so many digits.
std::string Padded(int number, std::size_t digits) {
  std::string text = std::to_string(number);
  if (text.size() < digits) text.insert(0, digits - text.size(), '0');
  return text;
}

std::string Joined(std::initializer_list<std::string_view> words, char between = ' ') {
  std::string text;
  for (const std::string_view word : words) {
    if (!text.empty()) text += between;
    text += word;
  }
  return text;
}

std::string StampIn(std::string value) {
  std::ranges::replace(value, '\0', ' ');
  value.erase(value.find_last_not_of(' ') + 1);
  value.erase(0, value.find_first_not_of(' '));
  return value;
}

struct BuiltInStamp {
  const char* text;
  bool isDated;  // comes also with the date, and with date and time
};

constexpr BuiltInStamp BuiltInStamps[] = {
    {"APPROVED", true},
    {"APPROVED, BUT MUST SEE MD FOR MORE", false},
    {"CONFIDENTIAL", false},
    {"DENIED", true},
    {"DENIED, MUST SEE MD FOR MORE", false},
    {"DRAFT", true},
    {"NOT OUR PATIENT", false},
    {"RECEIVED", true},
    {"REJECTED", true},
    {"SENT", true},
};

}  // namespace

std::string StampList::ReadStamp(const std::string& key) const {
  return StampIn(desktop.ReadProfileString(Section, key, "", StampFilePath(desktop)));
}

void StampList::WriteStamp(const std::string& key, const std::string& value) const {
  desktop.WriteProfileString(Section, key, value, StampFilePath(desktop));
}

void StampList::AddStamp(const std::string& value) {
  const FileLock lock(ToFilesystemPath(StampFilePath(desktop) + ".lock"));
  const auto plainStamps = ReadPlainStamps();
  m_UserStampCount = 0;
  while (!NextStamp(plainStamps).empty()) ++m_UserStampCount;
  WriteStamp(NextKey(), value);
}

void StampList::FillStampList(ImageCombo& combo) {
  Procedure run(trap, "FillStampList");
  run([&] { combo.Clear(); });
  run([&] { AddBuiltInStamps(combo); });
  run([&] { m_UserStampCount = 0; });
  run([&] { AddUserStamps(combo); });
  run([&] { combo.Select(1); });
}

std::string StampList::NextKey() const { return std::to_string(ToInteger16(m_UserStampCount + 1)); }

void StampList::AddBuiltInStamps(ImageCombo& combo) const {
  const LocalDate today = desktop.Date();
  const LocalTime now = desktop.Time();
  const std::string date = Joined({Padded(today.month, 2), Padded(today.day, 2), Padded(today.year, 4)}, '/');
  const std::string time = Joined({Padded(now.hour, 2), Padded(now.minute, 2), Padded(now.second, 2)}, ':');
  combo.Add(Joined({"Dt:", date}));
  combo.Add(date);
  combo.Add(Joined({date, time}));
  for (const BuiltInStamp& stamp : BuiltInStamps) {
    combo.Add(stamp.text);
    if (!stamp.isDated) continue;
    combo.Add(Joined({stamp.text, date}));
    combo.Add(Joined({stamp.text, date, time}));
  }
}

void StampList::AddUserStamps(ImageCombo& combo) {
  const auto plainStamps = ReadPlainStamps();
  for (;;) {
    const std::string stamp = NextStamp(plainStamps);
    if (stamp.empty()) return;
    combo.Add(stamp);
    ++m_UserStampCount;
  }
}

// A file may be read anew for each key that is asked for.
std::map<std::string, std::string> StampList::ReadPlainStamps() const {
  return desktop.ReadProfileSection(Section, StampFilePath(desktop));
}

std::string StampList::NextStamp(const std::map<std::string, std::string>& plainStamps) const {
  const std::string key = NextKey();
  const auto found = plainStamps.find(key);
  return found == plainStamps.end() ? ReadStamp(key) : StampIn(found->second);
}

}  // namespace kw
