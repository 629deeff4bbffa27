// What shows on a terminal: a bar while long work is under way, and nothing of it afterwards.

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "kwpic/Program.h"
#include "picture/KWPicEd.h"

namespace kw {
namespace {

class KwpicTerminal : public ProgramTest {
protected:
  // Everything that the program writes to a terminal of its own.
  std::string Screen(const std::vector<std::string>& arguments) {
    std::vector<std::string> words{ProgramPath()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> line;
    for (std::string& word : words) line.push_back(word.data());
    line.push_back(nullptr);
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
      execv(line[0], line.data());
      _exit(127);
    }
    std::string text;
    char piece[4096];
    // The terminal fails, and does not end, when its last user has gone.
    for (ssize_t size = 0; (size = read(terminal, piece, sizeof piece)) > 0;) {
      text.append(piece, static_cast<std::size_t>(size));
    }
    close(terminal);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(0, status) << text;
    return text;
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
