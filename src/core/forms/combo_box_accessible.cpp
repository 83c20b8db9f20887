#include "core/forms/combo_box_accessible.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QLineEdit>

namespace kova::forms {

namespace {

class ComboBoxAccessible final : public QAccessibleWidget {
  public:
    explicit ComboBoxAccessible(QComboBox* box) : QAccessibleWidget(box, QAccessible::ComboBox) {
        addControllingSignal(QLatin1String("activated(int)"));
    }

    QString text(QAccessible::Text t) const override {
        QComboBox* box = combo();
        if (t == QAccessible::Value)
            return box->isEditable() ? box->lineEdit()->text() : box->currentText();
        // The name the program gave it (or its buddy label's text); the text it holds only
        // when it has none.
        QString s = QAccessibleWidget::text(t);
        if (s.isEmpty() && t == QAccessible::Name) s = text(QAccessible::Value);
        return s;
    }

    // The list of choices and, when it can be typed into, the text part: as Qt's own.
    int childCount() const override { return combo()->isEditable() ? 2 : 1; }
    QAccessibleInterface* child(int index) const override {
        QComboBox* box = combo();
        if (index == 0) return QAccessible::queryAccessibleInterface(box->view());
        if (index == 1 && box->isEditable())
            return QAccessible::queryAccessibleInterface(box->lineEdit());
        return nullptr;
    }
    int indexOfChild(const QAccessibleInterface* c) const override {
        QComboBox* box = combo();
        if (c->object() == box->view()) return 0;
        if (box->isEditable() && c->object() == box->lineEdit()) return 1;
        return -1;
    }
    QAccessibleInterface* focusChild() const override {
        return combo()->isEditable() ? child(1) : nullptr;
    }

    QAccessible::State state() const override {
        QAccessible::State s = QAccessibleWidget::state();
        QComboBox* box = combo();
        s.expandable = true;
        s.expanded = box->view()->isVisible();
        s.editable = box->isEditable();
        return s;
    }

    QStringList actionNames() const override {
        return {QAccessibleActionInterface::showMenuAction(),
                QAccessibleActionInterface::pressAction()};
    }
    void doAction(const QString& name) override {
        QComboBox* box = combo();
        if (name == QAccessibleActionInterface::showMenuAction() ||
            name == QAccessibleActionInterface::pressAction()) {
            if (box->view()->isVisible())
                box->hidePopup();
            else
                box->showPopup();
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    QComboBox* combo() const { return static_cast<QComboBox*>(object()); }
};

QAccessibleInterface* comboBoxFactory(const QString& className, QObject* object) {
    if (className == QLatin1String("QComboBox") && object && object->isWidgetType())
        return new ComboBoxAccessible(static_cast<QComboBox*>(object));
    return nullptr;
}

}  // namespace

void InstallComboBoxAccessible() {
    static bool installed = false;
    if (installed) return;
    installed = true;
    QAccessible::installFactory(comboBoxFactory);
}

}  // namespace kova::forms
