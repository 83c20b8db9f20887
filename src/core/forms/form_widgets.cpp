#include "core/forms/form_widgets.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/forms/combo_box_accessible.h"

namespace kova::forms {

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

}  // namespace kova::forms
