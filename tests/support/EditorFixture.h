#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "components/base/FilePath.h"
#include "control/KwEditorLayers.h"
#include "picture/PictureDocument.h"
#include "tests/support/Documents.h"
#include "tests/support/RecordedEvents.h"
#include "tests/support/ScriptedDesktop.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::test {

using Names = std::vector<std::string>;

// A bag that is empty at first and remembers the order of reading and writing.
class RecordedBag : public PropertyBag {
public:
  std::map<std::string, std::string> values;  // numbers in decimal, booleans as 0 and 1
  std::vector<std::string> read;
  std::vector<std::string> written;

  bool ReadBoolean(const std::string& key, bool otherwise) override {
    return Number(key, static_cast<int>(otherwise)) != 0;
  }
  std::int16_t ReadInteger(const std::string& key, std::int16_t otherwise) override {
    return static_cast<std::int16_t>(Number(key, otherwise));
  }
  std::string ReadText(const std::string& key, const std::string& otherwise) override {
    read.push_back(key);
    return values.contains(key) ? values[key] : otherwise;
  }
  void WriteBoolean(const std::string& key, bool value, bool otherwise) override {
    Keep(key, static_cast<int>(value), static_cast<int>(otherwise));
  }
  void WriteInteger(const std::string& key, std::int16_t value, std::int16_t otherwise) override {
    Keep(key, value, otherwise);
  }
  void WriteText(const std::string& key, const std::string& value, const std::string& otherwise) override {
    written.push_back(key);
    if (value != otherwise) values[key] = value;
  }

private:
  int Number(const std::string& key, int otherwise) {
    read.push_back(key);
    return values.contains(key) ? std::stoi(values[key]) : otherwise;
  }
  void Keep(const std::string& key, int value, int otherwise) {
    written.push_back(key);
    if (value != otherwise) values[key] = std::to_string(value);
  }
};

// The whole control on the scripted desktop, in a folder of its own, initialised.
class EditorTest : public testing::Test {
protected:
  EditorTest() {
    AppDir = folder.Path();
    desktop.Allow(ListOfPendingWork);
    control = std::make_unique<KwEditorLayers>(desktop, events);
    control->UserControl_Initialize();
  }
  ~EditorTest() override {
    control.reset();
    AppDir.clear();
  }

  EditorForm& Form() { return control->Form(); }
  ToolBar& BasicBar(const std::string& key) { return BarOf(Form().tbrBasicTools, key); }
  bool IsEnabled(const std::string& key) { return BasicBar(key).ButtonOf(key).enabled; }

  // The names traced so far.
  std::vector<std::string> Trace() const {
    std::vector<std::string> lines;
    const std::string whole = ReadWhole(folder.File("FunctionsInExecution.txt"));
    for (std::size_t start = 0; start < whole.size();) {
      const std::size_t end = whole.find("\r\n", start);
      lines.push_back(whole.substr(start, end - start));
      start = end == std::string::npos ? whole.size() : end + 2;
    }
    return lines;
  }
  void ForgetTrace() const { RemoveFileAt(folder.File("FunctionsInExecution.txt")); }

  // Page p is 10 p wide and 20 high.
  std::string MakeDocument(const std::string& name, int pages) {
    std::string path = folder.File(name);
    WriteWhole(path, GreyTiff(pages));
    return path;
  }
  std::string MakeImage(const std::string& name, std::int32_t width = 30, std::int32_t height = 40) {
    std::string path = folder.File(name);
    SavePicture(Bitmap(width, height, 24), path);
    return path;
  }

  TemporaryFolder folder;
  ScriptedDesktop desktop;
  RecordedEvents events;
  std::unique_ptr<KwEditorLayers> control;
};

}  // namespace kw::test
