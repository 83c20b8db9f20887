#pragma once
// The prompter on Qt dialogs: message boxes with an OK button, Yes/No questions, input
// boxes and file dialogs, each application-modal over the main window.
#include <QFileDialog>
#include <QPointer>
#include <QWidget>

#include "platform/prompter.h"

namespace kova::app {

class QtPrompter final : public Prompter {
  public:
    explicit QtPrompter(QWidget* parent = nullptr) : parent_(parent) {}
    void setParentWidget(QWidget* parent) { parent_ = parent; }

    void message(const std::string& text, const std::string& title) override;
    bool askYesNo(const std::string& text, const std::string& title) override;
    std::optional<std::string> input(const std::string& prompt, const std::string& title) override;
    std::optional<std::string> chooseFile(const std::string& title, const std::string& filter,
                                          const std::string& proposed, bool save) override;
    std::optional<std::string> chooseFileToWrite(const std::string& title,
                                                 const std::string& filter,
                                                 const std::string& proposed) override;

  private:
    std::optional<std::string> runFileDialog(const std::string& title, const std::string& filter,
                                             const std::string& proposed,
                                             QFileDialog::AcceptMode accept,
                                             QFileDialog::FileMode mode);

    QPointer<QWidget> parent_;
};

}  // namespace kova::app
