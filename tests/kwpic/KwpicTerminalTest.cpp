// The display on a terminal: a bar while long work is under way, and nothing of it afterwards.

#include <functional>

#include "picture/PictureDocument.h"
#include "tests/kwpic/Program.h"

namespace kw {
namespace {

class KwpicTerminal : public ProgramTest {
protected:
  static constexpr int MostSteps = 1024;

  // Everything that the program writes to a terminal of its own.
  std::string Screen(const std::vector<std::string>& arguments) {
    std::string line = ProgramPath();
    for (const std::string& argument : arguments) line += " " + argument;
    const std::string command = "script -qec '" + line + "' /dev/null >" + At("screen");
    EXPECT_EQ(0, std::system(command.c_str()));
    const Bytes bytes = BytesOf(At("screen"));
    return {bytes.begin(), bytes.end()};
  }
  // The screen of work that is doubled, from so many steps on, until it takes long enough to be shown.
  std::string ScreenOfLongWork(int& steps, const std::function<std::vector<std::string>()>& lineOfWork) {
    for (; steps <= MostSteps; steps *= 2) {
      std::string text = Screen(lineOfWork());
      if (!text.empty()) return text;
    }
    ADD_FAILURE() << "nothing shows at " << MostSteps << " steps";
    return {};
  }
  // The last line that would still be seen.
  static std::string Remains(const std::string& text) {
    const std::size_t last = text.rfind('\r');
    return last == std::string::npos ? text : text.substr(last + 1);
  }
};

TEST_F(KwpicTerminal, LongWorkOnADocumentShowsItsPagesAndTakesTheBarAwayAtTheEnd) {
  PictureDocument engine;
  engine.Replace(Noise(300, 300, 24));
  int pages = 0;
  int steps = 4;
  const std::string text = ScreenOfLongWork(steps, [&] {
    for (; pages < steps; ++pages) engine.Append(At("in.tif"));
    return std::vector<std::string>{"apply", "Blur", At("in.tif"), At("out.tif")};
  });
  const std::string count = std::to_string(steps);
  EXPECT_NE(std::string::npos,
            text.find("[########################################] " + count + " of " + count + " pages"))
      << text;
  EXPECT_EQ("", Remains(text));
}

TEST_F(KwpicTerminal, JoiningManyFilesShowsTheFiles) {
  PictureDocument engine;
  engine.Replace(Noise(300, 300, 24));
  engine.Save(At("page.tif"));
  int steps = 32;
  const std::string text = ScreenOfLongWork(steps, [&] {
    std::vector<std::string> line{"join", At("out.tif")};
    line.insert(line.end(), static_cast<std::size_t>(steps), At("page.tif"));
    return line;
  });
  const std::string count = std::to_string(steps);
  EXPECT_NE(std::string::npos, text.find("] " + count + " of " + count + " files")) << text;
  EXPECT_EQ("", Remains(text));
}

TEST_F(KwpicTerminal, ShortWorkShowsNothing) {
  PictureDocument engine;
  engine.Replace(FaxPage(40, 30));
  engine.Append(At("two.tif"));
  engine.Append(At("two.tif"));
  EXPECT_EQ("", Screen({"split", At("two.tif")}));
}

}  // namespace
}  // namespace kw
