#pragma once
// The control statement window (FrmControl): one control line at a time, its IF, THEN and
// ELSE texts, the two switches, the tag list and the five buttons.
#include <QComboBox>
#include <QWidget>

#include "control/control_editor.h"
#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace kova {

// The tag list: choosing a name appends it, so the arrow keys open the list instead of
// choosing the neighbouring name at once.
class TagChoiceBox : public QComboBox {
    Q_OBJECT
  public:
    using QComboBox::QComboBox;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

class ControlWindow : public QWidget {
    Q_OBJECT
  public:
    ControlWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    void nextClicked();
    void prevClicked();
    void insertClicked();
    void deleteClicked();
    void exitClicked();

  signals:
    // The shown line and the enable switch were stored (Next, Prev, Exit).
    void controlsStored();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void step(int direction);
    void display();
    void read();
    void tagChosen(int index);
    void pointAtFailure();
    void tablesChanged(TableChange change);
    QWidget* box(const std::string& name) const;

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    ControlForm form_;
    QLabel* lblLineNo_;
    QLineEdit* txtIf_;
    QPlainTextEdit* txtThen_;
    QPlainTextEdit* txtElse_;
    QCheckBox* chkIf_;
    QCheckBox* chkEnableControl_;
    TagChoiceBox* cboTag_;
    QPushButton* cmdNext_;
    QPushButton* cmdPrev_;
    QPushButton* cmdInsert_;
    QPushButton* cmdDelete_;
    QPushButton* cmdExit_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
