#pragma once
// A box with the label beside it: the label's mnemonic moves to the box, and the box carries
// the label's text as its accessible name, so screen readers and UI automation find it by
// the words a user reads.
#include <QLabel>
#include <QString>
#include <QWidget>

#include "core/forms/form_widgets.h"

namespace kova::logform {

inline QLabel* LabelFor(const QString& caption, QWidget* box, QWidget* parent) {
    auto* label = new QLabel(caption, parent);
    label->setBuddy(box);
    QString name = caption;
    name.remove('&');
    if (name.endsWith(':')) name.chop(1);
    forms::nameBox(box, name.trimmed());
    return label;
}

}  // namespace kova::logform
