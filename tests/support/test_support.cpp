#include "support/test_support.h"

#include <fstream>
#include <random>
#include <sstream>

namespace kova::test {

bool ScriptedPrompter::askYesNo(const std::string& text, const std::string& title,
                                DefaultAnswer enter) {
    questions.push_back({text, title});
    questionDefaults.push_back(enter);
    owners.push_back(owner());
    if (yesNoAnswers.empty()) return false;
    const bool a = yesNoAnswers.front();
    yesNoAnswers.erase(yesNoAnswers.begin());
    return a;
}

SaveChoice ScriptedPrompter::askSaveDiscardCancel(const std::string& text,
                                                  const std::string& title) {
    saveQuestions.push_back({text, title});
    owners.push_back(owner());
    if (saveAnswers.empty()) return SaveChoice::Cancel;
    const SaveChoice a = saveAnswers.front();
    saveAnswers.erase(saveAnswers.begin());
    return a;
}

std::optional<std::string> ScriptedPrompter::input(const std::string& prompt,
                                                   const std::string& title) {
    inputs.push_back({prompt, title});
    owners.push_back(owner());
    if (inputAnswers.empty()) return std::nullopt;
    auto a = inputAnswers.front();
    inputAnswers.erase(inputAnswers.begin());
    return a;
}

std::optional<std::string> ScriptedPrompter::chooseFile(const std::string& title,
                                                        const std::string& filter,
                                                        const std::string&, bool) {
    fileDialogs.push_back({title, filter});
    owners.push_back(owner());
    if (fileAnswers.empty()) return std::nullopt;
    auto a = fileAnswers.front();
    fileAnswers.erase(fileAnswers.begin());
    return a;
}

TempFolder::TempFolder() {
    std::random_device rd;
    path_ = std::filesystem::temp_directory_path() /
            ("kova-test-" + std::to_string(rd()) + std::to_string(rd()));
    std::filesystem::create_directories(path_);
}

TempFolder::~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

std::string ReadFileBytes(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void WriteFileBytes(const std::filesystem::path& p, const std::string& bytes) {
    std::ofstream out(p, std::ios::binary);
    out << bytes;
}

}  // namespace kova::test
