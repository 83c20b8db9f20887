#include "app/qt_prompter.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>

#include "app/file_filter.h"

namespace kova::app {

namespace {
QString q(const std::string& s) {
    return QString::fromStdString(s);
}
}  // namespace

void QtPrompter::message(const std::string& text, const std::string& title) {
    const bool error = title == "ERROR" || title == "Error";
    QMessageBox box(error ? QMessageBox::Warning : QMessageBox::Information, q(title), q(text),
                    QMessageBox::Ok, parent_);
    box.setObjectName("KovaMessage");
    box.exec();
}

bool QtPrompter::askYesNo(const std::string& text, const std::string& title) {
    QMessageBox box(QMessageBox::Question, q(title), q(text), QMessageBox::Yes | QMessageBox::No,
                    parent_);
    box.setObjectName("KovaQuestion");
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}

std::optional<std::string> QtPrompter::input(const std::string& prompt, const std::string& title) {
    QInputDialog dialog(parent_);
    dialog.setObjectName("KovaInput");
    dialog.setWindowTitle(q(title));
    dialog.setLabelText(q(prompt));
    dialog.setInputMode(QInputDialog::TextInput);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.textValue().toStdString();
}

std::optional<std::string> QtPrompter::chooseFile(const std::string& title,
                                                  const std::string& filter,
                                                  const std::string& proposed, bool save) {
    return save ? runFileDialog(title, filter, proposed, QFileDialog::AcceptSave,
                                QFileDialog::AnyFile)
                : runFileDialog(title, filter, proposed, QFileDialog::AcceptOpen,
                                QFileDialog::ExistingFile);
}

std::optional<std::string> QtPrompter::chooseFileToWrite(const std::string& title,
                                                         const std::string& filter,
                                                         const std::string& proposed) {
    // An open dialog that accepts a new name and never asks to overwrite: the file is
    // only named here; whether it is appended to or started afresh is decided elsewhere.
    return runFileDialog(title, filter, proposed, QFileDialog::AcceptOpen, QFileDialog::AnyFile);
}

std::optional<std::string> QtPrompter::runFileDialog(const std::string& title,
                                                     const std::string& filter,
                                                     const std::string& proposed,
                                                     QFileDialog::AcceptMode accept,
                                                     QFileDialog::FileMode mode) {
    QFileDialog dialog(parent_, q(title));
    dialog.setObjectName("KovaFileDialog");
    // Qt's own dialog on every platform: its filters match "Default.Suf" against "*.SUF".
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    dialog.setNameFilter(q(QtFileFilter(filter)));
    dialog.setAcceptMode(accept);
    dialog.setFileMode(mode);
    if (mode == QFileDialog::AnyFile) dialog.setDefaultSuffix(q(DefaultSuffix(filter)));
    if (!proposed.empty()) {
        const QFileInfo info(q(proposed));
        if (info.isDir()) {
            dialog.setDirectory(info.absoluteFilePath());
        } else {
            dialog.setDirectory(info.absolutePath());
            dialog.selectFile(info.fileName());
        }
    }
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    const QStringList files = dialog.selectedFiles();
    if (files.isEmpty()) return std::nullopt;
    return files.first().toStdString();
}

}  // namespace kova::app
