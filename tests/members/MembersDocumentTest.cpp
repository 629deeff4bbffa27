// docs/reference.md is made of the rows. KW_SOURCE is the project's root.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "components/base/RunTimeError.h"

namespace kw {
namespace {

std::string DocumentPath() { return std::string(KW_SOURCE) + "/docs/reference.md"; }

// "OpenFile(Text fPath)" of the name and the parameters in a row.
std::string CallOf(const std::string& name, std::string parameters) {
  const std::string direction = "[in] ";
  for (auto at = parameters.find(direction); at != std::string::npos; at = parameters.find(direction))
    parameters.erase(at, direction.size());
  return name + parameters;
}

std::string Line(const std::string& member, const std::string& number, const std::string& type,
                 const std::string& access, const std::string& kept, const std::string& help) {
  return "| `" + member + "` | " + number + " | " + type + " | " + access + " | " + kept + " | " + help + " |\n";
}

std::string SelectedProperty() {
  std::string names;
#define SELECTED_PROPERTY(name, number, type, defaultValue, readPlace, writePlace, help) names += #name;
#include "members/Members.def"
  return names;
}

std::string SelectedEvent() {
  std::string names;
#define EVENT(name, number, parameters, help)
#define SELECTED_EVENT(name, number, parameters, help) names += #name;
#include "members/Events.def"
  return names;
}

std::string MembersDocument() {
  std::string text =
      "# Members and events of the control\n\n"
      "Made of the rows in `src/members`; `KW_WRITE_DOCUMENTS=1 test_members` writes it anew.\n\n"
      "A Boolean is a VARIANT_BOOL, an Integer a 16-bit integer, a Text a BSTR. A property tells\n"
      "`IPropertyNotifySink` when it is assigned; the two variables do not. The container keeps the properties that\n"
      "have a default here, under their names; property windows show these and not the others that can be read.\n"
      "A property window begins with `" +
      SelectedProperty() + "`, a designer's list of events with `" + SelectedEvent() +
      "`.\n\n"
      "| Member | Number | Type | Access | Kept, default | |\n"
      "|---|---|---|---|---|---|\n";
#define VARIABLE(name, number, type, help) text += Line(#name, #number, #type, "variable", "", help);
#define METHOD(name, number, parameters, help) \
  text += Line(CallOf(#name, #parameters), #number, "", "method", "", help);
#define PROPERTY(name, number, type, help) text += Line(#name, #number, #type, "get, put", "", help);
#define LET_PROPERTY(name, number, type, help) text += Line(#name, #number, #type, "put", "", help);
#define KEPT_PROPERTY(name, number, type, defaultValue, readPlace, writePlace, help) \
  text += Line(#name, #number, #type, "get, put", "`" #defaultValue "`", help);
#include "members/Members.def"
  text +=
      "\nArguments of an event are passed by reference; a handler may change them.\n\n"
      "| Event | Number | |\n"
      "|---|---|---|\n";
#define EVENT(name, number, parameters, help) \
  text += "| `" + CallOf(#name, #parameters) + "` | " + #number + " | " + (help) + " |\n";
#include "members/Events.def"
  return text;
}

// What stands behind it in the document is written by hand.
const std::string HandWritten = "\n<!-- What follows is written by hand. -->\n";

std::string Document() {
  std::ifstream file(DocumentPath());
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(MembersDocument, HoldsWhatTheRowsSay) {
  const std::size_t rest = Document().find(HandWritten);
  ASSERT_NE(rest, std::string::npos);
  if (std::getenv("KW_WRITE_DOCUMENTS") != nullptr) {
    const std::string text = MembersDocument() + Document().substr(rest);
    std::ofstream(DocumentPath()) << text;
  }
  EXPECT_EQ(Document().substr(0, Document().find(HandWritten)), MembersDocument())
      << "KW_WRITE_DOCUMENTS=1 build/PRESET/tests/test_members mends it";
}

TEST(MembersDocument, TellsTheArgumentsOfEveryEvent) {
  const std::string text = Document().substr(Document().find(HandWritten));
#define EVENT(name, number, parameters, help) \
  EXPECT_NE(text.find("\n| `" #name "` |"), std::string::npos) << #name << " has no row in 'Arguments of the events'";
#include "members/Events.def"
}

// The numbers and texts are those of the sources.
TEST(MembersDocument, TellsEveryError) {
  std::ifstream file(std::string(KW_SOURCE) + "/src/components/base/RunTimeError.h");
  const std::string document = Document();
  int numbers = 0;
  for (std::string line; std::getline(file, line);) {
    const auto equals = line.find(" = ");
    if (line.rfind("  ", 0) != 0 || equals == std::string::npos || line.back() != ',' ||
        line.find('(') != std::string::npos)
      continue;
    const int number = std::stoi(line.substr(equals + 3));
    ++numbers;
    EXPECT_NE(document.find("\n| " + std::to_string(number) + " | " + ErrorDescription(number) + " |"),
              std::string::npos)
        << number << " " << ErrorDescription(number) << " has no row in 'Errors'";
  }
  EXPECT_GT(numbers, 20);
}

}  // namespace
}  // namespace kw
