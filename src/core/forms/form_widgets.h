#pragma once
// The small pieces every window is built of: a named button, a caption that names its box
// for screen readers, and a check box that only shows a switch.
#include <QCheckBox>

class QLabel;
class QPushButton;

namespace kova::forms {

// A push button with its object name and its caption ("&" marks the mnemonic).
QPushButton* button(const char* name, const char* caption, QWidget* parent);

// The label beside a box: it is the box's buddy (its mnemonic moves the focus there) and
// its text, without the "&", is the box's accessible name.
QLabel* caption(const char* text, QWidget* buddy, QWidget* parent);

// A check box that shows a switch: only the program sets it, clicks do not reach it.
class IndicatorBox final : public QCheckBox {
  public:
    using QCheckBox::QCheckBox;

  protected:
    bool hitButton(const QPoint&) const override { return false; }
};

}  // namespace kova::forms
