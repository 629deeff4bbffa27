// What shows on a terminal: a bar while long work is under way, and nothing of it afterwards.

#include "kwpic/Program.h"
#include "picture/KWPicEd.h"

namespace kw {
namespace {

class KwpicTerminal : public ProgramTest {
protected:
  // Everything that the program writes to a terminal of its own.
  std::string Screen(const std::vector<std::string>& arguments) {
    std::string line = ProgramPath();
    for (const std::string& argument : arguments) line += " " + argument;
    const std::string command = "script -qec '" + line + "' /dev/null >" + At("screen");
    EXPECT_EQ(0, std::system(command.c_str()));
    const Bytes bytes = BytesOf(At("screen"));
    return {bytes.begin(), bytes.end()};
  }
  // Pages that take some time.
  std::string LargeDocument(const std::string& name, int pages) {
    KWPicEd engine;
    engine.Replace(Noise(1500, 1500, 24));
    for (int page = 0; page < pages; ++page) engine.Append(At(name));
    return At(name);
  }
  // The last line that would still be seen.
  static std::string Remains(const std::string& text) {
    const std::size_t last = text.rfind('\r');
    return last == std::string::npos ? text : text.substr(last + 1);
  }
};

TEST_F(KwpicTerminal, LongWorkOnADocumentShowsItsPagesAndTakesTheBarAwayAtTheEnd) {
  const std::string text = Screen({"apply", "Blur", LargeDocument("in.tif", 12), At("out.tif")});
  EXPECT_NE(std::string::npos, text.find("[########################################] 12 of 12 pages")) << text;
  EXPECT_EQ("", Remains(text));
}

TEST_F(KwpicTerminal, JoiningManyFilesShowsTheFiles) {
  std::vector<std::string> line{"join", At("out.tif")};
  const std::string page = LargeDocument("page.tif", 1);
  for (int i = 0; i < 30; ++i) line.push_back(page);
  const std::string text = Screen(line);
  EXPECT_NE(std::string::npos, text.find("] 30 of 30 files")) << text;
  EXPECT_EQ("", Remains(text));
}

TEST_F(KwpicTerminal, ShortWorkShowsNothing) {
  KWPicEd engine;
  engine.Replace(FaxPage(40, 30));
  engine.Append(At("two.tif"));
  engine.Append(At("two.tif"));
  EXPECT_EQ("", Screen({"split", At("two.tif")}));
}

}  // namespace
}  // namespace kw
