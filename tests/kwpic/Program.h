#pragma once

#include <cstdlib>

#include "components/base/Unicode.h"
#include "tests/picture/Scratch.h"

namespace kw {

// Runs the program in a folder of its own.
class ProgramTest : public ScratchTest {
protected:
  struct Outcome {
    int code = -1;
    std::string output;
    std::string errors;
  };

  void SetUp() override {
    const char* place = std::getenv("KW_KWPIC");
    ASSERT_NE(nullptr, place) << "KW_KWPIC has to name the program";
    program = place;
#ifdef _WIN32
    // The machine's own file system is drive Z there.
    if (program.front() == '/') program = "Z:" + program;
    for (char& c : program) {
      if (c == '/') c = '\\';
    }
#endif
  }

  Outcome Run(const std::vector<std::string>& arguments) {
    std::string command = Quoted(program);
    for (const std::string& argument : arguments) command += " " + Quoted(argument);
    command += " >" + Quoted(At("stdout")) + " 2>" + Quoted(At("stderr"));
    Outcome outcome;
#ifdef _WIN32
    // The interpreter takes the outer quotes away.
    const std::u16string wide = Utf16FromUtf8("\"" + command + "\"");
    // Its own code for a program that it could not start, which happens under Wine on a busy machine.
    constexpr int NotStarted = 9009;
    for (int tries = 0; tries == 0 || (outcome.code == NotStarted && tries < 3); ++tries) {
      outcome.code = _wsystem(reinterpret_cast<const wchar_t*>(wide.c_str()));
    }
#else
    const int status = std::system(command.c_str());
    outcome.code = status % 256 == 0 ? status / 256 : -1;
#endif
    outcome.output = TextOf("stdout");
    outcome.errors = TextOf("stderr");
    std::filesystem::remove(folder / "stdout");
    std::filesystem::remove(folder / "stderr");
    return outcome;
  }

  // Runs it, expects success and nothing on standard error, and returns what it wrote.
  std::string Output(const std::vector<std::string>& arguments) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(0, outcome.code) << outcome.errors;
    EXPECT_EQ("", outcome.errors);
    return outcome.output;
  }

  const std::string& ProgramPath() const { return program; }

private:
  std::string TextOf(const char* name) const {
    const Bytes bytes = BytesOf(At(name));
    std::string text(bytes.begin(), bytes.end());
    std::erase(text, '\r');
    return text;
  }

  static std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

  std::string program;
};

}  // namespace kw
