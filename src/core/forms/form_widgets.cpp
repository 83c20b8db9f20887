
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include "core/forms/form_widgets.h"

namespace kova::forms {

QPushButton* button(const char* name, const char* caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}

QLabel* caption(const char* text, QWidget* buddy, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setBuddy(buddy);
    buddy->setAccessibleName(QString(text).remove('&'));
    return l;
}

void ShowReadOnly(QLineEdit* box, bool readOnly) {
    box->setReadOnly(readOnly);
    QPalette palette = box->palette();
    const QPalette normal = QApplication::palette(box);
    palette.setBrush(QPalette::Base,
                     readOnly ? normal.brush(QPalette::Window) : normal.brush(QPalette::Base));
    box->setPalette(palette);
}

void RefillKeepingText(QComboBox* box, const std::vector<std::string>& entries) {
    const QSignalBlocker quiet(box);
    const QString shown = box->currentText();
    const int cursor = box->lineEdit() ? box->lineEdit()->cursorPosition() : 0;
    box->clear();
    for (const std::string& e : entries) box->addItem(QString::fromStdString(e));
    const int index = box->findText(shown, Qt::MatchExactly);
    box->setCurrentIndex(box->isEditable() ? index : (shown.isEmpty() ? -1 : index));
    if (box->isEditable()) {
        box->setEditText(shown);
        box->lineEdit()->setCursorPosition(cursor);
    }
}

void ShowText(QLineEdit* box, const std::string& text) {
    const QString t = QString::fromStdString(text);
    if (box->text() != t) box->setText(t);
}

void ShowText(QComboBox* box, const std::string& text) {
    const QString t = QString::fromStdString(text);
    if (box->currentText() == t) return;
    // A text the list does not hold chooses no entry.
    box->setCurrentIndex(box->findText(t, Qt::MatchExactly));
    if (box->isEditable()) box->setEditText(t);
}

void FocusAndSelect(QWidget* box) {
    if (!box) return;
    box->setFocus(Qt::OtherFocusReason);
    if (auto* line = qobject_cast<QLineEdit*>(box)) {
        line->selectAll();
    } else if (auto* combo = qobject_cast<QComboBox*>(box)) {
        if (combo->lineEdit()) combo->lineEdit()->selectAll();
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(box)) {
        text->selectAll();
    }
}

}  // namespace kova::forms
