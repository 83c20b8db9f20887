#pragma once
// Shared test helpers: a scripted prompter, a status sink and timer that remember, a
// beeper that counts, and a temporary folder.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/beeper.h"
#include "platform/prompter.h"
#include "platform/scan_timer.h"
#include "platform/status_sink.h"

namespace kova::test {

struct Shown {
    std::string text;
    std::string title;
    bool operator==(const Shown&) const = default;
};

// Records every message and question; answers questions and inputs from scripts
// (No / Cancel / cancel when the script is empty). Each box also records the window that
// owned it, in the order the boxes came.
class ScriptedPrompter final : public Prompter {
  public:
    void message(const std::string& text, const std::string& title) override {
        messages.push_back({text, title});
        owners.push_back(owner());
    }
    bool askYesNo(const std::string& text, const std::string& title, DefaultAnswer enter) override;
    SaveChoice askSaveDiscardCancel(const std::string& text, const std::string& title) override;
    std::optional<std::string> input(const std::string& prompt, const std::string& title) override;
    std::optional<std::string> chooseFile(const std::string& title, const std::string& filter,
                                          const std::string& proposed, bool save) override;

    std::vector<Shown> messages;
    std::vector<Shown> questions;
    std::vector<DefaultAnswer> questionDefaults;  // the default button of each question
    std::vector<Shown> saveQuestions;             // "Save changes to NAME?"
    std::vector<const void*> owners;              // the owner of every box, in order
    std::vector<Shown> inputs;
    std::vector<Shown> fileDialogs;  // title, filter
    std::vector<bool> yesNoAnswers;
    std::vector<SaveChoice> saveAnswers;
    std::vector<std::optional<std::string>> inputAnswers;
    std::vector<std::optional<std::string>> fileAnswers;
};

class RecordingStatus final : public StatusSink {
  public:
    void setStatusText(const std::string& text) override { texts.push_back(text); }
    std::vector<std::string> texts;
};

class RecordingTimer final : public ScanTimer {
  public:
    void setInterval(int ms) override { intervals.push_back(ms); }
    std::vector<int> intervals;
};

class CountingBeeper final : public Beeper {
  public:
    void beep() override { ++count; }
    int count = 0;
};

// A fresh empty folder, removed with its contents at the end of the test.
class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

std::string ReadFileBytes(const std::filesystem::path& p);
void WriteFileBytes(const std::filesystem::path& p, const std::string& bytes);

}  // namespace kova::test
