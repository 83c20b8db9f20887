#pragma once
// The prompter on Qt dialogs: message boxes with an OK button, Yes/No questions, the
// Save/Discard/Cancel question, input boxes and file dialogs. Each is application-modal,
// opens centred over the window that owns it (Prompter::owner, else the main window) and,
// when it closes, gives the keyboard back to that window and the box that had it.
#include <QFileDialog>
#include <QPointer>
#include <QWidget>

#include "platform/prompter.h"

namespace kova::app {

// The window that an owner token names: the top-level window of the live widget whose
// address the token is, or `fallback` when no live widget has it (a token is compared,
// never followed).
QWidget* OwnerWindow(const void* owner, QWidget* fallback);

class QtPrompter final : public Prompter {
  public:
    explicit QtPrompter(QWidget* parent = nullptr) : parent_(parent) {}
    void setParentWidget(QWidget* parent) { parent_ = parent; }

    void message(const std::string& text, const std::string& title) override;
    bool askYesNo(const std::string& text, const std::string& title, DefaultAnswer enter) override;
    SaveChoice askSaveDiscardCancel(const std::string& text, const std::string& title) override;
    std::optional<std::string> input(const std::string& prompt, const std::string& title) override;
    std::optional<std::string> chooseFile(const std::string& title, const std::string& filter,
                                          const std::string& proposed, bool save) override;
    std::optional<std::string> chooseFileToWrite(const std::string& title,
                                                 const std::string& filter,
                                                 const std::string& proposed) override;

    // The window the next box opens over.
    QWidget* ownerWindow() const { return OwnerWindow(owner(), parent_); }

  private:
    std::optional<std::string> runFileDialog(const std::string& title, const std::string& filter,
                                             const std::string& proposed,
                                             QFileDialog::AcceptMode accept,
                                             QFileDialog::FileMode mode);

    QPointer<QWidget> parent_;
};

// Runs a modal dialog over its owner and then gives the keyboard back to the owner: the
// owner comes to the front, becomes the active window, and the control that had the focus
// in it has it again. (Without a window manager nothing else would do it.)
int ExecOverOwner(QDialog& dialog, QWidget* owner);

}  // namespace kova::app
