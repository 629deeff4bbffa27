#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "components/Desktop.h"
#include "components/Files.h"
#include "components/RunTimeError.h"
#include "components/Timer.h"

namespace kw::test {

// A desktop that records what the editor asks of it and answers what a test has laid down. Files are real ones.
class ScriptedDesktop : public Desktop {
public:
  struct Box {
    std::string prompt;
    std::string title;
    MessageButtons buttons = MessageButtons::Ok;
    friend bool operator==(const Box&, const Box&) = default;
  };

  // What was shown, in order.
  std::vector<Box> boxes;
  // Answers to the boxes to come; when none is left, a box is answered with Ok.
  std::deque<MessageAnswer> answers;
  // Runs while a box is up.
  std::function<void(const Box&)> whileBoxIsUp;
  std::set<std::int32_t> clipboardFormats;
  LocalDate date{2026, 11, 15};
  LocalTime time{3, 8, 21};
  mutable int dateReads = 0;
  mutable int timeReads = 0;
  std::function<Bitmap(const std::string&)> pictureLoader;
  std::string applicationFolder = R"(C:\Program Files\Host)";
  std::int32_t instanceNumber = 1234;
  std::map<Timer*, std::int32_t> runningTimers;
  std::map<std::string, int> timerStarts;

  // Lets the time of a running timer come, as the message loop would. False when it does not run.
  bool FireTimer(Timer& timer) const {
    if (!runningTimers.contains(&timer)) return false;
    timer.Fire();
    return true;
  }

  MessageAnswer ShowMessageBox(const std::string& prompt, const std::string& title, MessageButtons buttons) override {
    boxes.push_back({prompt, title, buttons});
    if (whileBoxIsUp) whileBoxIsUp(boxes.back());
    if (answers.empty()) return MessageAnswer::Ok;
    const MessageAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  float TwipsPerPixelX() const override { return 15; }
  float TwipsPerPixelY() const override { return 15; }
  bool ClipboardHasFormat(std::int32_t format) override { return clipboardFormats.contains(format); }
  void StartTimer(Timer& timer, std::int32_t milliseconds) override {
    runningTimers[&timer] = milliseconds;
    ++timerStarts[timer.Name()];
  }
  void StopTimer(Timer& timer) override { runningTimers.erase(&timer); }
  LocalDate Date() const override {
    ++dateReads;
    return date;
  }
  LocalTime Time() const override {
    ++timeReads;
    return time;
  }
  Bitmap LoadPicture(const std::string& path) override {
    if (LookUpFile(path).empty()) Raise(ErrorNumber::FileNotFound);
    return pictureLoader ? pictureLoader(path) : Bitmap(1, 1, 24);
  }
  void RemoveFile(const std::string& path) override { RemoveFileAt(path); }
  std::string DirectoryLookUp(const std::string& path) override { return LookUpFile(path); }
  std::string ApplicationFolder() const override { return applicationFolder; }
  std::int32_t InstanceNumber() const override { return instanceNumber; }
};

}  // namespace kw::test
