
#include <QLabel>
#include <QPushButton>

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

}  // namespace kova::forms
