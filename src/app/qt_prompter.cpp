#include "app/qt_prompter.h"

#include <QApplication>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <algorithm>

#include "app/file_filter.h"

namespace kova::app {

namespace {
QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// Keeps a dialog centred over its owner while it takes its size and place: a message box
// sizes itself to its text only as it is shown, after Qt placed it, and the window system
// may still move it to where Qt first put it; so it is placed again at each resize or move
// of its first moments (and not later: a dialog the user moves stays where it is). It
// stays on the owner's screen.
class CentreOverOwner final : public QObject {
  public:
    CentreOverOwner(QDialog& dialog, QWidget* owner) : QObject(&dialog), owner_(owner) {
        dialog.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* dialog = qobject_cast<QWidget*>(watched);
        if (!dialog || !owner_) return false;
        if (event->type() == QEvent::Show) {
            centre(dialog);
            settling_ = true;
            QTimer::singleShot(kSettleMs, this, [this] { settling_ = false; });
        } else if ((event->type() == QEvent::Resize || event->type() == QEvent::Move) &&
                   settling_) {
            centre(dialog);
        }
        return false;
    }

  private:
    static constexpr int kSettleMs = 500;
    void centre(QWidget* dialog) const {
        const QRect over = owner_->window()->frameGeometry();
        const QSize size = dialog->frameGeometry().size();
        QPoint at = over.center() - QPoint(size.width() / 2, size.height() / 2);
        if (const QScreen* screen = owner_->window()->screen()) {
            const QRect area = screen->availableGeometry();
            at.setX(std::clamp(at.x(), area.left(),
                               std::max(area.left(), area.right() - size.width())));
            at.setY(std::clamp(at.y(), area.top(),
                               std::max(area.top(), area.bottom() - size.height())));
        }
        if (dialog->pos() != at) dialog->move(at);
    }
    QPointer<QWidget> owner_;
    bool settling_ = false;
};
}  // namespace

QWidget* OwnerWindow(const void* owner, QWidget* fallback) {
    if (owner)
        for (QWidget* w : QApplication::allWidgets())
            if (static_cast<const void*>(w) == owner) return w->window();
    return fallback ? fallback->window() : nullptr;
}

int ExecOverOwner(QDialog& dialog, QWidget* owner) {
    const QPointer<QWidget> window = owner ? owner->window() : nullptr;
    const QPointer<QWidget> focus = window ? window->focusWidget() : nullptr;
    if (window) new CentreOverOwner(dialog, window);
    const int result = dialog.exec();
    if (window && window->isVisible()) {
        window->raise();
        window->activateWindow();
        if (focus && focus->isVisible() && focus->isEnabled())
            focus->setFocus(Qt::OtherFocusReason);
    }
    return result;
}

void QtPrompter::message(const std::string& text, const std::string& title) {
    const bool error = title == "ERROR" || title == "Error";
    QWidget* owner = ownerWindow();
    QMessageBox box(error ? QMessageBox::Warning : QMessageBox::Information, q(title), q(text),
                    QMessageBox::Ok, owner);
    box.setObjectName("KovaMessage");
    ExecOverOwner(box, owner);
}

bool QtPrompter::askYesNo(const std::string& text, const std::string& title, DefaultAnswer enter) {
    QWidget* owner = ownerWindow();
    QMessageBox box(QMessageBox::Question, q(title), q(text), QMessageBox::Yes | QMessageBox::No,
                    owner);
    box.setObjectName("KovaQuestion");
    box.setDefaultButton(enter == DefaultAnswer::Yes ? QMessageBox::Yes : QMessageBox::No);
    // Escape answers No.
    box.setEscapeButton(QMessageBox::No);
    return ExecOverOwner(box, owner) == QMessageBox::Yes;
}

SaveChoice QtPrompter::askSaveDiscardCancel(const std::string& text, const std::string& title) {
    QWidget* owner = ownerWindow();
    QMessageBox box(QMessageBox::Warning, q(title), q(text),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, owner);
    box.setObjectName("KovaSaveQuestion");
    box.setDefaultButton(QMessageBox::Save);
    box.setEscapeButton(QMessageBox::Cancel);
    // Mnemonics, so that each answer is one key away.
    box.button(QMessageBox::Save)->setText("&Save");
    box.button(QMessageBox::Discard)->setText("&Discard");
    box.button(QMessageBox::Cancel)->setText("&Cancel");
    switch (ExecOverOwner(box, owner)) {
        case QMessageBox::Save:
            return SaveChoice::Save;
        case QMessageBox::Discard:
            return SaveChoice::Discard;
        default:
            return SaveChoice::Cancel;
    }
}

std::optional<std::string> QtPrompter::input(const std::string& prompt, const std::string& title) {
    QWidget* owner = ownerWindow();
    QInputDialog dialog(owner);
    dialog.setObjectName("KovaInput");
    dialog.setWindowTitle(q(title));
    dialog.setLabelText(q(prompt));
    dialog.setInputMode(QInputDialog::TextInput);
    if (ExecOverOwner(dialog, owner) != QDialog::Accepted) return std::nullopt;
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
    QWidget* owner = ownerWindow();
    QFileDialog dialog(owner, q(title));
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
    if (ExecOverOwner(dialog, owner) != QDialog::Accepted) return std::nullopt;
    const QStringList files = dialog.selectedFiles();
    if (files.isEmpty()) return std::nullopt;
    return files.first().toStdString();
}

}  // namespace kova::app
