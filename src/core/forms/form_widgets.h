#pragma once
// The small pieces every window is built of: a named button, a caption that names its box
// for screen readers, and a check box that only shows a switch.
#include <QCheckBox>
#include <QString>
#include <string>
#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollArea;

namespace kova::forms {

// A push button with its object name and its caption ("&" marks the mnemonic).
QPushButton* button(const char* name, const char* caption, QWidget* parent);

// The name a screen reader announces for a box. A combo box that takes typing gets it on its
// text part as well (which a screen reader meets on its own), and is named by it rather than
// by the text it holds. Call it after the box is made editable.
void nameBox(QWidget* box, const QString& name);

// The label beside a box: it is the box's buddy (its mnemonic moves the focus there) and
// its text, without the "&", is the box's accessible name.
QLabel* caption(const char* text, QWidget* buddy, QWidget* parent);

// The part of a window that scrolls when the screen is too small for it (a scale factor of
// 2 on a laptop's screen): the area asks for the whole content's size, so on a screen with
// room nothing scrolls, but it can shrink to a few lines. The box that takes the keyboard
// is scrolled into view. The window's buttons belong outside it, always in reach.
QScrollArea* scrollingPart(QWidget* content, QWidget* parent);

// A box the user cannot type in, and that looks so: the window's background instead of the
// white of a box that takes typing. `readOnly` false makes it an ordinary box again.
void ShowReadOnly(QLineEdit* box, bool readOnly);

// Fills a drop-down's list afresh and keeps what it shows: the text typed in an editable
// one (with its cursor), or the chosen entry of a fixed one when the new list has it.
void RefillKeepingText(QComboBox* box, const std::vector<std::string>& entries);

// Shows a text in a box, or in an editable drop-down, unless it shows it already: the
// cursor of a box being typed in stays where it is when a window shows its form again.
void ShowText(QLineEdit* box, const std::string& text);
void ShowText(QComboBox* box, const std::string& text);

// Gives the keyboard to a box and selects its text, so that typing replaces it.
void FocusAndSelect(QWidget* box);

// A check box that shows a switch: only the program sets it, clicks do not reach it.
class IndicatorBox final : public QCheckBox {
  public:
    using QCheckBox::QCheckBox;

  protected:
    bool hitButton(const QPoint&) const override { return false; }
};

}  // namespace kova::forms
