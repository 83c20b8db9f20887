#include "core/forms/form_widgets.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>

#include "core/forms/combo_box_accessible.h"

namespace kova::forms {

namespace {

class ContentScrollArea final : public QScrollArea {
  public:
    explicit ContentScrollArea(QWidget* parent) : QScrollArea(parent) {}
    // The content's own size (a plain scroll area caps its wish at a few dozen lines).
    QSize sizeHint() const override {
        QSize s = widget() ? widget()->sizeHint() : QSize(0, 0);
        const int f = 2 * frameWidth();
        return s + QSize(f, f);
    }
    QSize minimumSizeHint() const override {
        const int line = fontMetrics().height();
        const int bars = verticalScrollBar()->sizeHint().width();
        return {8 * line + bars, 4 * line + bars};
    }
};

}  // namespace

QScrollArea* scrollingPart(QWidget* content, QWidget* parent) {
    auto* area = new ContentScrollArea(parent);
    area->setObjectName("ScrollingPart");
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(content);
    // Tab goes through the boxes in it, not through the area itself.
    area->setFocusPolicy(Qt::NoFocus);
    // Tab order may jump into the part from outside it: what takes the focus is shown.
    QObject::connect(qApp, &QApplication::focusChanged, area, [area](QWidget*, QWidget* now) {
        if (now && area->widget() && area->widget()->isAncestorOf(now))
            area->ensureWidgetVisible(now);
    });
    return area;
}

QPushButton* button(const char* name, const char* caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}

void nameBox(QWidget* box, const QString& name) {
    InstallComboBoxAccessible();
    box->setAccessibleName(name);
    if (auto* combo = qobject_cast<QComboBox*>(box); combo && combo->lineEdit())
        combo->lineEdit()->setAccessibleName(name);
}

QLabel* caption(const char* text, QWidget* buddy, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setBuddy(buddy);
    nameBox(buddy, QString(text).remove('&'));
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
